// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillEncoders.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
extern "C" {
#include <x264.h>
}

namespace zelvra::media {

namespace {

struct CloseEncoder {
    void operator()(x264_t* encoder) const { x264_encoder_close(encoder); }
};
using Encoder = std::unique_ptr<x264_t, CloseEncoder>;

int colourSpace(const CodedPictureFormat& format) {
    const int depthFlag = format.bitDepth > 8 ? X264_CSP_HIGH_DEPTH : 0;
    switch (format.chroma) {
    case ChromaFormat::monochrome: return X264_CSP_I400 | depthFlag;
    case ChromaFormat::yuv420: return X264_CSP_I420 | depthFlag;
    case ChromaFormat::yuv422: return X264_CSP_I422 | depthFlag;
    case ChromaFormat::yuv444: return X264_CSP_I444 | depthFlag;
    }
    return X264_CSP_NONE;
}

/// x264's name for a profile_idc (ITU-T H.264 annex A); Extended has no more than Baseline of what x264 uses.
const char* profileName(int profileIdc) {
    switch (profileIdc) {
    case 66:
    case 88: return "baseline";
    case 77: return "main";
    case 100: return "high";
    case 110: return "high10";
    case 122: return "high422";
    case 244: return "high444";
    default: return nullptr;
    }
}

/// Nothing but the picture decides what is coded: no look-ahead, no adaptive quantiser, no second reference.
void makePlain(x264_param_t& param) {
    param.i_threads = 1;
    param.i_lookahead_threads = 1;
    param.i_sync_lookahead = 0;
    param.rc.i_lookahead = 0;
    param.rc.b_mb_tree = 0;
    param.rc.i_aq_mode = X264_AQ_NONE;
    param.rc.i_rc_method = X264_RC_CRF;
    param.i_bframe = 0;
    param.i_frame_reference = 1;
    param.analyse.i_weighted_pred = X264_WEIGHTP_NONE;
    param.i_keyint_max = X264_KEYINT_MAX_INFINITE;
    param.i_scenecut_threshold = 0;
    param.i_slice_count = 1;
    param.b_repeat_headers = 0;
    param.b_annexb = 0; // each NAL unit after its length
    param.b_aud = 0;
    param.i_nal_hrd = X264_NAL_HRD_NONE;
    param.b_vfr_input = 0; // would hold every picture back until the next one comes
    param.i_log_level = X264_LOG_NONE;
}

void describePicture(x264_param_t& param, const DecodedPicture& picture, const CodedPictureFormat& format,
                     const CMTime& frameDuration) {
    param.i_width = format.frame.width;
    param.i_height = format.frame.height;
    param.crop_rect.i_left = format.frame.cropLeft;
    param.crop_rect.i_top = format.frame.cropTop;
    param.crop_rect.i_right = format.frame.cropRight;
    param.crop_rect.i_bottom = format.frame.cropBottom;
    param.i_csp = colourSpace(format);
    param.i_bitdepth = format.bitDepth;
    param.vui.i_sar_width = picture.pixelAspect.horizontal;
    param.vui.i_sar_height = picture.pixelAspect.vertical;
    param.vui.b_fullrange = picture.color.fullRange ? 1 : 0;
    param.vui.i_colorprim = picture.color.primaries;
    param.vui.i_transfer = picture.color.transfer;
    param.vui.i_colmatrix = picture.color.matrix;
    if (format.chroma == ChromaFormat::yuv420 && picture.color.chromaLocation > 0) {
        param.vui.i_chroma_loc = picture.color.chromaLocation - 1;
    }
    param.i_fps_num = static_cast<std::uint32_t>(frameDuration.timescale);
    param.i_fps_den = static_cast<std::uint32_t>(
        std::min<std::int64_t>(frameDuration.value, std::numeric_limits<std::int32_t>::max()));
    param.i_timebase_num = param.i_fps_den;
    param.i_timebase_den = param.i_fps_num;
}

void applySourceConstraints(x264_param_t& param, const FreezeEncoding& encoding) {
    param.b_cabac = encoding.cabac ? 1 : 0;
    param.analyse.b_transform_8x8 = encoding.transform8x8 ? 1 : 0;
    param.i_sps_id = encoding.parameterSetId;
    if (encoding.levelIdc) {
        param.i_level_idc = *encoding.levelIdc;
    }
    if (!encoding.frameMbsOnly) {
        param.b_interlaced = encoding.mbAdaptiveFields ? 1 : 0;
        param.b_tff = 1;
        param.b_fake_interlaced = encoding.mbAdaptiveFields ? 0 : 1;
    }
    const char* const profile = encoding.profileIdc ? profileName(*encoding.profileIdc) : nullptr;
    if (profile != nullptr && x264_param_apply_profile(&param, profile) < 0) {
        throw ZVError::writerFailed("the H.264 encoder does not offer this picture in the source's profile");
    }
}

bool isSlice(const x264_nal_t& nal) {
    return nal.i_type == NAL_SLICE || nal.i_type == NAL_SLICE_IDR;
}

bool isParameterSet(const x264_nal_t& nal) {
    return nal.i_type == NAL_SPS || nal.i_type == NAL_PPS;
}

NalUnits chosen(std::span<const x264_nal_t> nals, bool (*wanted)(const x264_nal_t&)) {
    constexpr int lengthSize = 4;
    NalUnits result;
    for (const x264_nal_t& nal : nals) {
        if (wanted(nal)) {
            result.emplace_back(nal.p_payload + lengthSize, nal.p_payload + nal.i_payload);
        }
    }
    return result;
}

class X264StillEncoder final : public StillEncoder {
public:
    X264StillEncoder(const std::shared_ptr<const DecodedPicture>& picture, const CodedPictureFormat& format,
                     const FreezeEncoding& encoding, const CMTime& frameDuration)
        : StillEncoder(picture, format) {
        x264_param_t param;
        // Tuned for the measured error alone: that is what the quantiser is chosen by.
        x264_param_default_preset(&param, "medium", "psnr");
        makePlain(param);
        describePicture(param, *picture, format, frameDuration);
        applySourceConstraints(param, encoding);
        param.b_full_recon = 1;
        interlaced_ = param.b_interlaced != 0;
        encoder_.reset(x264_encoder_open(&param));
        if (!encoder_) {
            throw ZVError::writerFailed("the H.264 encoder does not take pictures of this size and format");
        }
    }

