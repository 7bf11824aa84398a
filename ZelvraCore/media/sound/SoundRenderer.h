// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/records/SoundPiece.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stop_token>
#include <vector>

namespace zelvra::media {

/// How decoded sound is laid out.
struct SoundFormat {
    int sampleRate = 0; ///< frames a second
    int channels = 0;
    /// The speakers, one bit each in the order of the channels (bit 0 front left, 1 front right, 2 centre, 3
    /// low frequency, 4 and 5 back left and right, 9 and 10 side left and right ...); 0 if the source does
    /// not state it.
    std::uint64_t speakers = 0;

    bool operator==(const SoundFormat&) const = default;
};

/// The sound of a finished movie as PCM: stretches of a movie's first sound track and silence, end to end,
/// exact to the sample.
///
/// Used by every export that encodes its sound again. Rate and channels stay the source's. A piece begins at
/// the frame nearest to the sum of the pieces before it, so sound does not drift however many there are. The
/// source's sound is placed as libavformat places it by default: edits applied, the encoder's priming
/// removed. If the track has no sound (before it starts, in a gap, after its end) there is silence.
///
/// It decodes as it is read and holds a few packets, whatever the movie's length. Any thread, one
/// at a time; several renderers may read one asset at once.
class SoundRenderer {
public:
    /// Throws MediaError: `unreadable` or `corrupt` (the movie), `unsupported` (no sound track, no decoder
    /// for it), `outOfRange` (pieces whose times are not numeric, whose length is negative, or that
    /// last longer than `longestSound`).
    SoundRenderer(const Asset& movie, std::span<const SoundPiece> pieces, std::stop_token stop = {});
    SoundRenderer(SoundRenderer&&) noexcept;
    SoundRenderer& operator=(SoundRenderer&&) noexcept;
    ~SoundRenderer();

    const SoundFormat& format() const;

    /// Frames that `read` gives altogether: the pieces' length at `format().sampleRate`.
    std::int64_t totalFrames() const;

    /// Fills `samples` (interleaved, full scale = 1; as many whole frames as fit) with what comes next and
    /// returns the number of frames; fewer than fit only at the end, 0 there. Packets that cannot be decoded
    /// are silent. Throws MediaError: `cancelled` once the stop token asks for it, `unreadable` where the
    /// file cannot be read any more.
    std::size_t read(std::span<float> samples);

private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace zelvra::media
