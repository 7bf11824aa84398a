// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelvra::test {

/// Pictures that show their number, so that a program can recognise a frame of a movie after any encoding or
/// scaling, in any player.
///
/// A picture is a grid of 16 x 9 cells. The first row holds the 16 bits of the number, white for one and
/// black for zero, the second row their complement. The third row is dark and free for the marker of a
/// freeze. Below it, a texture scrolls and a ball flies, so that the movie is coded with real motion.
class NumberedPictures {
public:
    /// Pictures of any size from 32 x 18. With `interlaced`, the odd lines show the motion half a frame
    /// later.
    NumberedPictures(int width, int height, bool interlaced = false);

    /// Y, Cb and Cr planes of picture `number` in 4:2:0, 8 bits, limited range, concatenated. Chroma planes
    /// of odd sizes are rounded up.
    std::string yuv420(int number) const;

private:
    std::uint8_t motionLuma(int x, int y, double moment) const;

    int width_;
    int height_;
    bool interlaced_;
    int textureWidth_;
    std::vector<std::uint8_t> texture_;
};

/// What could be read from a picture. A part that is not certain is missing.
struct PictureReading {
    std::optional<int> number;
    std::optional<int> marker; ///< drawn by `markerHighlight`: the picture belongs to a freeze
    bool operator==(const PictureReading&) const = default;
};

/// Reads an upright picture of any size from its luma samples (or greys). Rows are `stride` apart.
PictureReading readPicture(const std::uint8_t* luma, int width, int height, std::size_t stride);

/// A highlight whose shape is a white disc in the free cell `marker` (0 to 15) of a picture with display size
/// `picture`. It distinguishes frozen frames from moving ones, and from each other.
Highlight markerHighlight(int marker, CMTime at, CMTime duration, Size picture);

} // namespace zelvra::test