    int greatestQuantiser() const override { return 51 + 6 * (format().bitDepth - 8); }
    /// Between frame and field macroblocks even skipped ones are deblocked, unless the quantiser is fine
    /// (below 16, ITU-T H.264 table 8-16).
    int repeatQuantiser() const override { return interlaced_ ? 8 : greatestQuantiser(); }

    NalUnits parameterSets() override {
        x264_nal_t* nals = nullptr;
        int count = 0;
        if (x264_encoder_headers(encoder_.get(), &nals, &count) < 0) {
            throw ZVError::writerFailed("the H.264 encoder gives no parameter sets");
        }
        return chosen({nals, static_cast<std::size_t>(count)}, isParameterSet);
    }

private:
    CodedPicture encode(const DecodedPicture& picture, bool sync, int quantiser) override {
        x264_picture_t input = makeInput(picture);
        input.i_type = sync ? X264_TYPE_IDR : X264_TYPE_P;
        input.i_qpplus1 = quantiser + 1;
        input.i_pts = nextTime_++;
        x264_picture_t output{};
        x264_nal_t* nals = nullptr;
        int count = 0;
        if (x264_encoder_encode(encoder_.get(), &nals, &count, &input, &output) <= 0) {
            throw ZVError::writerFailed("the H.264 encoder failed");
        }
        return {chosen({nals, static_cast<std::size_t>(count)}, isSlice), viewOf(output.img)};
    }

    x264_picture_t makeInput(const DecodedPicture& picture) const {
        x264_picture_t input;
        x264_picture_init(&input);
        input.img.i_csp = colourSpace(format());
        for (const DecodedPicture::Plane& plane : picture.planes) {
            if (!plane.bytes.empty()) {
                // The library only reads it, although its type is not const.
                input.img.plane[input.img.i_plane] = const_cast<std::uint8_t*>(plane.bytes.data());
                input.img.i_stride[input.img.i_plane] = static_cast<int>(plane.stride);
                ++input.img.i_plane;
            }
        }
        return input;
    }

    /// x264 keeps the chroma of 4:2:0 and 4:2:2 interleaved.
    PictureView viewOf(const x264_image_t& image) const {
        const std::ptrdiff_t sample = format().bitDepth > 8 ? 2 : 1;
        PictureView view;
        view[0] = {image.plane[0], sample, image.i_stride[0]};
        if (format().chroma == ChromaFormat::yuv444) {
            view[1] = {image.plane[1], sample, image.i_stride[1]};
            view[2] = {image.plane[2], sample, image.i_stride[2]};
        } else if (format().chroma != ChromaFormat::monochrome) {
            view[1] = {image.plane[1], 2 * sample, image.i_stride[1]};
            view[2] = {image.plane[1] + sample, 2 * sample, image.i_stride[1]};
        }
        return view;
    }

    Encoder encoder_;
    std::int64_t nextTime_ = 0;
    bool interlaced_ = false;
};

} // namespace

std::unique_ptr<StillEncoder> makeX264StillEncoder(const std::shared_ptr<const DecodedPicture>& picture,
                                                   const CodedPictureFormat& format,
                                                   const FreezeEncoding& encoding,
                                                   const CMTime& frameDuration) {
    return std::make_unique<X264StillEncoder>(picture, format, encoding, frameDuration);
}

} // namespace zelvra::media
