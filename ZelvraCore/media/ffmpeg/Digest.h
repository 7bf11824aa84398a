// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>

struct AVSHA;

namespace zelvra::media {

/// A SHA-256 digest of bytes that are added piece by piece. One thread.
class Digest {
public:
    Digest();

    void add(std::span<const std::uint8_t> bytes);
    /// The digest of all bytes. At most once.
    std::array<std::uint8_t, 32> finish();

private:
    struct Free {
        void operator()(AVSHA* context) const;
    };
    std::unique_ptr<AVSHA, Free> context_;
};

} // namespace zelvra::media
