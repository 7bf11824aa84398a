// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/PassthroughRender.h"

#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/file/ContainerForms.h"
#include "ZelvraCore/passthrough/file/MovieFileWriter.h"
#include "ZelvraCore/passthrough/file/SpoolStore.h"
#include "ZelvraCore/passthrough/video/H264SpliceTrack.h"
#include "ZelvraCore/passthrough/video/HevcSpliceTrack.h"
#include "ZelvraCore/passthrough/video/SourceVideo.h"
#include "ZelvraCore/passthrough/video/StillTrack.h"
#include "ZelvraCore/records/ZVError.h"
#include "ZelvraCore/render/SoundTrack.h"

#include <algorithm>

namespace zelvra {

namespace {

using passthrough::CannotPassThrough;
using passthrough::VideoCut;

/// Stores that the movie's samples lie in.
constexpr std::uint32_t spoolStore = 1;

using Builder = std::unique_ptr<passthrough::VideoTrackBuilder>;

template <class Track>
Builder makeBuilder(const passthrough::SourceVideo& source) {
    return std::make_unique<Track>(source);
}

/// The ways to put freezes into a coded stream, the best one first. Each throws CannotPassThrough where it
/// will not do; where none does the movie is re-encoded.
std::vector<Builder (*)(const passthrough::SourceVideo&)> waysFor(VideoCodec codec) {
    if (codec == VideoCodec::hevc) {
        return {makeBuilder<passthrough::HevcSpliceTrack>};
    }
    return {makeBuilder<passthrough::StillTrack>, makeBuilder<passthrough::H264SpliceTrack>};
}

/// What the source's edit shows of its video.
struct ShownPart {
    isobmff::ShownPiece piece;
    std::uint32_t firstSample = 0; ///< in order of presentation
    std::uint32_t lastSample = 0;
};

ShownPart shownPart(const isobmff::Track& track, std::uint32_t movieTimescale) {
    const isobmff::TrackTimeline timeline(track, movieTimescale);
    if (timeline.pieces().size() != 1 || timeline.shown().empty()) {
        throw CannotPassThrough("it has been edited into several pieces");
    }
    return {timeline.pieces().front(), timeline.shown().front().sample, timeline.shown().back().sample};
}

/// Tracks whose times would no longer be true, and all that nobody sees or hears.
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

/// The picture side of the export, with the way between the movie's timeline and the track's.
class PassthroughRender::Pictures {
public:
    Pictures(const Asset& source, const SourceInfo& info, const RenderPlan& plan)
        : video_{source.bytes(), *source.videoTrack()},
          shown_(shownPart(video_.track, source.movie().timescale)) {
        if (video_.track.isEncrypted()) {
            throw MediaError(MediaError::Cause::unsupported, "the movie is encrypted");
        }
        planBestWay(info, plan);
    }

    passthrough::VideoTrackBuilder& builder() { return *builder_; }
    passthrough::SamplePlan& plan() { return *plan_; }
    const VideoCut& cut() const { return cut_; }
    std::int32_t outputTimescale() const {
        return static_cast<std::int32_t>(video_.track.timescale * plan_->timescaleFactor);
    }

    bool freezesFirst() const {
        return !cut_.freezes.empty() && cut_.freezes.front().position == cut_.firstRank;
    }
    bool freezesLast() const { return !cut_.freezes.empty() && cut_.freezes.back().position == cut_.endRank; }
    CMTime firstShown() const { return presentation(cut_.start); }
    CMTime lastShown() const {
        return maximum(presentation(builder_->pictures().timeAtRank(cut_.endRank - 1)), firstShown());
    }

    /// Pictures freeze where they appear, and the sound stops with them; after the last picture it may go on
    /// until `end`.
    std::vector<SoundPiece> soundPieces(const CMTime& end) const {
        std::vector<SoundPiece> pieces;
        CMTime cursor = presentation(cut_.start);
        auto playUntil = [&](const CMTime& time) {
            if (time > cursor) {
                pieces.push_back({SoundPiece::Kind::source, cursor, time - cursor});
                cursor = time;
            }
        };
        for (const VideoCut::Freeze& freeze : cut_.freezes) {
            playUntil(presentation(cut_.momentOf(freeze.position, builder_->pictures())));
            const CMTime length(cut_.frameDuration.value * freeze.frames, cut_.frameDuration.timescale);
            pieces.push_back({SoundPiece::Kind::silence, CMTime::zero(), length});
        }
        playUntil(end);
        return pieces;
    }

private:
    /// The reason that is told where no way will do is the last one's, which asks for least.
    void planBestWay(const SourceInfo& info, const RenderPlan& plan) {
        const auto ways = waysFor(plan.freezeCodec);
        for (auto way = ways.begin(); plan_ == nullptr; ++way) {
            try {
                builder_ = (*way)(video_);
                cut(info, plan);
                plan_ = &builder_->plan(cut_);
            } catch (const CannotPassThrough&) {
                if (std::next(way) == ways.end()) {
                    throw;
                }
            }
        }
    }

