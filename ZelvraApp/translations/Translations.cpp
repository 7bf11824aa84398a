// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/translations/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace zelvra {

Translations::Translations(const QStringList& languages) {
    const auto load = [this](const QString& language) {
        return texts_.load(QStringLiteral(":/translations/zelvra_%1.qm").arg(language));
    };
    const QString standard = QStringLiteral("en"); // in a file of its own for its plurals
    QString chosen = standard;
    for (const QString& language : languages) {
        const QString code = language.section(QLatin1Char('-'), 0, 0);
        if (load(code)) {
            chosen = code;
            break;
        }
    }
    if (texts_.isEmpty()) {
        load(standard);
    }
    if (toolkit_.load(QStringLiteral("qtbase_") + chosen,
                      QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(&toolkit_);
    }
    QCoreApplication::installTranslator(&texts_);
}

} // namespace zelvra
