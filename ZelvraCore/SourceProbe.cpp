// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/SourceProbe.h"

#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/media/FrameDuration.h"

namespace zelvra {

namespace {

float nominalRate(const FrameIndex& frames) {
    const double seconds = (frames.end() - frames.first().time).seconds();
    return static_cast<float>(static_cast<double>(frames.count()) / seconds);
}

} // namespace

SourceInfo loadSourceInfo(const std::filesystem::path& movie) {
    return loadSourceInfo(Asset(movie));
}

SourceInfo loadSourceInfo(const Asset& asset) {
    const isobmff::Track& track = media::requiredVideoTrackOf(asset);
    const FrameIndex& frames = asset.frames();
    const VideoFormat& format = asset.videoFormat();

    SourceInfo info;
    info.naturalSize = naturalSize(format);
    info.preferredTransform = transformOf(format.orientation, info.naturalSize);
    info.displaySize = info.preferredTransform.boundingSize(info.naturalSize);
    info.duration = asset.duration();
    info.nominalFrameRate = nominalRate(frames);
    info.frameDuration = media::typicalFrameDuration(frames.durations(), frames.timescale());
    if (!info.frameDuration.isValid()) {
        info.frameDuration = media::frameDurationFromRate(info.nominalFrameRate);
    }
    info.hasAudio = asset.hasAudio();
    if (!track.sampleEntries.empty()) {
        info.videoCodec = track.sampleEntries.front().type;
    }
    return info;
}

} // namespace zelvra
