// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/ClipWork.h"

#include "tests/ZelvraApp/annotations/Moments.h"

#include <gmock/gmock.h>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(ClipWork, IsUnexportedUntilAnExportHasWrittenItAsItIs) {
    ClipWork work;
    Annotations& annotations = work.annotations;
    EXPECT_FALSE(work.hasUnexportedWork());
    annotations.setTrim(range(0, 9));
    EXPECT_FALSE(work.hasUnexportedWork()) << "a trim alone is no work";
    annotations.commit(highlightAt(1));
    EXPECT_TRUE(work.hasUnexportedWork());
    work.exported.note(annotations);
    EXPECT_FALSE(work.hasUnexportedWork());
    annotations.dragTrimEnd(8, sessionTime(10));
    EXPECT_TRUE(work.hasUnexportedWork());
    work.exported.note(annotations);
    annotations.highlights[0].shape.strokeWidthRatio *= 2;
    EXPECT_TRUE(work.hasUnexportedWork());
}

TEST(ClipWork, OfClipsIsComparedWithTheExportOfClips) {
    ClipWork work;
    Annotations& annotations = work.annotations;
    annotations.commit(highlightAt(1));
    work.exported.note(annotations);
    annotations.markedClips.push_back(clipOf(2, 4));
    EXPECT_TRUE(work.hasUnexportedWork());
    work.exported.note(annotations);
    EXPECT_FALSE(work.hasUnexportedWork()) << "both exports count";
    annotations.editMarkedClip(annotations.markedClips[0].id);
    EXPECT_FALSE(work.hasUnexportedWork());
    annotations.commit(highlightAt(3));
    EXPECT_TRUE(work.hasUnexportedWork()) << "edits that are not saved count";
    annotations.markCurrentClip();
    EXPECT_TRUE(work.hasUnexportedWork());
    work.exported.note(annotations);
    EXPECT_FALSE(work.hasUnexportedWork());
    annotations.unmark(annotations.markedClips[0].id);
    EXPECT_FALSE(work.hasUnexportedWork()) << "nothing is lost that was not removed";
}

TEST(ClipWork, OfTwoTimesIsJoinedWithoutLoss) {
    ClipWork earlier;
    earlier.defaults.durationSec = 7;
    earlier.annotations.markedClips = {clipOf(2, 4)};
    earlier.annotations.commit(highlightAt(8));
    earlier.exported.note(earlier.annotations);
    earlier.written[earlier.annotations.markedClips[0].id] = {"/clip.mov", 5};
    EXPECT_TRUE(identical(merged(earlier, {}), earlier)) << "nothing was done since";
    EXPECT_TRUE(identical(merged({}, earlier), earlier));

    earlier.annotations.editMarkedClip(earlier.annotations.markedClips[0].id);
    earlier.annotations.commit(highlightAt(3)); // an edit that was not saved back
    ClipWork later;
    later.annotations.commit(highlightAt(5));
    later.annotations.setTrim(range(0, 9));
    later.annotations.markedClips = {clipOf(6, 7)};
    later.annotations.editMarkedClip(later.annotations.markedClips[0].id);
    const ClipWork both = merged(earlier, later);
    EXPECT_THAT(moments(both.annotations.looseHighlights()), ElementsAre(5, 8));
    EXPECT_THAT(spans(both.annotations.markedClips), ElementsAre(Pair(2, 4), Pair(6, 7)));
    EXPECT_THAT(moments(both.annotations.markedClips[0].highlights), ElementsAre(3));
    EXPECT_EQ(both.annotations.editingClipID, later.annotations.editingClipID);
    EXPECT_EQ(both.written, earlier.written);
    EXPECT_EQ(both.exported.markedClips.size(), 1U);
    EXPECT_EQ(both.highlightCount(), 3U);
    EXPECT_TRUE(both.hasUnexportedWork());
    EXPECT_TRUE(identical(merged(both, both), both)) << "once more changes nothing";
}

} // namespace
} // namespace zelvra::test
