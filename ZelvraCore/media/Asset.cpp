// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/Asset.h"

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/isobmff/TrackTimeline.h"
#include "ZelvraCore/media/AssetDemuxers.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/media/FrameDuration.h"
#include "ZelvraCore/media/HiddenPictures.h"
#include "ZelvraCore/media/ffmpeg/LibraryVersions.h"
#include "ZelvraCore/media/ffmpeg/PictureDecoder.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <limits>
#include <mutex>
#include <string_view>
#include <utility>

extern "C" {
#include <libavutil/display.h>
}

namespace zelvra {

namespace media {

namespace {

/// Demuxers that are not in use. Any thread.
class DemuxerPool {
public:
    std::unique_ptr<Demuxer> take() {
        const std::scoped_lock lock(mutex_);
        if (idle_.empty()) {
            return nullptr;
        }
        std::unique_ptr<Demuxer> demuxer = std::move(idle_.back());
        idle_.pop_back();
        return demuxer;
    }

    void giveBack(std::unique_ptr<Demuxer> demuxer) {
        constexpr std::size_t mostIdle = 4;
        const std::scoped_lock lock(mutex_);
        if (idle_.size() < mostIdle) {
            idle_.push_back(std::move(demuxer));
        }
    }

    void clear() {
        const std::scoped_lock lock(mutex_);
        idle_.clear();
    }

private:
    std::mutex mutex_;
    std::vector<std::unique_ptr<Demuxer>> idle_;
};

} // namespace

struct AssetContents {
    explicit AssetContents(const std::filesystem::path& file) : path(file), bytes(file) {}

    std::filesystem::path path;
    files::FileByteSource bytes;

    /// Each is made on first use. A failure leaves its flag unset, so that the next use fails likewise.
    std::once_flag movieOnce;
    isobmff::Movie movie;
    std::once_flag formatOnce;
    VideoFormat format;
    std::once_flag framesOnce;
    FrameIndex frames;
    std::once_flag durationOnce;
    CMTime duration;

