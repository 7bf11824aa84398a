// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/HelpContent.h"

#include <QFile>
#include <QVariantMap>

namespace zelvra {

std::vector<HelpSection> helpSections(const QString& text) {
    const QString heading = QStringLiteral("## ");
    const QString bullet = QStringLiteral("- ");
    std::vector<HelpSection> sections;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (line.startsWith(heading)) {
            const QString rest = line.mid(heading.size());
            sections.push_back({.icon = rest.section(QLatin1Char(' '), 0, 0),
                                .title = rest.section(QLatin1Char(' '), 1),
                                .items = {}});
        } else if (line.startsWith(bullet) && !sections.empty()) {
            sections.back().items.append(line.mid(bullet.size()));
        }
    }
    return sections;
}

QVariantList HelpContent::sections() {
    QFile file(QStringLiteral(":/qml/Zelvra/Shell/") + tr("help.md", "the file in ZelvraApp/resources"));
    const QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    QVariantList list;
    for (const HelpSection& section : helpSections(text)) {
        list.append(QVariantMap{{QStringLiteral("icon"), section.icon},
                                {QStringLiteral("title"), section.title},
                                {QStringLiteral("items"), section.items}});
    }
    return list;
}

QString HelpContent::workNote() {
    return tr(
        "Unfinished work is remembered. When you open a clip again, R restores what you left on it. File › "
        "Save Annotations… (⌘S) and File › Open Annotations… (⌘I) keep it in a file of its own.");
}

QString HelpContent::keysNote() {
    return tr("On this keyboard, ⌘ is the Ctrl key and ⇧ the Shift key: ⇧⌘O is Ctrl+Shift+O.");
}

} // namespace zelvra
