// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/ffmpeg/Digest.h"

#include "ZelvraCore/media/ffmpeg/FFmpegHandles.h"

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/sha.h>
}

namespace zelvra::media {

void Digest::Free::operator()(AVSHA* context) const {
    av_free(context);
}

Digest::Digest() : context_(owned<decltype(context_)>(av_sha_alloc())) {
    constexpr int bits = 256;
    throwOnError(av_sha_init(context_.get(), bits), "cannot compute a digest");
}

void Digest::add(std::span<const std::uint8_t> bytes) {
    av_sha_update(context_.get(), bytes.data(), bytes.size());
}

std::array<std::uint8_t, 32> Digest::finish() {
    std::array<std::uint8_t, 32> digest{};
    av_sha_final(context_.get(), digest.data());
    return digest;
}

} // namespace zelvra::media
