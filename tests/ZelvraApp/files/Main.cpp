// SPDX-License-Identifier: GPL-3.0-or-later

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The desktop's list of recent files is not the user's here. GLib looks at the environment once.
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
