// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>
#include <QTranslator>

namespace zelvra {

/// The texts of the windows in the user's language, as long as this exists. The languages are the .ts files
/// beside this header; English serves where none of the user's languages is among them. Numbers and times are
/// not changed. Needs a QCoreApplication that outlives it. Main thread.
class Translations {
public:
    /// `languages` as QLocale::uiLanguages() returns them: most wanted first, for example "de-AT", "de",
    /// "en".
    explicit Translations(const QStringList& languages);

private:
    QTranslator texts_;
    QTranslator toolkit_; ///< Qt's own texts, if they are installed
};

} // namespace zelvra
