// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <qqml.h>

#include <optional>

namespace zelvra {

/// "1.2 (45)" for a version and a build, the version if there is no build, "1.0" without a version.
QString appVersionString(const std::optional<QString>& version, const std::optional<QString>& build);

/// What the about window shows about this build.
class About : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString versionText READ versionText CONSTANT)

public:
    using QObject::QObject;

    static QString versionText();
};

} // namespace zelvra
