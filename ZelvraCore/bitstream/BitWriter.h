// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/Bytes.h"

namespace zelvra::bitstream {

/// Writes the payload of a NAL unit bit by bit; the counterpart of BitReader. Emulation prevention is added
/// afterwards by `withEmulationPrevention`.
class BitWriter {
public:
    /// The lowest `count` bits (0...32) of `value`, u(n).
    void bits(std::uint32_t value, int count);
    void flag(bool value) { bits(value ? 1 : 0, 1); }
    void ue(std::uint32_t value);
    void se(std::int32_t value);
    /// Copies the next `count` bits of `from`.
    void copy(BitReader& from, std::uint64_t count);
    /// rbsp_trailing_bits(), which is also HEVC's byte_alignment(): a one, then zeros to the byte boundary.
    void trailingBits();
    /// cabac_alignment_one_bit, repeated up to the byte boundary.
    void alignWithOnes();

    std::uint64_t position() const { return payload_.size() * 8 - static_cast<std::uint64_t>(free_); }
    bool byteAligned() const { return free_ == 0; }
    /// The bits written so far, with zeros filling up the last byte.
    const Bytes& payload() const { return payload_; }

private:
    Bytes payload_;
    int free_ = 0; ///< unused bits of the last byte
};

} // namespace zelvra::bitstream
