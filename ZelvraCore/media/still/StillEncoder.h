// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/still/RepeatedPicture.h"
#include "ZelvraCore/media/still/StillPicture.h"
#include "ZelvraCore/records/CMTime.h"
#include "ZelvraCore/records/FreezeEncoding.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zelvra::media {

/// Encodes one picture so that it can be shown for any length of time: a sync picture, and one that repeats
/// it in a few bytes. The caller tries how coarsely the first can be quantised; see
/// StillQuality.h. NAL units that are neither parameter sets nor slices are left out.
///
/// One thread at a time. Failures of the encoder are thrown as ZVError::writerFailed.
class StillEncoder {
public:
    /// Samples of a plane as a decoder will give them, in the encoder's own memory: valid until the next
    /// picture is encoded. Steps are bytes.
    struct PlaneView {
        const std::uint8_t* origin = nullptr;
        std::ptrdiff_t stepAcross = 0;
        std::ptrdiff_t stepDown = 0;
    };
    using PictureView = std::array<PlaneView, 3>;
    struct CodedPicture {
        NalUnits nals;
        PictureView decoded;

        std::uint64_t byteCount() const; ///< each NAL unit after a length of four bytes
    };

    StillEncoder(std::shared_ptr<const DecodedPicture> picture, const CodedPictureFormat& format);
    StillEncoder(const StillEncoder&) = delete;
    StillEncoder& operator=(const StillEncoder&) = delete;
    virtual ~StillEncoder() = default;

    /// The greatest quantiser; the least is 0. Each step is about 12 % coarser.
    virtual int greatestQuantiser() const = 0;
    /// At this one a picture that equals the one before is coded as skipped.
    virtual int repeatQuantiser() const { return greatestQuantiser(); }
    virtual NalUnits parameterSets() = 0;

    /// An instantaneous decoding refresh picture: what was encoded before is forgotten.
    CodedPicture encodeFirst(int quantiser);
    /// A picture that takes every sample from the one encoded last. Being all skip, it does so after any
    /// other as well.
    NalUnits encodeRepeat();

protected:
    const CodedPictureFormat& format() const { return format_; }
    /// `picture` is in `format()`.
    virtual CodedPicture encode(const DecodedPicture& picture, bool sync, int quantiser) = 0;

private:
    DecodedPicture copyOf(const PictureView& view) const;

    std::shared_ptr<const DecodedPicture> picture_;
    CodedPictureFormat format_;
    PictureView last_;
};

/// The format in which an encoder of `codec` takes `picture`: as in `encoding`, else as close to the picture
/// as the encoder offers. Sizes that the chroma format does not divide are rounded up; H.264 and HEVC have no
/// means to crop them away. Throws ZVError::writerFailed if the picture does not fit `encoding`.
CodedPictureFormat codedFormat(const DecodedPicture& picture, VideoCodec codec,
                               const FreezeEncoding& encoding);

/// `picture` is in `format`. The frame duration only goes into the stream's own timing information.
std::unique_ptr<StillEncoder> makeStillEncoder(VideoCodec codec,
                                               const std::shared_ptr<const DecodedPicture>& picture,
                                               const CodedPictureFormat& format,
                                               const FreezeEncoding& encoding, const CMTime& frameDuration);

} // namespace zelvra::media
