// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/records/ZVError.h"

namespace zelvra {

namespace {

std::string describe(ZVError::Case kind, const std::optional<std::string>& payload) {
    switch (kind) {
    case ZVError::Case::contextCreationFailed: return "CGContext creation failed: " + payload.value_or("");
    case ZVError::Case::writerFailed: return "AVAssetWriter failed: " + payload.value_or("unknown");
    case ZVError::Case::exportFailed: return "export failed: " + payload.value_or("unknown");
    case ZVError::Case::fileNotFound: return "file not found: " + payload.value_or("");
    case ZVError::Case::invalidTimestamp: return "invalid timestamp: " + payload.value_or("");
    case ZVError::Case::noVideoTrack: return "no video track in asset";
    case ZVError::Case::frameExtractionFailed: return "frame extraction failed";
    }
    return {};
}

} // namespace

ZVError::ZVError(Case kind, std::optional<std::string> payload)
    : kind_(kind), description_(describe(kind, payload)) {}

} // namespace zelvra
