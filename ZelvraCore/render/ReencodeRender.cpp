// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/ReencodeRender.h"

#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/media/AssetDemuxers.h"
#include "ZelvraCore/media/ffmpeg/SequentialReader.h"
#include "ZelvraCore/media/reencode/BoundedQueue.h"
#include "ZelvraCore/media/reencode/PictureFitter.h"
#include "ZelvraCore/media/reencode/RateFactor.h"
#include "ZelvraCore/media/reencode/VideoEncoder.h"
#include "ZelvraCore/media/sound/SoundEncoder.h"
#include "ZelvraCore/records/Cancellation.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "ZelvraCore/render/PictureSchedule.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <malloc.h>
#include <map>
#include <optional>
#include <string_view>
#include <thread>

namespace zelvra {

namespace {

using namespace media;

/// The pictures of an export one after another, ready for the encoder. They are decoded on a thread of their
/// own, a few ahead.
class PictureStream {
public:
    PictureStream(const Asset& source, const ReencodeJob& job, const PictureSchedule& schedule)
        : source_(source),
          job_(job),
          schedule_(schedule),
          demuxer_(takeDemuxer(source)),
          reader_(*demuxer_),
          fitter_(reader_.pictureAt(ticksOf(firstIndex())), source.videoFormat().orientation,
                  source.videoFormat().pixelAspect, job.codec) {}
    PictureStream(const PictureStream&) = delete;
    PictureStream& operator=(const PictureStream&) = delete;
    ~PictureStream() { queue_.close(); }

    const EncoderPicture& form() const { return fitter_.form(); }
    const AVDictionary* metadata() const { return demuxer_->metadata(); }

    /// A few source pictures in a row from some places, to see how hard they are to encode.
    std::vector<Frame> samples() const {
        constexpr std::size_t places = 3;
        constexpr std::size_t inARow = 4;
        std::vector<std::size_t> moving;
        for (const PictureSchedule::Run& run : schedule_.runs) {
            if (!run.frozen) {
                moving.push_back(run.index);
            }
        }
        std::vector<Frame> result;
        const auto demuxer = takeDemuxer(source_);
        for (std::size_t place = 1; place <= places; ++place) {
            SequentialReader reader(*demuxer);
            const std::size_t first = moving.size() * place / (places + 1);
            for (std::size_t i = first; i < std::min(first + inARow, moving.size()); ++i) {
                result.push_back(middleOf(*fitter_.fit(reader.pictureAt(ticksOf(moving[i])))));
            }
        }
        return result;
    }

    /// Begins to decode ahead.
    void start() {
        thread_ = std::jthread([this] { decodeAll(); });
    }

    /// One picture for each of the schedule's runs, then nothing. Throws what went wrong in decoding.
    Frame next() {
        std::optional<Frame> picture = queue_.pop();
        if (!picture) {
            thread_.join();
            if (failure_) {
                std::rethrow_exception(failure_);
            }
            return nullptr;
        }
        return std::move(*picture);
    }

private:
    static constexpr std::size_t picturesAhead = 2;

    /// A source picture whose size and format are those of all others.
    std::size_t firstIndex() const {
        const auto run =
            std::ranges::find_if(schedule_.runs, [](const PictureSchedule::Run& r) { return !r.frozen; });
        return run != schedule_.runs.end() ? run->index : 0;
    }

    std::int64_t ticksOf(std::size_t index) const {
        return ticksOfTime(source_.frames().frame(index).time, demuxer_->timeBase());
    }

    void decodeAll() {
        try {
            for (const PictureSchedule::Run& run : schedule_.runs) {
                Frame picture = run.frozen ? frozenPicture(run.index)
                                           : fitter_.fit(reader_.pictureAt(ticksOf(run.index)));
                if (job_.stop.stop_requested() || !queue_.push(std::move(picture))) {
                    break;
                }
            }
        } catch (...) {
            failure_ = std::current_exception();
        }
        queue_.close();
    }

    Frame frozenPicture(std::size_t index) const {
        const Asset clip(job_.freezeClips.at(index));
        const auto demuxer = takeDemuxer(clip);
        SequentialReader reader(*demuxer);
        return fitter_.fitUpright(reader.pictureAt(0));
    }

    const Asset& source_;
    const ReencodeJob& job_;
    const PictureSchedule& schedule_;
    std::unique_ptr<Demuxer> demuxer_;
    SequentialReader reader_;
    PictureFitter fitter_;
    BoundedQueue<Frame> queue_{picturesAhead};
    std::exception_ptr failure_; ///< read once the thread has ended
    std::jthread thread_;        ///< last, so that it ends before what it uses
};

/// What users need of the source's metadata: when, where and with what it was recorded. What describes its
/// file is left out.
std::map<std::string, std::string> lastingMetadata(const AVDictionary* metadata) {
    constexpr std::array<std::string_view, 6> lasting{"creation_time", "location", "location-eng",
                                                      "make",          "model",    "com.apple.quicktime."};
    std::map<std::string, std::string> kept;
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(metadata, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr) {
        const std::string_view key = entry->key;
        if (std::ranges::any_of(lasting, [&](std::string_view prefix) { return key.starts_with(prefix); })) {
            kept.emplace(key, entry->value);
        }
    }
    return kept;
}

/// Writes the sound up to the moment that the pictures have come to.
class SoundStream {
public:
    SoundStream(const Asset& source, std::span<const SoundPiece> pieces, const std::stop_token& stop)
        : encoder_(SoundRenderer(source, pieces, stop)) {}

