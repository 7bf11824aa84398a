// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

#include <cstddef>
#include <optional>

namespace zelvra::bitstream {

/// Reads the syntax of parameter sets and headers bit by bit from the stored bytes of a NAL unit. Skips
/// emulation prevention bytes (ITU-T H.264 and H.265 clause 7.3.1, 0x000003) as it reads, so nothing is
/// copied and unread bytes are not touched. It does not know any syntax element by name.
///
/// Positions count bits of the payload without emulation prevention, from the first byte given. Borrows the
/// bytes. Reading beyond the end throws BitstreamError (corrupt).
class BitReader {
public:
    explicit BitReader(ByteView escaped) : bytes_(escaped) {}

    /// u(n), n of 0...32.
    std::uint32_t bits(int count);
    bool flag() { return bits(1) != 0; }
    /// u(n), n of 0...64.
    std::uint64_t longBits(int count);
    /// ue(v): 0...2^32 - 2. A longer code throws BitstreamError (corrupt).
    std::uint32_t ue();
    /// ue(v) with an upper bound set by the standard. A value above `max` throws BitstreamError (corrupt).
    std::uint32_t ue(std::uint32_t max);
    /// se(v): -(2^31 - 1)...2^31 - 1.
    std::int32_t se();
    void skip(std::uint64_t count);
    void skipToByteBoundary();

    std::uint64_t position() const { return position_; }
    bool byteAligned() const { return position_ % 8 == 0; }
    /// more_rbsp_data(): whether anything other than the closing one bit and zeros follows.
    bool moreData() const;
    /// Bits left before the rbsp_stop_one_bit. Reads all remaining bytes.
    std::uint64_t bitsBeforeStop() const;
    /// Bits left in the given bytes, closing bits included. Reads all remaining bytes.
    std::uint64_t bitsLeft() const;
    /// Offset in the given bytes of the first byte not read yet. If that is an emulation prevention byte, the
    /// offset is only after it if it was already skipped. Call it at a byte boundary only.
    std::size_t storedOffset() const { return next_; }

private:
    struct Rest {
        std::uint64_t all = 0;
        std::optional<std::uint64_t> beforeStop;
    };

    void fetch();
    Rest rest() const;

    ByteView bytes_;
    std::size_t next_ = 0;       ///< stored index of the byte after the current one
    std::uint64_t position_ = 0; ///< payload bits consumed
    int zeros_ = 0;              ///< consecutive zero bytes right before `next_`
    std::uint8_t current_ = 0;
    int left_ = 0; ///< unread bits of `current_`
};

} // namespace zelvra::bitstream
