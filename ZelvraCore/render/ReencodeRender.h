// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/media/Asset.h"
#include "ZelvraCore/media/ffmpeg/Muxer.h"
#include "ZelvraCore/records/VideoCodec.h"

#include <filesystem>
#include <functional>
#include <stop_token>
#include <vector>

namespace zelvra {

/// Writes a finished movie by decoding the source, turning it upright and encoding it anew, for every source
/// that cannot pass through: other codecs, rotated ones, streams in which no freeze fits.
struct ReencodeJob {
    Timeline timeline;    ///< of the source, see layoutTimeline
    CMTime frameDuration; ///< of a freeze's frames
    /// One movie for each highlight of the plan; its first picture, upright already, is shown.
    std::vector<std::filesystem::path> freezeClips;
    VideoCodec codec = VideoCodec::h264;
    bool includeAudio = true;
    std::filesystem::path output;
    MovieContainer container = MovieContainer::mpeg4;
    /// Called with 0...1 from the calling thread; values never decrease. Must not throw.
    std::function<void(double)> progress = {};
    std::stop_token stop = {};
};

/// The movie has one stream of pictures, at the source's own times, upright, with the
/// source's colour tags and pixel aspect, in 4:2:0: with 8 bits, or 10 in HEVC where the source has more than
/// 8, as that is what players play. Luma keeps a structural similarity (SSIM) of 0.99. An odd side gets one
/// line more, a repetition of its last. Sound is AAC, exact to the sample. The index comes first; creation
/// time, place and camera are kept.
///
/// Decoding runs on a thread of its own beside the encoder. A few pictures are in memory at a time, whatever
/// the movie's length. An output that exists is replaced when the new one is complete.
///
/// Blocks; any thread. Throws ZVError::exportFailed with the cause, ZVError::noVideoTrack, MediaError
/// `cancelled` soon after `stop` asks for it. Nothing is left behind then.
void exportReencoded(const Asset& source, const ReencodeJob& job);

} // namespace zelvra
