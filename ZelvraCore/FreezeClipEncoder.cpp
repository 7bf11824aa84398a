// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/FreezeClipEncoder.h"

#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/media/ffmpeg/Muxer.h"
#include "ZelvraCore/media/still/RepeatedPicture.h"
#include "ZelvraCore/media/still/StillEncoder.h"
#include "ZelvraCore/media/still/StillPicture.h"
#include "ZelvraCore/media/still/StillQuality.h"
#include "ZelvraCore/records/Cancellation.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"

#include <limits>
#include <map>

namespace zelvra {

namespace {

using namespace media;

namespace fs = std::filesystem;

void refuseBadTimes(const CMTime& frameDuration, const CMTime& totalDuration) {
    if (!frameDuration.isNumeric() || frameDuration <= CMTime::zero()) {
        throw ZVError::writerFailed("the frame duration is not a positive number");
    }
    if (!totalDuration.isNumeric() || totalDuration < CMTime::zero()) {
        throw ZVError::writerFailed("the freeze's duration is not a number");
    }
    if (totalDuration.seconds() / frameDuration.seconds() >= std::numeric_limits<std::int32_t>::max() ||
        frameDuration.value > std::numeric_limits<std::int32_t>::max()) {
        throw ZVError::writerFailed("the freeze has more frames than a movie holds");
    }
}

void deleteExisting(const fs::path& file) {
    std::error_code error;
    if (fs::is_directory(file, error)) {
        error = std::make_error_code(std::errc::is_a_directory);
    } else {
        fs::remove(file, error);
    }
    if (error) {
        throw MediaError::cannot(MediaError::Cause::unwritable, "delete", file.string(), error.message());
    }
}

/// Deletes the file unless it was finished.
class UnfinishedFile {
public:
    explicit UnfinishedFile(fs::path file) : file_(std::move(file)) {}
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    ~UnfinishedFile() {
        if (!finished_) {
            std::error_code ignored; // the failure that brought us here is the one to report
            fs::remove(file_, ignored);
        }
    }
    void finished() { finished_ = true; }

private:
    fs::path file_;
    bool finished_ = false;
};

/// The first picture of the clip: the coarsest one that is good enough.
NalUnits encodeFirst(StillEncoder& encoder, const StillComparison& comparison, const FreezeEncoding& encoding,
                     const std::stop_token& stop) {
    StillGoal goal;
    goal.leastQuantiser = encoding.leastQp;
    goal.greatestQuantiser = encoder.greatestQuantiser();
    goal.mostBytes = encoding.mostFirstBytes;
    std::map<int, NalUnits> tried;
    const int quantiser = chooseQuantiser(goal, [&](int candidate) {
        throwIfStopped(stop);
        StillEncoder::CodedPicture coded = encoder.encodeFirst(candidate);
        const StillTrial trial = comparison.of(coded);
        tried[candidate] = std::move(coded.nals);
        return trial;
    });
    return tried.contains(quantiser) ? tried.at(quantiser) : encoder.encodeFirst(quantiser).nals;
}

void writeFrames(Muxer& writer, std::size_t track, const NalUnits& first, const RepeatedPicture& repeat,
                 std::int64_t frames, std::int64_t frameTicks, const std::stop_token& stop) {
    writer.write(track, {byteStreamOf(first), 0, 0, frameTicks, true});
    for (std::int64_t i = 1; i < frames; ++i) {
        throwIfStopped(stop);
        writer.write(track, {byteStreamOf(repeat.at(i)), i * frameTicks, i * frameTicks, frameTicks, false});
    }
    writer.finish();
}

} // namespace

void encodeFreezeClip(const Image& image, const fs::path& output, const CMTime& frameDuration,
                      const CMTime& totalDuration, VideoCodec codec, const FreezeEncoding& encoding,
                      const std::stop_token& stop) {
    refuseBadTimes(frameDuration, totalDuration);
    throwIfStopped(stop);
    deleteExisting(output);
    UnfinishedFile unfinished(output);
    Muxer::Options options;
    options.timescale = frameDuration.timescale;
    Muxer writer(output, options);

    const StillPicture still = stillPicture(image);
    const CodedPictureFormat format = codedFormat(*still.picture, codec, encoding);
    const auto picture = std::make_shared<const DecodedPicture>(fitted(*still.picture, format));
    const StillComparison comparison(still, picture, format);
    const std::unique_ptr<StillEncoder> encoder =
        makeStillEncoder(codec, picture, format, encoding, frameDuration);
    try {
        const NalUnits parameterSets = encoder->parameterSets();
        const NalUnits first = encodeFirst(*encoder, comparison, encoding, stop);
        const RepeatedPicture repeat(codec, parameterSets, encoder->encodeRepeat());
        const std::size_t track = writer.addTrack(
            VideoTrackFormat{codec, format.visibleWidth(), format.visibleHeight(), picture->pixelAspect,
                             picture->color, byteStreamOf(parameterSets), frameDuration.timescale});
        writeFrames(writer, track, first, repeat, freezeFrameCount(totalDuration, frameDuration),
                    frameDuration.value, stop);
    } catch (const MediaError& error) {
        if (error.cause() == MediaError::Cause::cancelled) {
            throw;
        }
        throw ZVError::writerFailed(error.what());
    }
    unfinished.finished();
}

} // namespace zelvra
