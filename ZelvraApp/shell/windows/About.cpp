// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/About.h"

#include "ZelvraApp/shell/Version.h"

namespace zelvra {

namespace {

std::optional<QString> given(const char* text) {
    const QString given = QString::fromUtf8(text);
    return given.isEmpty() ? std::nullopt : std::optional(given);
}

} // namespace

QString appVersionString(const std::optional<QString>& version, const std::optional<QString>& build) {
    if (!version) {
        return QStringLiteral("1.0");
    }
    return build ? QStringLiteral("%1 (%2)").arg(*version, *build) : *version;
}

QString About::versionText() {
    return tr("Version %1").arg(appVersionString(given(version::number), given(version::build)));
}

} // namespace zelvra
