// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/CarriedMetadata.h"

#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/SeiMessages.h"
#include "ZelvraCore/bitstream/hevc/NalType.h"

namespace zelvra::hevc {

using bitstream::Bytes;
using bitstream::ByteView;

namespace {

constexpr std::uint32_t registeredUserData = 4;

/// The NAL unit with its registered user data only. Unchanged if it contains nothing else; empty if it
/// contains none.
Bytes registeredUserDataOf(ByteView nal) {
    auto messages = bitstream::parseSeiMessages(nal.subspan(nalHeaderSize));
    const auto others = std::erase_if(
        messages, [](const bitstream::SeiMessage& message) { return message.type != registeredUserData; });
    if (messages.empty()) {
        return {};
    }
    if (others == 0) {
        return {nal.begin(), nal.end()};
    }
    return bitstream::writeSei(nal.first(nalHeaderSize), messages);
}

} // namespace

CarriedMetadata carriedMetadata(ByteView sample, int nalLengthSize) {
    CarriedMetadata metadata;
    bool afterSlices = false;
    for (const ByteView nal : bitstream::splitNalUnits(sample, nalLengthSize)) {
        if (nal.size() < nalHeaderSize) {
            continue;
        }
        const NalType type = nalType(nal);
        afterSlices = afterSlices || isSlice(type);
        Bytes carried;
        if (type == NalType::dolbyVisionRpu) {
            carried.assign(nal.begin(), nal.end());
        } else if (type == NalType::prefixSei) {
            carried = registeredUserDataOf(nal);
        }
        if (!carried.empty()) {
            (afterSlices ? metadata.afterSlices : metadata.beforeSlices).push_back(std::move(carried));
        }
    }
    return metadata;
}

Bytes withMetadata(ByteView sample, int nalLengthSize, const CarriedMetadata& metadata) {
    Bytes joined;
    bool placed = false;
    for (const ByteView nal : bitstream::splitNalUnits(sample, nalLengthSize)) {
        if (!placed && nal.size() >= nalHeaderSize && isSlice(nalType(nal))) {
            for (const Bytes& before : metadata.beforeSlices) {
                bitstream::appendNalUnit(joined, before, nalLengthSize);
            }
            placed = true;
        }
        bitstream::appendNalUnit(joined, nal, nalLengthSize);
    }
    for (const Bytes& after : metadata.afterSlices) {
        bitstream::appendNalUnit(joined, after, nalLengthSize);
    }
    return joined;
}

} // namespace zelvra::hevc