    DemuxerPool demuxers; ///< of the video track; last, as they read `bytes`
};

namespace {

/// The first picture that can be decoded from the first few packets; null if there is none.
Frame firstPicture(Demuxer& demuxer) {
    constexpr int mostPackets = 8;
    PictureDecoder decoder(demuxer.stream(), PictureDecoder::Use::smallViews);
    const Packet packet = makePacket();
    Frame frame = makeFrame();
    demuxer.seek(0);
    for (int count = 0; count < mostPackets && demuxer.read(*packet); ++count) {
        packet->flags &= ~AV_PKT_FLAG_DISCARD; // hidden by an edit, but shows the format as well as any other
        decoder.send(*packet, true);
        av_packet_unref(packet.get());
        if (count == 0) {
            decoder.drain();
        }
        if (decoder.receive(*frame)) {
            return frame;
        }
        if (count == 0) {
            decoder.restart();
        }
    }
    decoder.drain();
    return decoder.receive(*frame) ? std::move(frame) : nullptr;
}

/// Of the track and the movie together, as the demuxer has multiplied them.
Orientation displayOrientation(const AVStream& stream) {
    constexpr std::size_t entries = 9;
    std::array<std::int32_t, entries> matrix{};
    const std::span<const std::uint8_t> data = sideData(stream, AV_PKT_DATA_DISPLAYMATRIX);
    if (data.size() < sizeof(matrix)) {
        return {};
    }
    std::memcpy(matrix.data(), data.data(), sizeof(matrix));
    return orientationOf({static_cast<double>(matrix[0]), static_cast<double>(matrix[1]),
                          static_cast<double>(matrix[3]), static_cast<double>(matrix[4]), 0, 0});
}

VideoFormat readFormat(Demuxer& demuxer) {
    const AVStream& stream = demuxer.stream();
    const Frame picture = firstPicture(demuxer);
    VideoFormat format;
    format.width = stream.codecpar->width;
    format.height = stream.codecpar->height;
    AVRational aspect = stream.sample_aspect_ratio;
    if (picture) {
        format.width = picture->width;
        format.height = picture->height;
        // The container's pixel aspect has priority over the coded stream's, as in players.
        aspect = aspect.num != 0 ? aspect : picture->sample_aspect_ratio;
    }
    format.pixelAspect = plausibleAspect(aspect.num, aspect.den);
    format.orientation = displayOrientation(stream);
    return format;
}

bool illustratesChapters(const isobmff::Movie& movie, const isobmff::Track& track) {
    return std::ranges::any_of(movie.tracks, [&](const isobmff::Track& other) {
        return std::ranges::any_of(other.references, [&](const isobmff::TrackReference& reference) {
            return reference.type == fourCharCode("chap") &&
                   std::ranges::find(reference.trackIds, track.id) != reference.trackIds.end();
        });
    });
}

constexpr std::string_view holdsNoPictures = "it holds no pictures";

[[noreturn]] void refuse(const Asset& asset, std::string_view reason) {
    throw MediaError::cannot(MediaError::Cause::unsupported, "read", asset.path().string(), reason);
}

std::int32_t ticksASecond(const Asset& asset, const isobmff::Track& track) {
    if (track.timescale > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max())) {
        refuse(asset, "it counts time in more than 2^31 ticks a second");
    }
    return static_cast<std::int32_t>(track.timescale);
}

isobmff::TrackTimeline timelineOf(const Asset& asset, const isobmff::Track& track) {
    try {
        return {track, movieOf(asset).timescale};
    } catch (const MediaError& error) {
        refuse(asset, error.what());
    }
}

/// libavformat unfolds the edits of every track, so those of sound may take its time as well. A few edits
/// never do.
void refuseCostlyEdits(const Asset& asset) {
    constexpr std::size_t few = 64;
    for (const isobmff::Track& track : movieOf(asset).tracks) {
        if (track.isSound() && track.edits.size() > few) {
            timelineOf(asset, track);
        }
    }
}

/// When each picture that the tables know of appears; those that are replaced as they appear are left out.
std::vector<isobmff::ShownSample> shownPictures(const isobmff::TrackTimeline& timeline) {
    std::vector<isobmff::ShownSample> result;
    result.reserve(timeline.shown().size());
    for (const isobmff::ShownSample& sample : timeline.shown()) {
        if (result.empty() || result.back().start < sample.start) {
            result.push_back(sample);
        }
    }
    return result;
}

/// Leaves out pictures that the decoder does not output. Only pictures far shorter than a frame of this movie
/// are examined, as hidden ones are.
void leaveOutHidden(std::vector<isobmff::ShownSample>& pictures, const HiddenPictures& hidden,
                    const isobmff::Track& track, std::int32_t timescale) {
    std::vector<std::int64_t> durations;
    durations.reserve(pictures.size());
    std::ranges::transform(pictures, std::back_inserter(durations), &isobmff::ShownSample::duration);
    const CMTime typical = typicalFrameDuration(durations, timescale);
    if (typical.isValid()) {
        std::erase_if(pictures, [&](const isobmff::ShownSample& picture) {
            return picture.duration < typical.value / 2 && hidden.hides(track.samples[picture.sample]);
        });
    }
}

FrameIndex readFrames(const Asset& asset, const isobmff::Track& track) {
    const std::int32_t timescale = ticksASecond(asset, track);
    const isobmff::TrackTimeline timeline = timelineOf(asset, track);
    auto pictures = shownPictures(timeline);
    leaveOutHidden(pictures, HiddenPictures(bytesOf(asset), track), track, timescale);

    if (pictures.empty()) {
        refuse(asset, holdsNoPictures);
    }

    std::vector<std::int64_t> starts;
    starts.reserve(pictures.size());
    std::ranges::transform(pictures, std::back_inserter(starts), &isobmff::ShownSample::start);
    std::int64_t end = timeline.end();
    if (end <= starts.back()) {
        const std::size_t last = starts.size() - 1;
        end = starts[last] + (last > 0 ? starts[last] - starts[last - 1] : 1);
    }
    return {std::move(starts), end, timescale};
}

CMTime presentationEnd(const Asset& asset, const isobmff::Track& track) {
    return {timelineOf(asset, track).end(), ticksASecond(asset, track)};
}

/// The end of what plays, the pictures that are shown and all sound.
CMTime presentationEnd(const Asset& asset) {
    CMTime end = videoTrackOf(asset) != nullptr ? asset.frames().end() : CMTime::zero();
    for (const isobmff::Track& track : movieOf(asset).tracks) {
        if (track.isSound()) {
            end = maximum(end, presentationEnd(asset, track));
        }
    }
    return end;
}

} // namespace

const files::ByteSource& bytesOf(const Asset& asset) {
    return asset.contents().bytes;
}

const isobmff::Movie& movieOf(const Asset& asset) {
    AssetContents& contents = asset.contents();
    std::call_once(contents.movieOnce, [&] { contents.movie = isobmff::readMovie(contents.bytes); });
    return contents.movie;
}

const isobmff::Track* videoTrackOf(const Asset& asset) {
    const isobmff::Movie& movie = movieOf(asset);
    const isobmff::Track* first = nullptr;
    for (const isobmff::Track& track : movie.tracks) {
        if (!track.isVideo() || illustratesChapters(movie, track)) {
            continue;
        }
        if (track.enabled) {
            return &track;
        }
        first = first != nullptr ? first : &track;
    }
    return first;
}

const isobmff::Track& requiredVideoTrackOf(const Asset& asset) {
    const isobmff::Track* track = videoTrackOf(asset);
    if (track == nullptr) {
        throw ZVError::noVideoTrack();
    }
    if (track->isEncrypted()) {
        refuse(asset, "it is encrypted");
    }
    if (track->samples.empty()) {
        refuse(asset, holdsNoPictures);
    }
    return *track;
}

std::unique_ptr<Demuxer> takeDemuxer(const Asset& asset) {
    const std::uint32_t trackId = requiredVideoTrackOf(asset).id;
    std::unique_ptr<Demuxer> idle = asset.contents().demuxers.take();
    if (idle) {
        return idle;
    }
    refuseCostlyEdits(asset);
    return std::make_unique<Demuxer>(bytesOf(asset), trackId);
}

void giveBack(const Asset& asset, std::unique_ptr<Demuxer> demuxer) {
    asset.contents().demuxers.giveBack(std::move(demuxer));
}

} // namespace media

