// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct AVFrame;

namespace zelvra::media {

/// A decoded picture in the decoder's own memory, for a renderer that takes raw pictures. Not turned, not
/// converted. Immutable; any thread.
class RawPicture {
public:
    /// What a renderer must know to read the bytes.
    struct Form {
        int width = 0; ///< in samples
        int height = 0;
        std::string pixelFormat; ///< FFmpeg's name
        std::size_t byteCount = 0;
        bool operator==(const Form&) const = default;
    };

    /// Shares the frame's memory. Throws MediaError for a frame that is not in memory.
    explicit RawPicture(const AVFrame& frame);

    const Form& form() const { return form_; }
    /// All planes one after the other, without padding.
    std::vector<std::uint8_t> bytes() const;
    /// How many bytes this keeps allocated.
    std::size_t memory() const;

private:
    std::shared_ptr<const AVFrame> frame_;
    Form form_;
};

} // namespace zelvra::media
