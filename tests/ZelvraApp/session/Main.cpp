// SPDX-License-Identifier: GPL-3.0-or-later

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ZELVRA_AUDIO", "null");
    const QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // the player's core needs it
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
