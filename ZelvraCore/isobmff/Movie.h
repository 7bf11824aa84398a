// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/FourCharCode.h"
#include "ZelvraCore/records/Geometry.h"

#include <cstdint>
#include <vector>

namespace zelvra::isobmff {

/// The index of an MP4 or QuickTime movie as plain values. The tables are already unfolded and each number is
/// checked against the file. Nothing else is interpreted: edits are not applied (see TrackTimeline.h), and
/// codec configuration stays in its raw boxes.

/// One coded sample. Compact, because an hour of film and sound has hundreds of thousands of them.
struct Sample {
    std::uint64_t offset = 0;           ///< of its first byte in the file
    std::int64_t decodeTime = 0;        ///< in ticks of the track's timescale
    std::uint32_t size = 0;             ///< in bytes
    std::uint32_t duration = 0;         ///< in ticks, until the next decode time
    std::int32_t compositionOffset = 0; ///< in ticks; negative only in version 1 tables and QuickTime
    std::uint16_t sampleEntry = 0;      ///< index into Track::sampleEntries
    bool sync = true;                   ///< decoding can start here
    bool partialSync = false;           ///< also a sync sample, but of an open group (QuickTime's `stps`)

    /// On the media's own timeline, before edits are applied.
    std::int64_t presentationTime() const { return decodeTime + compositionOffset; }
    bool operator==(const Sample&) const = default;
};
static_assert(sizeof(Sample) == 32);

/// One entry of a track's edit list: `duration` of the movie's timeline shows the media from `mediaTime` on.
struct Edit {
    std::uint64_t duration = 0;  ///< in ticks of the movie's timescale
    std::int64_t mediaTime = 0;  ///< in ticks of the track's timescale; negative = an empty stretch
    std::int32_t rate = 0x10000; ///< 16.16 fixed point; 0 = one picture is held

    bool isEmpty() const { return mediaTime < 0; }
    bool operator==(const Edit&) const = default;
};

/// A whole sample entry, byte for byte.
struct SampleEntry {
    FourCharCode type = 0;         ///< the coding, for example "avc1"
    std::vector<std::uint8_t> box; ///< the whole box, header included
    bool encrypted = false;        ///< a protected form (`encv`, `enca`, or one that holds a `sinf`)
};

/// A reference to other tracks (`tref`), for example "chap" or "tmcd".
struct TrackReference {
    FourCharCode type = 0;
    std::vector<std::uint32_t> trackIds;
};

/// Samples that are all alike and so small that they are not listed one by one: PCM, and QuickTime's constant
/// packets. An entry of Track::samples then covers a run of `size / bytes` consecutive packets of `ticks`
/// each.
struct UniformPackets {
    std::uint32_t bytes = 0; ///< size of one packet, the smallest piece that can be cut out; 0 = not uniform
    std::uint32_t ticks = 0; ///< duration of one packet in ticks of the track's timescale

    explicit operator bool() const { return bytes != 0; }
    bool operator==(const UniformPackets&) const = default;
};

/// Values of Track::handler for video and sound.
inline constexpr FourCharCode videoHandler = fourCharCode("vide");
inline constexpr FourCharCode soundHandler = fourCharCode("soun");

struct Track {
    std::uint32_t id = 0;
    FourCharCode handler = 0;
    bool enabled = true;
    std::uint32_t timescale = 0;     ///< ticks a second, never 0
    std::uint64_t mediaDuration = 0; ///< greatest end of a sample; for other handlers the header's value
    std::uint16_t language = 0;      ///< as in the file: packed ISO 639-2/T, or a QuickTime code below 0x400
    AffineTransform matrix;
    double width = 0; ///< of the track header, in pixels
    double height = 0;
    std::uint64_t creationTime = 0; ///< seconds since 1904-01-01 UTC
    std::vector<SampleEntry> sampleEntries;
    std::vector<Edit> edits;        ///< empty = the whole media from 0 on
    UniformPackets uniform;         ///< sound only
    std::vector<Sample> samples;    ///< in decode order; filled for video and sound only
    std::size_t indexedSamples = 0; ///< number of samples listed in the movie box; the others are in
                                    ///< fragments
    bool hasSyncTable = false;      ///< false: the file has no such table, so every sample is a sync sample
    std::vector<std::uint8_t> userData; ///< the whole `udta` and `meta` boxes of the track, concatenated
    std::vector<TrackReference> references;

    bool isVideo() const { return handler == videoHandler; }
    bool isSound() const { return handler == soundHandler; }
    bool isEncrypted() const;
};

struct Movie {
    FourCharCode majorBrand = 0; ///< of `ftyp`; 0 if the file has none (old QuickTime)
    std::vector<FourCharCode> compatibleBrands;
    std::uint32_t timescale = 0;        ///< ticks a second of the movie's timeline, never 0
    std::uint64_t duration = 0;         ///< value of the header, in ticks of `timescale`
    std::uint64_t creationTime = 0;     ///< seconds since 1904-01-01 UTC
    bool fragmented = false;            ///< some or all samples are in movie fragments
    std::vector<Track> tracks;          ///< in the order of the file
    std::vector<std::uint8_t> userData; ///< the whole `udta` and `meta` boxes of the movie, concatenated

    bool isQuickTime() const { return majorBrand == 0 || majorBrand == fourCharCode("qt  "); }
    /// The first enabled track of that kind, otherwise the first one; nullptr if there is none.
    const Track* firstTrack(FourCharCode handler) const;
};

} // namespace zelvra::isobmff
