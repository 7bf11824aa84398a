// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"
#include "ZelvraCore/bitstream/h264/PictureScanner.h"
#include "ZelvraCore/bitstream/hevc/HevcConfiguration.h"
#include "ZelvraCore/bitstream/hevc/PictureScanner.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/PictureWindow.h"
#include "ZelvraCore/passthrough/video/SourcePictures.h"

#include <optional>
#include <set>

namespace zelvra::passthrough {

/// Ids of parameter sets; H.264 has no video parameter sets.
struct ParameterSetIds {
    std::set<int> vps;
    std::set<int> sps;
    std::set<int> pps;
};

/// What SourceStream needs of a codec.
struct H264Codec {
    using Configuration = h264::AvcConfiguration;
    using ParameterSets = h264::ParameterSets;
    using Sps = h264::Sps;
    using Pps = h264::Pps;
    using Scanner = h264::PictureScanner;
    using Facts = h264::PictureFacts;
    static constexpr const char* configurationBox = "avcC";
    static int nalLengthSize(const Configuration& record) { return record.nalLengthSize; }
    static void addIds(const Scanner& scanner, ParameterSetIds& ids) {
        ids.sps.insert(scanner.spsIdsSeen().begin(), scanner.spsIdsSeen().end());
        ids.pps.insert(scanner.ppsIdsSeen().begin(), scanner.ppsIdsSeen().end());
    }
};

struct HevcCodec {
    using Configuration = hevc::HevcConfiguration;
    using ParameterSets = hevc::ParameterSets;
    using Sps = hevc::Sps;
    using Pps = hevc::Pps;
    using Scanner = hevc::PictureScanner;
    using Facts = hevc::PictureFacts;
    static constexpr const char* configurationBox = "hvcC";
    static int nalLengthSize(const Configuration& record) { return record.nalLengthSize(); }
    static void addIds(const Scanner& scanner, ParameterSetIds& ids) {
        ids.vps.insert(scanner.vpsIdsSeen().begin(), scanner.vpsIdsSeen().end());
        ids.sps.insert(scanner.spsIdsSeen().begin(), scanner.spsIdsSeen().end());
        ids.pps.insert(scanner.ppsIdsSeen().begin(), scanner.ppsIdsSeen().end());
    }
};

/// The decoder configuration of a source or of a freeze clip. Throws CannotPassThrough if there is none.
template <class Codec>
typename Codec::Configuration configurationOf(const SourceVideo& video) {
    const auto content = bitstream::findChildBox(video.sampleEntry().box, Codec::configurationBox);
    if (!content) {
        throw CannotPassThrough("its sample entry holds no decoder configuration");
    }
    return Codec::Configuration::parse(*content);
}

/// Whether sequence parameter sets may differ from the first picture's.
enum class CodingChanges : std::uint8_t { refused, accepted };

/// A source's coded stream, as far as it was read: its configuration, its pictures, and what the headers that
/// were read have in common. The track builders decide which freezes suit it.
///
/// Borrows the video. Every operation may throw CannotPassThrough or BitstreamError.
template <class Codec>
class SourceStream {
public:
    SourceStream(const SourceVideo& video, CodingChanges changes)
        : video_(video),
          changes_(changes),
          configuration_(configurationOf<Codec>(video)),
          pictures_(video.track.samples),
          window_(
              video, [this] { return scanner(); },
              [this](const typename Codec::Scanner& scanner, const typename Codec::Facts& facts) {
                  observe(scanner, facts);
              }) {
        window_.at(0);
    }
    SourceStream(const SourceStream&) = delete; // `window_` calls back into this
    SourceStream& operator=(const SourceStream&) = delete;

    const SourceVideo& video() const { return video_; }
    const typename Codec::Configuration& configuration() const { return configuration_; }
    int nalLengthSize() const { return Codec::nalLengthSize(configuration_); }
    const SourcePictures& pictures() const { return pictures_; }

    /// See PictureWindow.
    typename Codec::Facts at(std::uint32_t index) { return window_.at(index); }
    typename Codec::Facts at(std::uint32_t index, std::uint32_t from) { return window_.at(index, from); }
    /// A scanner that knows only the configuration.
    typename Codec::Scanner scanner() const {
        return {typename Codec::ParameterSets(configuration_), nalLengthSize()};
    }

    /// Parameter sets of the first picture.
    const typename Codec::Sps& sps() const { return *sps_; }
    const typename Codec::Pps& pps() const { return *pps_; }
    /// Ids in the configuration or in samples read so far.
    const ParameterSetIds& usedIds() const { return usedIds_; }
    /// Whether a sample read so far carries parameter sets.
    bool parameterSetsInSamples() const { return parameterSetsInSamples_; }

private:
    void observe(const typename Codec::Scanner& scanner, const typename Codec::Facts& facts) {
        const typename Codec::Sps& sps = scanner.parameterSets().sps(facts.spsId);
        if (!sps_) {
            sps_ = sps;
            pps_ = scanner.parameterSets().pps(facts.ppsId);
        }
        if (changes_ == CodingChanges::refused && (scanner.spsChanged() || sps.nal != sps_->nal)) {
            throw CannotPassThrough("its coding changes within the movie");
        }
        Codec::addIds(scanner, usedIds_);
        parameterSetsInSamples_ = parameterSetsInSamples_ || facts.hasInBandParameterSets;
    }

    const SourceVideo& video_;
    CodingChanges changes_;
    typename Codec::Configuration configuration_;
    SourcePictures pictures_;
    PictureWindow<typename Codec::Scanner, typename Codec::Facts> window_;
    std::optional<typename Codec::Sps> sps_;
    std::optional<typename Codec::Pps> pps_;
    ParameterSetIds usedIds_;
    bool parameterSetsInSamples_ = false;
};

} // namespace zelvra::passthrough
