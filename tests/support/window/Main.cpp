// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/Application.h"

#include <QGuiApplication>
#include <QStyleHints>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qputenv("ZELVRA_AUDIO", "null");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // keeps tests away from the developer's
                                                                   // own desktop
    qputenv("ZELVRA_APPEARANCE", "dark");
    qputenv("LANGUAGE", "en");
    zelvra::Application::prepare();
    const QGuiApplication program(argc, argv);
    QGuiApplication::styleHints()->setUseHoverEffects(true);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