    void cut(const SourceInfo& info, const RenderPlan& plan) {
        const passthrough::SourcePictures& pictures = builder_->pictures();
        const passthrough::VisiblePictures visible{
            pictures.rankOf(shown_.firstSample), pictures.rankOf(shown_.lastSample) + 1,
            std::min(shown_.piece.mediaEnd(), pictures.endAtRank(pictures.rankOf(shown_.lastSample)))};
        std::vector<passthrough::FreezeMoment> moments;
        moments.reserve(plan.highlights.size());
        for (const Highlight& highlight : plan.highlights) {
            moments.push_back(
                {media(highlight.timestamp), freezeFrameCount(highlight.duration, info.frameDuration)});
        }
        cut_ = cutVideo(pictures, visible, media(maximum(plan.rangeStart, CMTime::zero())),
                        media(minimum(plan.rangeEnd, info.duration)), moments, info.frameDuration);
    }

    std::int64_t media(const CMTime& presentationTime) const {
        const CMTime ticks = presentationTime.converted(static_cast<std::int32_t>(video_.track.timescale));
        return ticks.value - shown_.piece.start + shown_.piece.mediaStart;
    }

    CMTime presentation(std::int64_t mediaTime) const {
        return {mediaTime - shown_.piece.mediaStart + shown_.piece.start,
                static_cast<std::int32_t>(video_.track.timescale)};
    }

    passthrough::SourceVideo video_;
    ShownPart shown_;
    std::unique_ptr<passthrough::VideoTrackBuilder> builder_;
    VideoCut cut_;
    passthrough::SamplePlan* plan_ = nullptr;
};

PassthroughRender::PassthroughRender(const Asset& source, const SourceInfo& info, const RenderPlan& plan)
    : source_(source), info_(info), plan_(plan), pictures_(std::make_unique<Pictures>(source, info, plan)) {
    if (pictures_->builder().wantsLeadIn() && !pictures_->freezesFirst()) {
        extraFrames_.push_back(pictures_->firstShown());
    }
    if (pictures_->builder().wantsLeadOut() && !pictures_->freezesLast()) {
        extraFrames_.push_back(pictures_->lastShown());
    }
}

PassthroughRender::~PassthroughRender() = default;

FreezeEncoding PassthroughRender::freezeEncoding() const {
    FreezeEncoding encoding = pictures_->builder().freezeEncoding();
    if (encoding.codedFrame) {
        // Some cameras code whole blocks without a cropping rectangle and give the picture's size in the
        // sample entry alone; decoders go by that.
        FreezeEncoding::CodedFrame& frame = *encoding.codedFrame;
        frame.cropRight = frame.width - frame.cropLeft - source_.videoFormat().width;
        frame.cropBottom = frame.height - frame.cropTop - source_.videoFormat().height;
        if (frame.cropRight < 0 || frame.cropBottom < 0) {
            throw CannotPassThrough("its pictures are larger than its coding says");
        }
    }
    return encoding;
}

void PassthroughRender::write(const Job& job) {
    const isobmff::Movie& movie = source_.movie();
    passthrough::OutputMovie output;
    output.container = job.container;
    output.creationTime = movie.creationTime;
    output.userData = passthrough::userDataFor(job.container, movie.userData);
    noticeDroppedTracks(movie, source_.videoTrack(), job.notice);

    const std::filesystem::path folder = job.output.has_parent_path() ? job.output.parent_path() : ".";
    const auto spool = std::make_shared<passthrough::SpoolStore>(folder, spoolStore);

    std::optional<SoundTrack> sound;
    if (job.includeAudio && source_.hasAudio()) {
        const std::vector<SoundPiece> pieces =
            pictures_->soundPieces(minimum(plan_.rangeEnd, info_.duration));
        sound.emplace(source_, pieces, job.container, job.stop);
        if (sound->notice() && job.notice) {
            job.notice(*sound->notice());
        }
        delayEdit(pictures_->plan(),
                  sound->lead().converted(pictures_->outputTimescale(), Rounding::up).value);
    }
    const CMTime editStart(pictures_->plan().editStart, pictures_->outputTimescale());

    passthrough::VideoTrackBuilder::Clips clips{.freezes = job.freezeClips, .leadIn = {}, .leadOut = {}};
    std::size_t extra = 0;
    if (pictures_->builder().wantsLeadIn()) {
        clips.leadIn = pictures_->freezesFirst() ? job.freezeClips.front() : job.extraClips[extra++];
    }
    if (pictures_->builder().wantsLeadOut()) {
        clips.leadOut = pictures_->freezesLast() ? job.freezeClips.back() : job.extraClips[extra];
    }
    constexpr std::size_t samplesOfAnHour = 100'000;
    if (pictures_->plan().samples.size() > samplesOfAnHour) {
        source_.closeIdleReaders(); // the tables of a long movie take their place
    }
    passthrough::OutputTrack& video = output.tracks.emplace_back(pictures_->builder().build(clips, *spool));
    video.sampleEntry =
        passthrough::visualEntryFor(job.container, video.sampleEntry, pictures_->builder().fullRange());
    video.userData = passthrough::userDataFor(job.container, source_.videoTrack()->userData);
    if (sound) {
        output.tracks.push_back(sound->build(editStart, *spool));
    }
    //  The source's bytes are borrowed from the asset, which outlives the write.
    const auto source = std::shared_ptr<const files::ByteSource>(std::shared_ptr<void>(), &source_.bytes());
    writeMovieFile(output, {source, spool}, job.output, job.progress, job.stop);
}

} // namespace zelvra
