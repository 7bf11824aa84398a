// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillSites.h"

#include "tests/ZelvraCore/passthrough/video/TokenStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvra::passthrough {
namespace {

using PictureType = StillSite::PictureType;
using test::TokenStream;
using testing::ElementsAre;

/// Sites in the range of ranks `first` up to `end`, with a freeze before each rank of `freezes`.
StillSites sitesOf(const TokenStream& stream, std::uint32_t first, std::uint32_t end,
                   const std::vector<std::uint32_t>& freezes) {
    const SourcePictures pictures(stream.samples);
    VideoCut cut;
    cut.firstRank = first;
    cut.endRank = end;
    for (const std::uint32_t rank : freezes) {
        cut.freezes.push_back({rank, 1});
    }
    return findStillSites(pictures, cut, stream.traits());
}

TEST(StillSites, FollowEverythingThatIsShownBeforeAFreeze) {
    const TokenStream stream("I0 P4 B2 b1 b3 P8 B6 b5 b7");
    const StillSites sites = sitesOf(stream, 0, 9, {3, 9});
    EXPECT_EQ(sites.stored.size(), 9u);
    EXPECT_EQ(sites.hiddenRun, 0u);
    EXPECT_THAT(sites.freezes,
                ElementsAre(StillSite{PictureType::nonReference, 4, 3, std::nullopt, 2, 4},
                            StillSite{PictureType::nonReference, 9, 8, std::nullopt, 5, std::nullopt}));
}

TEST(StillSites, AreIdrPicturesOnlyBeforeIdrPictures) {
    const TokenStream closed("I0 P1 I2 P3");
    EXPECT_THAT(sitesOf(closed, 0, 4, {0, 2}).freezes,
                ElementsAre(StillSite{PictureType::idr, 0, std::nullopt, 0, std::nullopt, 0},
                            StillSite{PictureType::idr, 2, 1, 2, 1, 2}));
    const TokenStream open("i0 P1");
    EXPECT_THAT(sitesOf(open, 0, 2, {0}).freezes,
                ElementsAre(StillSite{PictureType::recoveryPoint, 0, std::nullopt, 0, std::nullopt, 0}));
}

TEST(StillSites, StoreReferencesOfARangeAndCoverThem) {
    const TokenStream stream("I0 P4 B2 b1 b3 P8 B6 b5 b7");
    const StillSites sites = sitesOf(stream, 3, 4, {}); // the picture of rank 3 alone
    EXPECT_THAT(sites.stored, ElementsAre(0, 1, 2, 4)) << "without b1, which nothing refers to";
    EXPECT_EQ(sites.hiddenRun, 3u);
    EXPECT_EQ(sites.leadIn, (StillSite{PictureType::idr, 0, std::nullopt, 0, std::nullopt, std::nullopt}));
    EXPECT_EQ(sites.cover, (StillSite{PictureType::nonReference, 3, 2, std::nullopt, 2, 4}));
    EXPECT_EQ(sites.leadOut, (StillSite{PictureType::nonReference, 4, 4, std::nullopt, 1, std::nullopt}));
}

TEST(StillSites, TakeTheSyncMarkFromOpenGroupsThatAFreezeInterrupts) {
    const TokenStream stream("I0 P2 b1 i6 B4 b3 b5 I7 P8");
    EXPECT_THAT(sitesOf(stream, 0, 9, {4}).notSync, ElementsAre(3)) << "decoded before the still";
    EXPECT_THAT(sitesOf(stream, 0, 9, {6}).notSync, ElementsAre(3)) << "shown after the still";
    EXPECT_TRUE(sitesOf(stream, 0, 9, {2, 7}).notSync.empty());
}

} // namespace
} // namespace zelvra::passthrough
