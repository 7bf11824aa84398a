// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Movie.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zelvra::passthrough {

/// A sound track as a row of packets, each of which is kept or left out as a whole. PCM needs it: its packets
/// are single moments of sound and must not be listed one by one. Pure values; times are media ticks of the
/// track.
///
/// Packets are counted from 0 in decode order; each ends where the next one starts.
class SoundPackets {
public:
    /// Packets that are together in the file, from `firstPacket` on, of the same size and duration.
    struct Stretch {
        std::uint64_t firstPacket = 0;
        std::uint64_t packets = 0;
        std::uint64_t offset = 0; ///< of the first packet's first byte
        std::uint32_t packetBytes = 0;
    };

    /// No packets.
    SoundPackets() = default;
    /// Those of a track, which is borrowed and must outlive this.
    explicit SoundPackets(const isobmff::Track& track);

    std::uint64_t count() const { return count_; }
    /// When the packet starts; for `count()`, when the last one ends.
    std::int64_t start(std::uint64_t packet) const;
    /// The packet that holds this moment: the last that starts at or before it, 0 if none does.
    std::uint64_t packetAt(std::int64_t time) const;
    /// The packet whose start is nearest to this moment, `count()` if that is the end of the last; of two
    /// equally near, the earlier.
    std::uint64_t boundaryNear(std::int64_t time) const;

    /// Where the packets from `packet` on are stored, at most `packets` of them.
    Stretch stretch(std::uint64_t packet, std::uint64_t packets) const;
    /// All packets are in no more stretches than that.
    std::size_t mostStretches() const { return records_.size(); }

private:
    std::size_t recordOf(std::uint64_t packet) const;

    std::span<const isobmff::Sample> records_;
    isobmff::UniformPackets uniform_;
    std::vector<std::uint64_t> firstPackets_; ///< of each record; empty if a record is a packet
    std::uint64_t count_ = 0;
};

} // namespace zelvra::passthrough
