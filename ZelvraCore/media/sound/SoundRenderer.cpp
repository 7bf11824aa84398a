// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/sound/SoundRenderer.h"

#include "ZelvraCore/media/sound/SoundReader.h"
#include "ZelvraCore/records/Cancellation.h"

#include <algorithm>

namespace zelvra::media {

namespace {

/// A piece in whole frames.
struct FramePiece {
    bool silent = false;
    std::int64_t sourceStart = 0;
    std::int64_t frames = 0;
};

/// Source pieces begin and end on the source's own frames, so that sound resumes at the very frame where it
/// stopped; the frames of a silence come from the sum of all silences, so that their fractions do not add up.
std::vector<FramePiece> inFrames(std::span<const SoundPiece> pieces, int sampleRate) {
    const AVRational frame{1, sampleRate};
    const auto frames = [&](const CMTime& time) { return ticksOfTime(time, frame); };
    std::vector<FramePiece> result;
    CMTime silence = CMTime::zero();
    CMTime total = CMTime::zero();
    for (const SoundPiece& piece : pieces) {
        total += piece.duration;
        if (piece.duration < CMTime::zero() || total > longestSound) {
            throw MediaError(MediaError::Cause::outOfRange,
                             "the movie's sound would be shorter than nothing or "
                             "longer than two days");
        }
        if (piece.kind == SoundPiece::Kind::silence) {
            const CMTime before = silence;
            silence += piece.duration;
            result.push_back({true, 0, frames(silence) - frames(before)});
        } else {
            const std::int64_t start = frames(piece.sourceStart);
            result.push_back({false, start, frames(piece.sourceStart + piece.duration) - start});
        }
    }
    return result;
}

} // namespace

class SoundRenderer::Implementation {
public:
    Implementation(const Asset& movie, std::span<const SoundPiece> pieces, std::stop_token stop)
        : reader_(movie), pieces_(inFrames(pieces, reader_.format().sampleRate)), stop_(std::move(stop)) {}

    const SoundFormat& format() const { return reader_.format(); }

    std::int64_t totalFrames() const {
        std::int64_t total = 0;
        for (const FramePiece& piece : pieces_) {
            total += piece.frames;
        }
        return total;
    }

    std::size_t read(std::span<float> samples) {
        const auto channels = static_cast<std::size_t>(format().channels);
        const std::size_t wanted = samples.size() / channels;
        std::size_t done = 0;
        while (done < wanted && piece_ < pieces_.size()) {
            throwIfStopped(stop_);
            const FramePiece& piece = pieces_[piece_];
            const auto left = static_cast<std::size_t>(piece.frames - positionInPiece_);
            const std::size_t now = std::min(left, wanted - done);
            render(piece, samples.subspan(done * channels, now * channels));
            done += now;
            positionInPiece_ += static_cast<std::int64_t>(now);
            if (now == left) {
                ++piece_;
                positionInPiece_ = 0;
            }
        }
        return done;
    }

private:
    void render(const FramePiece& piece, std::span<float> samples) {
        if (piece.silent) {
            std::fill(samples.begin(), samples.end(), 0.0F);
        } else {
            reader_.read(piece.sourceStart + positionInPiece_, samples);
        }
    }

    SoundReader reader_;
    std::vector<FramePiece> pieces_;
    std::stop_token stop_;
    std::size_t piece_ = 0;
    std::int64_t positionInPiece_ = 0;
};

SoundRenderer::SoundRenderer(const Asset& movie, std::span<const SoundPiece> pieces, std::stop_token stop)
    : implementation_(std::make_unique<Implementation>(movie, pieces, std::move(stop))) {}
SoundRenderer::SoundRenderer(SoundRenderer&&) noexcept = default;
SoundRenderer& SoundRenderer::operator=(SoundRenderer&&) noexcept = default;
SoundRenderer::~SoundRenderer() = default;

const SoundFormat& SoundRenderer::format() const {
    return implementation_->format();
}

std::int64_t SoundRenderer::totalFrames() const {
    return implementation_->totalFrames();
}

std::size_t SoundRenderer::read(std::span<float> samples) {
    return implementation_->read(samples);
}

} // namespace zelvra::media
