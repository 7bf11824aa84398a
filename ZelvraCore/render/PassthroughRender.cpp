// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/PassthroughRender.h"

#include "ZelvraCore/files/FolderOf.h"
#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/file/ContainerForms.h"
#include "ZelvraCore/passthrough/file/MovieFileWriter.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/passthrough/video/H264SpliceTrack.h"
#include "ZelvraCore/passthrough/video/HevcSpliceTrack.h"
#include "ZelvraCore/passthrough/video/SourceVideo.h"
#include "ZelvraCore/passthrough/video/StillTrack.h"
#include "ZelvraCore/render/SoundTrackBuilder.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace zelvra {

namespace {

using passthrough::CannotPassThrough;
using passthrough::VideoCut;

using Builder = std::unique_ptr<passthrough::VideoTrackBuilder>;

template <class Track>
Builder makeBuilder(const passthrough::SourceVideo& source) {
    return std::make_unique<Track>(source);
}

/// The strategies of putting freezes into a coded stream, the best one first. Each throws CannotPassThrough
/// if it does not suit the source; if none does the movie is re-encoded.
std::vector<Builder (*)(const passthrough::SourceVideo&)> strategiesFor(VideoCodec codec) {
    if (codec == VideoCodec::hevc) {
        return {makeBuilder<passthrough::HevcSpliceTrack>};
    }
    return {makeBuilder<passthrough::StillTrack>, makeBuilder<passthrough::H264SpliceTrack>};
}

/// What the source's edit shows of its video.
isobmff::ShownPiece shownPiece(const isobmff::Track& track, std::uint32_t movieTimescale) {
    const isobmff::TrackTimeline timeline(track, movieTimescale);
    if (timeline.pieces().size() != 1) {
        throw CannotPassThrough("it has been edited into several pieces");
    }
    return timeline.pieces().front();
}

/// Tracks are left out whose times would no longer be true, and those that are neither seen nor heard.
void noticeDroppedTracks(const isobmff::Movie& movie, const isobmff::Track* video,
                         const std::function<void(const std::string&)>& notice) {
    const isobmff::Track* sound = movie.firstTrack(isobmff::soundHandler);
    std::string kinds;
    for (const isobmff::Track& track : movie.tracks) {
        if (&track != video && &track != sound) {
            kinds += (kinds.empty() ? "" : ", ") + fourCharString(track.handler);
        }
    }
    if (!kinds.empty() && notice) {
        notice("Only the first video and sound tracks are exported; left out: " + kinds + ".");
    }
}

} // namespace

/// The picture side of the export, with the conversion between the movie's timeline and the track's. All of
/// it is decided when it is made.
class PassthroughRender::Pictures {
public:
    Pictures(const Asset& source, const SourceInfo& info, const RenderPlan& plan, const Timeline& timeline)
        : video_{media::bytesOf(source), media::requiredVideoTrackOf(source)},
          frames_(source.frames()),
          shown_(shownPiece(video_.track, media::movieOf(source).timescale)),
          planned_(prepare(plan.freezeCodec, timeline, info.frameDuration)) {}

    passthrough::VideoTrackBuilder& builder() const { return *planned_.builder; }
    const passthrough::VideoPlan& plan() const { return planned_.plan; }
    const VideoCut& cut() const { return planned_.cut; }
    std::int32_t outputTimescale() const {
        return static_cast<std::int32_t>(video_.track.timescale * plan().samples.timescaleFactor);
    }
    bool hasLeadIn() const { return plan().samples.has(passthrough::PlannedSample::Kind::leadIn); }
    bool hasLeadOut() const { return plan().samples.has(passthrough::PlannedSample::Kind::leadOut); }

    bool freezesFirst() const {
        return !cut().freezes.empty() && cut().freezes.front().position == cut().firstRank;
    }
    bool freezesLast() const {
        return !cut().freezes.empty() && cut().freezes.back().position == cut().endRank;
    }
    CMTime firstShown() const { return presentation(cut().start); }
    CMTime lastShown() const {
        return maximum(presentation(builder().pictures().timeAtRank(cut().endRank - 1)), firstShown());
    }

    bool hasHold() const {
        return std::ranges::any_of(cut().freezes, [](const auto& f) { return f.heldTicks.has_value(); });
    }

private:
    struct Planned {
        Builder builder;
        VideoCut cut;
        passthrough::VideoPlan plan;
    };

