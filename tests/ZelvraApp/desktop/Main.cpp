// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/Application.h"

#include <QGuiApplication>
#include <QProcess>

#include <gtest/gtest.h>

/// Runs the tests on a session bus of their own, which ends with them.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ZELVRA_AUDIO", "null");
    qputenv("LANGUAGE", "en");
    if (!qEnvironmentVariableIsSet("ZELVRA_TEST_BUS")) {
        qputenv("ZELVRA_TEST_BUS", "1");
        QStringList arguments{QStringLiteral("--")};
        for (int k = 0; k < argc; ++k) {
            arguments.append(QString::fromLocal8Bit(argv[k]));
        }
        return QProcess::execute(QStringLiteral("dbus-run-session"), arguments);
    }
    zelvra::Application::prepare();
    const QGuiApplication program(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
