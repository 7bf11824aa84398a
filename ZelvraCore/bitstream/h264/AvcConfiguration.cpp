// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"

#include "ZelvraCore/bitstream/ByteCursor.h"

#include <algorithm>

namespace zelvra::h264 {

using bitstream::BitstreamError;
using bitstream::ByteCursor;
using bitstream::Bytes;
using bitstream::ByteView;

namespace {

constexpr std::size_t maxSps = 31;
constexpr std::size_t maxPps = 255;

std::vector<Bytes> takeSets(ByteCursor& cursor, std::size_t count) {
    std::vector<Bytes> sets;
    for (std::size_t i = 0; i < count; ++i) {
        const ByteView nal = cursor.take(cursor.word());
        sets.emplace_back(nal.begin(), nal.end());
    }
    return sets;
}

void appendSets(Bytes& bytes, const std::vector<Bytes>& sets) {
    for (const Bytes& nal : sets) {
        bitstream::appendNumber(bytes, nal.size(), 2);
        bitstream::append(bytes, nal);
    }
}

void addSet(std::vector<Bytes>& sets, ByteView nal, std::size_t most) {
    Bytes set(nal.begin(), nal.end());
    if (std::ranges::find(sets, set) != sets.end()) {
        return;
    }
    if (sets.size() >= most || set.size() > 0xFFFF) {
        throw BitstreamError::unsupported("the video's decoder configuration has no room for another set");
    }
    sets.push_back(std::move(set));
}

} // namespace

AvcConfiguration AvcConfiguration::parse(ByteView content) {
    ByteCursor cursor(content, "video's decoder configuration");
    if (cursor.byte() != 1) {
        throw BitstreamError::unsupported("the video's decoder configuration is of an unknown version");
    }
    AvcConfiguration record;
    record.profile = cursor.byte();
    record.compatibility = cursor.byte();
    record.level = cursor.byte();
    const std::uint8_t length = cursor.byte();
    record.nalLengthSize = (length & 3) + 1;
    record.reservedBeforeLengthSize = length & 0xFC;
    const std::uint8_t spsCount = cursor.byte();
    record.reservedBeforeSpsCount = spsCount & 0xE0;
    record.spsNals = takeSets(cursor, spsCount & 0x1F);
    record.ppsNals = takeSets(cursor, cursor.byte());
    record.trailer.assign(cursor.rest().begin(), cursor.rest().end());
    return record;
}

Bytes AvcConfiguration::serialise() const {
    Bytes bytes{1, profile, compatibility, level};
    bytes.push_back(static_cast<std::uint8_t>(reservedBeforeLengthSize | (nalLengthSize - 1)));
    bytes.push_back(static_cast<std::uint8_t>(reservedBeforeSpsCount | spsNals.size()));
    appendSets(bytes, spsNals);
    bytes.push_back(static_cast<std::uint8_t>(ppsNals.size()));
    appendSets(bytes, ppsNals);
    bitstream::append(bytes, trailer);
    return bytes;
}

void AvcConfiguration::addSps(ByteView nal) {
    addSet(spsNals, nal, maxSps);
}

void AvcConfiguration::addPps(ByteView nal) {
    addSet(ppsNals, nal, maxPps);
}

} // namespace zelvra::h264