    /// If no strategy suits, the reason for the user is the last one's, which has the fewest demands.
    Planned prepare(VideoCodec codec, const Timeline& timeline, const CMTime& frameDuration) const {
        const auto strategies = strategiesFor(codec);
        for (auto strategy = strategies.begin();; ++strategy) {
            try {
                Builder builder = (*strategy)(video_);
                const VideoCut cut = cutOf(timeline, frameDuration, builder->pictures());
                passthrough::VideoPlan planned = builder->plan(cut);
                return {std::move(builder), cut, std::move(planned)};
            } catch (const CannotPassThrough&) {
                if (std::next(strategy) == strategies.end()) {
                    throw;
                }
            }
        }
    }

    /// The timeline in terms of the track.
    VideoCut cutOf(const Timeline& timeline, const CMTime& frameDuration,
                   const passthrough::SourcePictures& pictures) const {
        using Kind = TimelineSegment::Kind;
        const auto first = std::ranges::find(timeline.segments, Kind::source, &TimelineSegment::kind);
        if (first == timeline.segments.end()) {
            throw CannotPassThrough("the range holds no picture");
        }
        const auto rankOf = [&](std::size_t picture) {
            return pictures.rankAfter(media(frames_.frame(picture).time)) - 1;
        };
        std::size_t nextPicture = first->firstPicture;
        VideoCut cut;
        cut.start = cut.end = media(first->sourceStart);
        cut.firstRank = cut.endRank = rankOf(nextPicture);
        cut.frameDuration = frameDuration;
        for (const TimelineSegment& segment : timeline.segments) {
            if (segment.kind == Kind::freeze) {
                cut.freezes.push_back({.position = cut.endRank,
                                       .frames = freezeFrameCount(segment.duration, frameDuration),
                                       .highlight = segment.highlightIndex});
            } else if (segment.firstPicture < nextPicture) {
                cut.freezes.push_back({.position = cut.endRank, .heldTicks = ticks(segment.duration)});
            } else {
                nextPicture = segment.endPicture;
                cut.endRank = rankOf(nextPicture - 1) + 1;
                cut.end = media(segment.sourceStart + segment.duration);
            }
        }
        return cut;
    }

    std::int64_t ticks(const CMTime& time) const {
        return time.converted(static_cast<std::int32_t>(video_.track.timescale)).value;
    }

    std::int64_t media(const CMTime& presentationTime) const {
        return ticks(presentationTime) - shown_.start + shown_.mediaStart;
    }

    CMTime presentation(std::int64_t mediaTime) const {
        return {mediaTime - shown_.mediaStart + shown_.start,
                static_cast<std::int32_t>(video_.track.timescale)};
    }

    passthrough::SourceVideo video_;
    const FrameIndex& frames_;
    isobmff::ShownPiece shown_; ///< the only one
    Planned planned_;
};

PassthroughRender::PassthroughRender(const Asset& source, const SourceInfo& info, const RenderPlan& plan,
                                     const Timeline& timeline)
    : source_(source),
      timeline_(timeline),
      pictures_(std::make_unique<const Pictures>(source, info, plan, timeline)) {}

PassthroughRender::~PassthroughRender() = default;

PassthroughRender::EdgeFrames PassthroughRender::edgeFrames() const {
    EdgeFrames frames;
    if (pictures_->hasLeadIn() && !pictures_->freezesFirst()) {
        frames.leadIn = pictures_->firstShown();
    }
    if (pictures_->hasLeadOut() && !pictures_->freezesLast()) {
        frames.leadOut = pictures_->lastShown();
    }
    if (pictures_->hasHold()) {
        frames.hold = pictures_->lastShown();
    }
    return frames;
}

FreezeEncoding PassthroughRender::freezeEncoding() const {
    FreezeEncoding encoding = pictures_->builder().freezeEncoding();
    if (encoding.codedFrame) {
        // Some cameras code whole blocks without a cropping rectangle; only the sample entry gives the
        // picture's size, and decoders use that.
        FreezeEncoding::CodedFrame& frame = *encoding.codedFrame;
        frame.cropRight = frame.width - frame.cropLeft - source_.videoFormat().width;
        frame.cropBottom = frame.height - frame.cropTop - source_.videoFormat().height;
        if (frame.cropRight < 0 || frame.cropBottom < 0) {
            throw CannotPassThrough("its pictures are larger than its coding says");
        }
    }
    return encoding;
}