    void addTo(Muxer& writer) {
        track_ = writer.addTrack(SoundTrackFormat{encoder_.sampleRate(), encoder_.channels(),
                                                  encoder_.packetFrames(), encoder_.bitRate(),
                                                  encoder_.audioSpecificConfig()});
    }

    void writeUntil(double seconds, Muxer& writer) {
        while (!ended_ && static_cast<double>(written_) <= seconds * encoder_.sampleRate()) {
            const std::optional<SoundPacket> packet = encoder_.next();
            if (!packet) {
                ended_ = true;
                return;
            }
            const std::int64_t time = packet->decodeTime - encoder_.priming();
            // The last packet is longer than what is left of the sound.
            const std::int64_t duration =
                std::clamp<std::int64_t>(encoder_.totalFrames() - time, 1, packet->duration);
            writer.write(track_, {packet->bytes, time, time, duration, true});
            written_ = time + packet->duration;
        }
    }

private:
    SoundEncoder encoder_;
    std::size_t track_ = 0;
    std::int64_t written_ = 0; ///< frames of sound
    bool ended_ = false;
};

/// One export, from schedule to file. Lives for one call.
class Reencoder {
public:
    Reencoder(const Asset& source, const ReencodeJob& job)
        : job_(job),
          schedule_(schedulePictures(job.timeline, source.frames(), job.frameDuration)),
          freezeStep_(std::max<std::int64_t>(1, schedule_.ticksOfFrame(1))),
          pictures_(source, job, schedule_),
          encoder_(job.codec, pictures_.form(), job.frameDuration,
                   rateFactorFor(job.codec, pictures_.form(), job.frameDuration, pictures_.samples())),
          file_(job.output),
          writer_(file_.temporaryPath(), writerOptions()) {
        const EncoderPicture& form = pictures_.form();
        const std::span<const std::uint8_t> sets = encoder_.parameterSets();
        videoTrack_ = writer_.addTrack(VideoTrackFormat{job.codec,
                                                        form.width,
                                                        form.height,
                                                        form.pixelAspect,
                                                        form.color,
                                                        {sets.begin(), sets.end()},
                                                        schedule_.timescale});
        if (job.includeAudio && source.hasAudio()) {
            sound_.emplace(source, schedule_.sound, job.stop);
            sound_->addTo(writer_);
        }
        times_.reserve(static_cast<std::size_t>(schedule_.pictureCount()) + 1);
    }

    void run() {
        malloc_trim(0); // gives back what choosing the quality took, before the encoder fills up
        pictures_.start();
        for (const PictureSchedule::Run& run : schedule_.runs) {
            const Frame picture = pictures_.next();
            throwIfStopped(job_.stop);
            if (picture == nullptr) {
                break;
            }
            for (std::int64_t i = 0; i < run.frames; ++i) {
                throwIfStopped(job_.stop);
                addTime(run.time + schedule_.ticksOfFrame(i));
                encoder_.send(*picture);
                writeReady();
            }
        }
        addTime(schedule_.end);
        encoder_.finish();
        writeReady();
        if (sound_) {
            sound_->writeUntil(std::numeric_limits<double>::infinity(), writer_);
        }
        writer_.finish();
        file_.commit();
    }

private:
    Muxer::Options writerOptions() const {
        Muxer::Options options;
        options.container = job_.container;
        options.indexFirst = true;
        options.timescale = schedule_.timescale;
        options.metadata = lastingMetadata(pictures_.metadata());
        return options;
    }

    /// No two pictures have one time, even if the frames of a freeze are shorter than a tick.
    void addTime(std::int64_t time) {
        times_.push_back(times_.empty() ? time : std::max(time, times_.back() + 1));
    }

    /// When the picture of that index is shown; before the first, the times that an encoder decodes at.
    std::int64_t timeOf(std::int64_t index) const {
        return index >= 0 ? times_.at(static_cast<std::size_t>(index)) : times_.front() + index * freezeStep_;
    }

    void writeReady() {
        while (const std::optional<VideoEncoder::Sample> sample = encoder_.receive()) {
            const std::int64_t time = timeOf(sample->presentationIndex);
            const auto following = static_cast<std::size_t>(sample->presentationIndex) + 1;
            const std::int64_t end = following < times_.size() ? times_[following] : time + freezeStep_;
            writer_.write(videoTrack_,
                          {sample->bytes, time, timeOf(sample->decodeIndex), end - time, sample->sync});
            if (sound_) {
                sound_->writeUntil(static_cast<double>(time) / schedule_.timescale, writer_);
            }
            if (job_.progress) {
                ++written_;
                job_.progress(static_cast<double>(written_) / static_cast<double>(schedule_.pictureCount()));
            }
        }
    }

    const ReencodeJob& job_;
    PictureSchedule schedule_;
    std::int64_t freezeStep_; ///< ticks from one frame of a freeze to the next
    PictureStream pictures_;
    VideoEncoder encoder_;
    files::AtomicFile file_;
    Muxer writer_;
    std::size_t videoTrack_ = 0;
    std::optional<SoundStream> sound_;
    std::vector<std::int64_t> times_; ///< of the pictures given to the encoder, and of the end
    std::int64_t written_ = 0;
};

} // namespace

void exportReencoded(const Asset& source, const ReencodeJob& job) {
    try {
        throwIfStopped(job.stop);
        if (job.timeline.segments.empty()) {
            throw MediaError(MediaError::Cause::outOfRange, "the range holds no picture");
        }
        Reencoder(source, job).run();
    } catch (const MediaError& error) {
        if (error.cause() == MediaError::Cause::cancelled) {
            throw;
        }
        throw ZVError::exportFailed(error.what());
    }
}

} // namespace zelvra