Asset::Asset(const std::filesystem::path& movie) : contents_(std::make_shared<media::AssetContents>(movie)) {}

const std::filesystem::path& Asset::path() const {
    return contents_->path;
}

int Asset::videoTrackNumber() const {
    const isobmff::Track* shown = media::videoTrackOf(*this);
    int number = 0;
    for (const isobmff::Track& track : media::movieOf(*this).tracks) {
        number += track.isVideo() ? 1 : 0;
        if (&track == shown) {
            return number;
        }
    }
    return 0;
}

bool Asset::hasAudio() const {
    return std::ranges::any_of(media::movieOf(*this).tracks, &isobmff::Track::isSound);
}

const VideoFormat& Asset::videoFormat() const {
    std::call_once(contents_->formatOnce, [this] {
        auto demuxer = media::takeDemuxer(*this);
        contents_->format = media::readFormat(*demuxer);
        media::giveBack(*this, std::move(demuxer));
    });
    return contents_->format;
}

const FrameIndex& Asset::frames() const {
    std::call_once(contents_->framesOnce, [this] {
        contents_->frames = media::readFrames(*this, media::requiredVideoTrackOf(*this));
    });
    return contents_->frames;
}

std::vector<std::int64_t> Asset::syncTimes() const {
    const isobmff::Track* track = media::videoTrackOf(*this);
    std::vector<std::int64_t> times;
    if (track != nullptr) {
        const isobmff::TrackTimeline timeline = media::timelineOf(*this, *track);
        for (const isobmff::ShownSample& shown : timeline.shown()) {
            if (track->samples[shown.sample].sync) {
                times.push_back(shown.start);
            }
        }
    }
    return times;
}

CMTime Asset::duration() const {
    std::call_once(contents_->durationOnce, [this] { contents_->duration = media::presentationEnd(*this); });
    return contents_->duration;
}

void Asset::closeIdleReaders() const {
    contents_->demuxers.clear();
}

} // namespace zelvra