/// The second and the third step; lives for one call.
class PassthroughRender::Writing {
public:
    Writing(const PassthroughRender& render, const Job& job)
        : source_(render.source_),
          pictures_(*render.pictures_),
          job_(job),
          freezeClips_(clipsFor(pictures_.cut().freezes)) {}

    /// `nullopt` for a movie without sound.
    std::optional<ChosenSound> sound(const std::vector<SoundPiece>& pieces) const {
        if (!job_.includeAudio || !source_.hasAudio()) {
            return std::nullopt;
        }
        ChosenSound sound = chooseSound(source_, pieces, job_.container, job_.stop);
        if (sound.notice && job_.notice) {
            job_.notice(*sound.notice);
        }
        return sound;
    }

    passthrough::OutputMovie build(SoundTrackBuilder* sound, passthrough::SpoolStore& spool) const {
        const isobmff::Movie& movie = media::movieOf(source_);
        passthrough::OutputMovie output;
        output.container = job_.container;
        output.creationTime = movie.creationTime;
        output.userData = passthrough::userDataFor(job_.container, movie.userData);
        const std::int64_t editStart = editStartWith(sound);
        output.tracks.push_back(buildVideo(editStart, spool));
        if (sound) {
            output.tracks.push_back(sound->build({editStart, pictures_.outputTimescale()}, spool));
        }
        return output;
    }

private:
    /// Where the picture's edit starts: later than planned if the sound's decoder needs longer to warm up.
    std::int64_t editStartWith(const SoundTrackBuilder* sound) const {
        const std::int64_t planned = pictures_.plan().samples.editStart;
        return sound ? std::max(planned,
                                sound->lead().converted(pictures_.outputTimescale(), Rounding::up).value)
                     : planned;
    }

    passthrough::OutputTrack buildVideo(std::int64_t editStart, passthrough::SpoolStore& spool) const {
        const passthrough::VideoPlan& plan = pictures_.plan();
        constexpr std::size_t samplesOfAnHour = 100'000;
        if (plan.samples.samples.size() > samplesOfAnHour) {
            source_.closeIdleReaders(); // the tables of a long movie take their place
        }
        passthrough::OutputTrack video = pictures_.builder().build(plan, editStart, clips(), spool);
        video.sampleEntry =
            passthrough::visualEntryFor(job_.container, video.sampleEntry, pictures_.builder().fullRange());
        video.userData = passthrough::userDataFor(job_.container, media::videoTrackOf(source_)->userData);
        return video;
    }

    /// One for each freeze and each hold of the cut.
    std::vector<std::filesystem::path> clipsFor(std::span<const VideoCut::Freeze> freezes) const {
        std::vector<std::filesystem::path> clips;
        for (const VideoCut::Freeze& freeze : freezes) {
            clips.push_back(freeze.heldTicks ? job_.holdClip.value() : job_.freezeClips[freeze.highlight]);
        }
        return clips;
    }

    passthrough::VideoTrackBuilder::Clips clips() const {
        passthrough::VideoTrackBuilder::Clips clips{.freezes = freezeClips_, .leadIn = {}, .leadOut = {}};
        if (pictures_.hasLeadIn()) {
            clips.leadIn = pictures_.freezesFirst() ? freezeClips_.front() : job_.leadInClip.value();
        }
        if (pictures_.hasLeadOut()) {
            clips.leadOut = pictures_.freezesLast() ? freezeClips_.back() : job_.leadOutClip.value();
        }
        return clips;
    }

    const Asset& source_;
    const Pictures& pictures_;
    const Job& job_;
    std::vector<std::filesystem::path> freezeClips_; ///< holds included
};

void PassthroughRender::write(const Job& job) const {
    noticeDroppedTracks(media::movieOf(source_), media::videoTrackOf(source_), job.notice);
    passthrough::SpoolStore spool(files::folderOf(job.output));
    const Writing writing(*this, job);
    const std::optional<ChosenSound> sound = writing.sound(timeline_.sound);
    const passthrough::OutputMovie movie = writing.build(sound ? sound->builder.get() : nullptr, spool);
    writeMovieFile(movie, {media::bytesOf(source_), spool}, job.output, job.progress, job.stop);
}

} // namespace zelvra
