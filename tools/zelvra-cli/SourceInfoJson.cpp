// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/SourceInfoJson.h"

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

namespace zelvra::cli {
namespace {

using nlohmann::ordered_json; // members keep the order in which they are added

ordered_json sizeJson(Size size) {
    return {{"width", size.width}, {"height", size.height}};
}

ordered_json timeJson(CMTime time) {
    return {{"value", time.value}, {"timescale", time.timescale}, {"seconds", time.seconds()}};
}

/// The double whose shortest form equals that of the float: 29.97003, not 29.9700298309...
double shortest(float number) {
    std::array<char, 32> text{};
    const char* end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    double same = 0;
    std::from_chars(text.data(), end, same);
    return same;
}

} // namespace

std::string sourceInfoJson(const SourceInfo& info) {
    const AffineTransform& turn = info.preferredTransform;
    ordered_json json{{"naturalSize", sizeJson(info.naturalSize)},
                      {"displaySize", sizeJson(info.displaySize)},
                      {"preferredTransform", {turn.a, turn.b, turn.c, turn.d, turn.tx, turn.ty}},
                      {"duration", timeJson(info.duration)},
                      {"frameDuration", timeJson(info.frameDuration)},
                      {"nominalFrameRate", shortest(info.nominalFrameRate)},
                      {"hasAudio", info.hasAudio},
                      {"videoCodec", nullptr}};
    if (info.videoCodec) {
        json["videoCodec"] = fourCharString(*info.videoCodec);
    }
    // Bytes of a codec name that are not valid text are replaced.
    return json.dump(2, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace zelvra::cli
