// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/editor/FramePicture.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

TEST(FramePicture, IsOnWholePixelsOfTheScreen) {
    const QRectF fitted(0, 118.75, 1000, 562.5);
    EXPECT_EQ(onWholePixels(fitted, 1), QRectF(0, 119, 1000, 562));
    EXPECT_EQ(onWholePixels(fitted, 2), QRectF(0, 119, 1000, 562.5));
    EXPECT_EQ(onWholePixels({10, 10, 0.1, 0.1}, 1), QRectF(10, 10, 1, 1));
}

} // namespace
} // namespace zelvra::test
