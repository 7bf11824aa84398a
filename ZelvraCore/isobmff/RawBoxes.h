// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/FourCharCode.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::isobmff {

/// Finds boxes inside bytes that are carried whole: the configuration in a sample entry, the items of user
/// data. Pure. Results are views into the caller's bytes and valid as long as these are. Not for files: see
/// MovieReader.h.

/// A box within other bytes.
struct RawBox {
    FourCharCode type = 0;
    std::span<const std::uint8_t> whole;   ///< header included
    std::span<const std::uint8_t> payload; ///< what follows the header
};

/// The consecutive boxes in `bytes`. Throws MediaError::corrupt if a box reaches beyond the bytes. Fewer than
/// 8 bytes at the end are ignored, because QuickTime ends lists with 4 zeros.
std::vector<RawBox> rawBoxes(std::span<const std::uint8_t> bytes);

/// The boxes inside a whole sound sample entry (`esds`, `dac3`, QuickTime's `wave` ...), clause 12.2.3 and
/// QuickTime's versions 1 and 2.
std::vector<RawBox> soundEntryBoxes(std::span<const std::uint8_t> entry);

/// Bytes of a sound entry before its boxes: 36, or 52 and 72 in QuickTime's versions 1 and 2.
std::size_t soundEntryHeaderSize(std::span<const std::uint8_t> entry);

/// The first box with that type, or nullptr.
const RawBox* findBox(const std::vector<RawBox>& boxes, FourCharCode type);

/// A new box with that type and payload.
std::vector<std::uint8_t> makeBox(FourCharCode type, std::span<const std::uint8_t> payload);

} // namespace zelvra::isobmff
