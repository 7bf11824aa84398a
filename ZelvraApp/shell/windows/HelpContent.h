// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <qqml.h>

#include <vector>

namespace zelvra {

struct HelpSection {
    QString icon; ///< its name in the icon font
    QString title;
    QStringList items; ///< inline Markdown
};

/// The sections of a text whose lines are "## icon Title" and, below each, "- item".
std::vector<HelpSection> helpSections(const QString& text);

/// The content of the help window: a tour of the program (resources/help.md or its translation), and notes on
/// remembered work and on the names of keys.
class HelpContent : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// { icon, title, items }
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)
    Q_PROPERTY(QString workNote READ workNote CONSTANT)
    /// The last line.
    Q_PROPERTY(QString keysNote READ keysNote CONSTANT)

public:
    using QObject::QObject;

    static QVariantList sections();
    static QString workNote();
    static QString keysNote();
};

} // namespace zelvra
