// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/Identical.h"

namespace zelvra {

namespace {

bool identical(const HighlightShape& a, const HighlightShape& b) {
    return a.id == b.id && a.kind == b.kind && a.p1 == b.p1 && a.p2 == b.p2 &&
           a.strokeColor == b.strokeColor && a.strokeWidthRatio == b.strokeWidthRatio;
}

} // namespace

bool identical(const CMTime& a, const CMTime& b) {
    return a.value == b.value && a.timescale == b.timescale && a.flags == b.flags && a.epoch == b.epoch;
}

bool identical(const CMTimeRange& a, const CMTimeRange& b) {
    return identical(a.start, b.start) && identical(a.duration, b.duration);
}

bool identical(const Highlight& a, const Highlight& b) {
    return a.id == b.id && identical(a.timestamp, b.timestamp) && identical(a.duration, b.duration) &&
           identical(a.shape, b.shape);
}

bool identical(const HighlightDefaults& a, const HighlightDefaults& b) {
    return a.color == b.color && a.radiusRatio == b.radiusRatio && a.strokeWidthRatio == b.strokeWidthRatio &&
           a.durationSec == b.durationSec;
}

bool identical(const MarkedClip& a, const MarkedClip& b) {
    return a.id == b.id && identical(a.range, b.range) && identical(a.highlights, b.highlights);
}

bool identical(const SourceInfo& a, const SourceInfo& b) {
    return a.naturalSize == b.naturalSize && a.displaySize == b.displaySize &&
           a.preferredTransform == b.preferredTransform && identical(a.duration, b.duration) &&
           a.nominalFrameRate == b.nominalFrameRate && identical(a.frameDuration, b.frameDuration) &&
           a.hasAudio == b.hasAudio && a.videoCodec == b.videoCodec;
}

} // namespace zelvra
