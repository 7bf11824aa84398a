// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SoundPackets.h"

#include <algorithm>

namespace zelvra::passthrough {

SoundPackets::SoundPackets(const isobmff::Track& track) : records_(track.samples), uniform_(track.uniform) {
    count_ = records_.size();
    if (!uniform_) {
        return;
    }
    count_ = 0;
    firstPackets_.reserve(records_.size());
    for (const isobmff::Sample& record : records_) {
        firstPackets_.push_back(count_);
        count_ += record.size / uniform_.bytes;
    }
}

std::size_t SoundPackets::recordOf(std::uint64_t packet) const {
    if (!uniform_) {
        return packet;
    }
    const auto after = std::upper_bound(firstPackets_.begin(), firstPackets_.end(), packet);
    return static_cast<std::size_t>(after - firstPackets_.begin()) - 1;
}

std::int64_t SoundPackets::start(std::uint64_t packet) const {
    if (records_.empty()) {
        return 0;
    }
    if (packet >= count_) {
        return records_.back().decodeTime + records_.back().duration;
    }
    const std::size_t record = recordOf(packet);
    const std::uint64_t within = uniform_ ? packet - firstPackets_[record] : 0;
    return records_[record].decodeTime + static_cast<std::int64_t>(within * uniform_.ticks);
}

std::uint64_t SoundPackets::packetAt(std::int64_t time) const {
    if (count_ == 0 || time <= start(0)) {
        return 0;
    }
    const auto after = std::upper_bound(
        records_.begin(), records_.end(), time,
        [](std::int64_t moment, const isobmff::Sample& record) { return moment < record.decodeTime; });
    const auto record = static_cast<std::size_t>(after - records_.begin()) - 1;
    if (!uniform_) {
        return record;
    }
    const auto within = static_cast<std::uint64_t>(time - records_[record].decodeTime);
    const std::uint64_t last = records_[record].size / uniform_.bytes - 1;
    return firstPackets_[record] + std::min(last, within / uniform_.ticks);
}

std::uint64_t SoundPackets::boundaryNear(std::int64_t time) const {
    if (count_ == 0) {
        return 0;
    }
    const std::uint64_t packet = packetAt(time);
    return time - start(packet) <= start(packet + 1) - time ? packet : packet + 1;
}

SoundPackets::Stretch SoundPackets::stretch(std::uint64_t packet, std::uint64_t packets) const {
    const std::size_t record = recordOf(packet);
    const isobmff::Sample& sample = records_[record];
    if (!uniform_) {
        return {packet, 1, sample.offset, sample.size};
    }
    const std::uint64_t within = packet - firstPackets_[record];
    const std::uint64_t left = sample.size / uniform_.bytes - within;
    return {packet, std::min(packets, left), sample.offset + within * uniform_.bytes, uniform_.bytes};
}

} // namespace zelvra::passthrough
