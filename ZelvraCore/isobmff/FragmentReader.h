#pragma once

#include "ZelvraCore/isobmff/Boxes.h"

#include <map>
#include <span>

namespace zelvra::isobmff {

/// Adds the samples of movie fragments (`moof`, ISO/IEC 14496-12 clause 8.8) to the tracks that they belong
/// to. Part of readMovie; pure.
class FragmentReader {
public:
    /// `tracks` must outlive this. `fileSize` bounds the samples.
    FragmentReader(std::vector<Track>& tracks, std::uint64_t fileSize)
        : tracks_(tracks), fileSize_(fileSize) {}

    /// The defaults in `mvex`, once.
    void readDefaults(std::span<const std::uint8_t> movieExtendsPayload);

    /// One fragment, in the order of the file. `offset` is where its box starts in the file.
    void readFragment(std::span<const std::uint8_t> fragmentPayload, std::uint64_t offset);

private:
    struct Defaults {
        std::uint32_t sampleEntry = 1;
        std::uint32_t duration = 0;
        std::uint32_t size = 0;
        std::uint32_t flags = 0;
    };

    void readTrackFragment(std::span<const std::uint8_t> payload, std::uint64_t fragmentOffset);
    void readRun(const TrackRunBox& run, const Defaults& defaults, Track& track);
    Defaults defaultsOf(const TrackFragmentHeaderBox& header) const;
    Track* trackOf(std::uint32_t id);

    std::vector<Track>& tracks_;
    std::uint64_t fileSize_;
    std::map<std::uint32_t, Defaults> defaults_;
    std::map<const Track*, std::int64_t> ends_; ///< decode time at which the next sample starts
    std::uint64_t dataEnd_ = 0;                 ///< where the last run's data ends: the next one's default
};

} // namespace zelvra::isobmff
