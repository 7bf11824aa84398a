#pragma once

#include "ZelvraCore/media/StillPicture.h"
#include "ZelvraCore/records/CMTime.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zelvra {

/// Encodes one picture as a sequence of coded pictures that all look the same: a sync picture and repeats of
/// it, which cost next to nothing. How coarsely the first is quantised is the caller's to try out; see
/// StillQuality.h.
///
/// One thread at a time. Failures of the encoder are thrown as ZVError::writerFailed.
class StillEncoder {
public:
    /// Samples of a picture as the decoder will see them, in the encoder's own memory: valid until the next
    /// picture is encoded. `stepAcross` and `stepDown` are bytes.
    struct PlaneView {
        const std::uint8_t* origin = nullptr;
        std::ptrdiff_t stepAcross = 0;
        std::ptrdiff_t stepDown = 0;
    };
    /// An instantaneous decoding refresh picture, in the byte stream format (Annex B of ITU-T H.264 and
    /// H.265).
    struct FirstPicture {
        std::vector<std::uint8_t> bytes;
        std::array<PlaneView, 3> decoded;
    };

    StillEncoder() = default;
    StillEncoder(const StillEncoder&) = delete;
    StillEncoder& operator=(const StillEncoder&) = delete;
    virtual ~StillEncoder() = default;

    /// The greatest quantiser; the least is 0. Each step is about 12 % coarser.
    virtual int greatestQuantiser() const = 0;
    /// In the byte stream format.
    virtual std::vector<std::uint8_t> parameterSets() = 0;
    /// Begins anew: what was encoded before is forgotten.
    virtual FirstPicture encodeFirst(int quantiser) = 0;
    /// The next picture, the same as the one before in every sample.
    virtual std::vector<std::uint8_t> encodeRepeat() = 0;
};

/// The format in which an encoder of `codec` takes `picture`: as in `encoding`, else as close to the picture
/// as the encoder offers. Sizes that the chroma format does not divide are rounded up; H.264 and HEVC have no
/// means to crop them away. Throws ZVError::writerFailed where the picture does not fit `encoding`.
CodedPictureFormat codedFormat(const DecodedPicture& picture, VideoCodec codec,
                               const FreezeEncoding& encoding);

/// `picture` is in `format`. The frame duration only goes into the stream's own timing information.
std::unique_ptr<StillEncoder> makeStillEncoder(VideoCodec codec,
                                               std::shared_ptr<const DecodedPicture> picture,
                                               const CodedPictureFormat& format,
                                               const FreezeEncoding& encoding, const CMTime& frameDuration);

} // namespace zelvra
