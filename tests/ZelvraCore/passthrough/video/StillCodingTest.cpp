// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillCoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvra::passthrough {
namespace {

TEST(StillCoding, GivesNeighbouringIdrStillsDifferentIdsThatAreFree) {
    const StillCoding coding = idrCoding({}, {0, 2});
    EXPECT_THAT(idrPicIdsOf(coding), testing::ElementsAre(1, 3));
    for (std::uint32_t part = 0; part < 10; ++part) {
        EXPECT_NE(coding.headerOf(part), coding.headerOf(part + 1));
    }
}

TEST(StillCoding, RepeatsTheLastHeaderIfStillsDoNotTakeTurns) {
    const StillCoding coding{.sps = {}, .headers = std::vector<h264::StillHeader>(2)};
    EXPECT_EQ(coding.headerOf(0), 0u);
    EXPECT_EQ(coding.headerOf(1), 1u);
    EXPECT_EQ(coding.headerOf(9), 1u);
}

} // namespace
} // namespace zelvra::passthrough
