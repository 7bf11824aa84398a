// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/SingleInstance.h"
#include "ZelvraApp/desktop/TerminationSignals.h"
#include "ZelvraApp/shell/Application.h"
#include "ZelvraApp/shell/CommandLine.h"
#include "ZelvraApp/shell/DesktopIntegration.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>
#include <exception>
#include <malloc.h>

int main(int argc, char** argv) {
    // A long export's tables grow by large steps. Large blocks are freed at once, so memory stays at what is
    // used.
    constexpr int largeBlock = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, largeBlock);

    QStringList arguments;
    for (int k = 1; k < argc; ++k) {
        arguments.append(QFile::decodeName(argv[k]));
    }
    const auto line = zelvra::CommandLine::parse(arguments, QDir::currentPath());
    if (line.answer) {
        std::fputs(line.answer->toLocal8Bit().constData(), line.exitStatus == 0 ? stdout : stderr);
        return line.exitStatus;
    }

    zelvra::Application::prepare();
    const QGuiApplication program(argc, argv);
    zelvra::SingleInstance instance(QDBusConnection::sessionBus());
    if (!instance.claim(line.urls)) {
        return 0;
    }
    try {
        zelvra::TerminationSignals termination;
        QObject::connect(&termination, &zelvra::TerminationSignals::received, &program,
                         [] { QCoreApplication::exit(0); });
        zelvra::DesktopIntegration desktop(QDBusConnection::sessionBus(), QDBusConnection::systemBus());
        zelvra::Application application({});
        desktop.connectTo(application, instance);
        if (!line.urls.isEmpty()) {
            application.state().handleOpenedURLs(line.urls);
        }
        return QGuiApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zelvra: %s\n", error.what());
        return 1;
    }
}
