// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/translations/Translations.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    const QCoreApplication program(argc, argv);
    const zelvra::Translations english({QStringLiteral("en")});
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
