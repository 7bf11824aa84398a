// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/ClipWork.h"

#include "tests/ZelvraApp/annotations/Moments.h"

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

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

} // namespace
} // namespace zelvra::test
