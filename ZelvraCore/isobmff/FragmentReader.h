// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Boxes.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/isobmff/SampleBounds.h"

#include <map>
#include <span>

namespace zelvra::isobmff {

/// Adds the samples of movie fragments (`moof`, ISO/IEC 14496-12 clause 8.8) to their tracks. Part of
/// readMovie. Pure: it reads no file.
class FragmentReader {
public:
    /// Both arguments must outlive this.
    FragmentReader(std::vector<Track>& tracks, SampleBounds& bounds) : tracks_(tracks), bounds_(bounds) {}

    /// Reads the defaults in `mvex`. Call it once, before the first fragment.
    void readDefaults(std::span<const std::uint8_t> movieExtendsPayload);

    /// Reads one fragment. Call it in the order of the file. `offset` is the position of the fragment's box
    /// in the file.
    void readFragment(std::span<const std::uint8_t> fragmentPayload, std::uint64_t offset);

private:
    struct Defaults {
        std::uint32_t sampleEntry = 1;
        std::uint32_t duration = 0;
        std::uint32_t size = 0;
        std::uint32_t flags = 0;
    };

    void readTrackFragment(std::span<const std::uint8_t> payload, std::uint64_t fragmentOffset);
    void readRuns(const std::vector<RawBox>& boxes, std::uint64_t base, const Defaults& defaults,
                  Track& track);
    void readRun(const TrackRunBox& run, const Defaults& defaults, std::int64_t& time, Track& track);
    /// Skips a track that is not kept, because the next track's data may start where this track's data ends.
    void skipRuns(const std::vector<RawBox>& boxes, std::uint64_t base, const Defaults& defaults);
    void startRun(const TrackRunBox& run, std::uint64_t base);
    Defaults defaultsOf(const TrackFragmentHeaderBox& header) const;
    Track* trackOf(std::uint32_t id);

    std::vector<Track>& tracks_;
    SampleBounds& bounds_;
    std::map<std::uint32_t, Defaults> defaults_;
    std::map<std::uint32_t, std::int64_t> ends_; ///< by track: decode time of the next sample
    std::uint64_t dataEnd_ = 0;                  ///< end of the last run's data, which is the default start
                                                 ///< of the next
};

} // namespace zelvra::isobmff
