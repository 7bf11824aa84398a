// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/CommandLine.h"

#include "ZelvraApp/shell/Version.h"

#include <QStringList>

namespace zelvra {

namespace {

constexpr int wrongUsage = 2;

const QString help = QStringLiteral(
    "Usage: zelvra [FILE|FOLDER]...\n"
    "Freezes sports video at chosen moments, draws over the still picture, and plays on.\n"
    "\n"
    "A movie (.mov, .mp4, .m4v) is opened, or the movies of a folder one after the other. Of several\n"
    "arguments the first counts. Where the program runs already, its window opens it.\n"
    "\n"
    "  -h, --help     show this help\n"
    "  -v, --version  show the version\n"
    "\n"
    "More in zelvra(1).\n");

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments, const QString& workingFolder) {
    CommandLine line;
    bool optionsEnded = false;
    for (const QString& argument : arguments) {
        if (optionsEnded || !argument.startsWith(QLatin1Char('-')) || argument == QLatin1String("-")) {
            line.urls.append(QUrl::fromUserInput(argument, workingFolder, QUrl::AssumeLocalFile));
        } else if (argument == QLatin1String("--")) {
            optionsEnded = true;
        } else if (argument == QLatin1String("-h") || argument == QLatin1String("--help")) {
            return {.urls = {}, .answer = help};
        } else if (argument == QLatin1String("-v") || argument == QLatin1String("--version")) {
            return {.urls = {}, .answer = QStringLiteral("zelvra %1\n").arg(QLatin1String(version::number))};
        } else {
            return {.urls = {},
                    .answer =
                        QStringLiteral("zelvra: there is no option %1; see zelvra --help\n").arg(argument),
                    .exitStatus = wrongUsage};
        }
    }
    return line;
}

} // namespace zelvra
