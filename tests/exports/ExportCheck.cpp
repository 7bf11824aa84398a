// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/ExportCheck.h"

#include "ZelvraCore/RenderPlan.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/NumberedSound.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

namespace zelvra::test {

namespace {
constexpr double tolerance = 0.0015; // some containers have ticks of a millisecond

/// One past the last frame that is shown. A freeze in a sound-only tail makes the pictures last as long as
/// the sound.
int endOf(const ExportJob& job) {
    const NumberedMovie& movie = job.movie;
    if (job.range) {
        return job.range->second;
    }
    const bool freezesInTail =
        std::ranges::any_of(job.freezes, [&](const auto& freeze) { return freeze.frame > movie.frames; });
    return freezesInTail ? static_cast<int>(std::lround(movie.soundSeconds * movie.rate / movie.ratePer))
                         : movie.frames;
}

} // namespace

ExportedMovie::ExportedMovie(const ExportJob& job, const std::filesystem::path& folder)
    : job_(job),
      source_(job.file.empty() ? movieFile(job.movie) : job.file),
      file_(folder / ("export" + job.extension)) {
    const NumberedMovie& movie = job.movie;
    RenderOptions options;
    options.includeAudio = job.includeAudio;
    options.notice = [this](const std::string& line) { notices_.push_back(line); };
    const int first = job.range ? job.range->first : 0;
    const int end = endOf(job);
    if (job.range) {
        options.sourceRange = CMTimeRange::fromStartToEnd(movie.timeOf(first), movie.timeOf(end));
    }
    double frozen = 0;
    const double frame = static_cast<double>(movie.ratePer) / movie.rate;
    auto outputTime = [&](int number) {
        return (movie.timeOf(number) - movie.timeOf(first)).seconds() + frozen;
    };
    int next = first;
    auto play = [&](int until) {
        for (; next < until; ++next) {
            const bool goesOn = next >= movie.frames && !expected_.empty() && !expected_.back().marker;
            expected_.push_back(
                {outputTime(next), std::min(next, movie.frames - 1), std::nullopt, next, goesOn});
        }
    };
    for (std::size_t k = 0; k < job.freezes.size(); ++k) {
        const ExportJob::Freeze& freeze = job.freezes[k];
        const int marker = static_cast<int>(k) % 16;
        const CMTime duration = CMTime::fromSeconds(freeze.seconds, 600);
        highlights_.push_back(
            markerHighlight(marker, movie.timeOf(freeze.frame), duration,
                            {static_cast<double>(movie.width), static_cast<double>(movie.height)}));
        play(freeze.frame);
        const std::int64_t frames = freezeFrameCount(duration, CMTime(movie.ratePer, movie.rate));
        const double start = outputTime(freeze.frame);
        for (std::int64_t i = 0; i < frames; ++i) {
            expected_.push_back(
                {start + static_cast<double>(i) * frame, std::min(freeze.frame, movie.frames - 1), marker});
        }
        frozen += static_cast<double>(frames) * frame;
    }
    play(end);
    duration_ = outputTime(end);
    renderHighlights(source_, highlights_, file_, options);
}

void ExportedMovie::expectRightPictures(const std::filesystem::path& file, const std::string& tolerated,
                                        const std::vector<std::string>& decoderArguments) const {
    SCOPED_TRACE(testing::Message() << file.filename()
                                    << (decoderArguments.empty() ? "" : " decoded strictly"));
    const ShownMovie shown = showMovie(file, decoderArguments);
    for (const std::string& fault : shown.faults) {
        EXPECT_TRUE(!tolerated.empty() && fault.find(tolerated) != std::string::npos) << fault;
    }
    ASSERT_FALSE(shown.frames.empty());
    const double start = shown.frames.front().time.seconds();
    std::size_t k = 0;
    for (const ShownFrame& frame : shown.frames) {
        const double time = frame.time.seconds() - start;
        // A still covers the frames up to the next still. Only frames of a freeze may be skipped, and not its
        // last one.
        while (k + 1 < expected_.size() && expected_[k].time < time - tolerance &&
               (expected_[k].goesOn ||
                (expected_[k].marker && k > 0 && expected_[k - 1].marker == expected_[k].marker &&
                 expected_[k + 1].marker == expected_[k].marker))) {
            ++k;
        }
        ASSERT_LT(k, expected_.size()) << "more than expected: " << frame;
        const ExpectedFrame& expected = expected_[k++];
        ASSERT_TRUE(std::abs(expected.time - time) <= tolerance && frame.number == expected.number &&
                    frame.marker == expected.marker)
            << frame << " after " << start << ", expected " << expected.number
            << (expected.marker ? " frozen" : "") << " at " << expected.time;
    }
    while (k < expected_.size() && expected_[k].goesOn) {
        ++k;
    }
    EXPECT_EQ(k, expected_.size()) << "pictures are missing at the end";
}

void ExportedMovie::expectRightOnScreen(const std::filesystem::path& file,
                                        const std::vector<std::string>& decoderArguments) const {
    ShownMovie shown = showMovie(file, decoderArguments);
    EXPECT_EQ(shown.faults, std::vector<std::string>());
    ASSERT_FALSE(shown.frames.empty());
    const CMTime start = shown.frames.front().time;
    std::ranges::stable_sort(shown.frames, {}, &ShownFrame::time);
    const double frame = static_cast<double>(job_.movie.ratePer) / job_.movie.rate;
    for (const ExpectedFrame& expected : expected_) {
        for (const double part : {0.01, 0.5, 0.93}) {
            const double time = expected.time + part * frame;
            const auto next = std::ranges::find_if(
                shown.frames, [&](const ShownFrame& f) { return (f.time - start).seconds() > time; });
            ASSERT_NE(next, shown.frames.begin());
            const ShownFrame& seen = *std::prev(next);
            ASSERT_TRUE(seen.number == expected.number && seen.marker == expected.marker)
                << seen << " after " << start.seconds() << ", expected " << expected.number
                << (expected.marker ? " frozen" : "") << " at " << time;
        }
    }
    EXPECT_LT((shown.frames.back().time - start).seconds(), duration_);
}

const ExpectedFrame& ExportedMovie::at(double time) const {
    const auto after = std::ranges::upper_bound(expected_, time, {}, &ExpectedFrame::time);
    return *std::prev(after);
}

void ExportedMovie::expectRightSeeks(const std::filesystem::path& file, int seeks, double ahead) const {
    for (int i = 0; i < seeks; ++i) {
        // Aims at the middle of a frame. ffmpeg returns the next frame that starts, so just before a start is
        // asked for.
        const auto& target =
            expected_[expected_.size() * static_cast<std::size_t>(i) / static_cast<std::size_t>(seeks)];
        if (target.goesOn) {
            continue;
        }
        const auto frame = seekFrame(file, CMTime::fromSeconds(std::max(0.0, target.time - ahead), 90000));
        ASSERT_TRUE(frame) << "nothing at " << target.time;
        EXPECT_TRUE(frame->number == target.number || frame->marker == target.marker)
            << *frame << " for " << target.time;
        const ExpectedFrame& belongs = at(frame->time.seconds() + tolerance);
        EXPECT_EQ(frame->number, belongs.number) << *frame;
        EXPECT_EQ(frame->marker, belongs.marker) << *frame;
    }
}

void ExportedMovie::expectRightSound(double maxOffset) const {
    const MovieSound sound = readSound(file_);
    ASSERT_FALSE(sound.samples.empty());
    const int rate = sound.rate;
    const double frame = static_cast<double>(job_.movie.ratePer) / job_.movie.rate;
    const std::vector<float> source =
        numberedSound(static_cast<std::int64_t>((job_.movie.timeOf(endOf(job_)).seconds() + 1) * rate), rate);
    for (std::size_t k = 0; k < expected_.size(); ++k) {
        const bool freezeBefore = k > 0 && expected_[k - 1].marker.has_value();
        const bool freezeAfter = k + 1 < expected_.size() && expected_[k + 1].marker.has_value();
        const auto heard = sound.between(expected_[k].time, frame);
        if (expected_[k].marker) {
            // A packet and its overlap with the next may extend into a freeze.
            if (freezeBefore && freezeAfter && k > 1 && expected_[k - 2].marker && !heard.empty()) {
                EXPECT_LT(peak(heard), 0.01) << "at " << expected_[k].time;
            }
            continue;
        }
        if (freezeBefore || freezeAfter || k == 0 || k + 1 == expected_.size()) {
            continue;
        }
        const auto wanted =
            static_cast<std::int64_t>(std::llround(job_.movie.timeOf(expected_[k].heard).seconds() * rate));
        const auto found = locateSound(heard, source, wanted, rate / 10);
        ASSERT_TRUE(found) << "nothing to be heard at " << expected_[k].time;
        EXPECT_LE(std::abs(static_cast<double>(found->sample - wanted)), maxOffset * rate + 2)
            << "at " << expected_[k].time;
    }
}

void ExportedMovie::expectSourcePicturesUntouched() const {
    std::multiset<std::string> exported;
    for (const HashedFrame& frame : hashFrames(file_)) {
        exported.insert(frame.md5);
    }
    const int first = job_.range ? job_.range->first : 0;
    const int end = std::min(endOf(job_), job_.movie.frames);
    const std::vector<HashedFrame> source = hashFrames(source_);
    for (int i = first; i < end; ++i) {
        EXPECT_TRUE(exported.contains(source[static_cast<std::size_t>(i)].md5)) << "picture " << i;
    }
}

} // namespace zelvra::test
