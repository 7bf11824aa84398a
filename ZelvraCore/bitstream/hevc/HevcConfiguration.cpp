// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/HevcConfiguration.h"

#include "ZelvraCore/bitstream/ByteCursor.h"

#include <algorithm>

namespace zelvra::hevc {

using bitstream::BitstreamError;
using bitstream::ByteCursor;
using bitstream::Bytes;
using bitstream::ByteView;

namespace {

HevcConfiguration::Array takeArray(ByteCursor& cursor) {
    HevcConfiguration::Array array;
    const std::uint8_t head = cursor.byte();
    array.complete = (head & 0x80) != 0;
    array.reservedBit = (head & 0x40) != 0;
    array.type = static_cast<NalType>(head & 0x3F);
    const std::uint16_t count = cursor.word();
    for (std::uint16_t i = 0; i < count; ++i) {
        const ByteView nal = cursor.take(cursor.word());
        array.nals.emplace_back(nal.begin(), nal.end());
    }
    return array;
}

void appendArray(Bytes& bytes, const HevcConfiguration::Array& array) {
    bytes.push_back(static_cast<std::uint8_t>((array.complete ? 0x80 : 0) | (array.reservedBit ? 0x40 : 0) |
                                              static_cast<int>(array.type)));
    bitstream::appendNumber(bytes, array.nals.size(), 2);
    for (const Bytes& nal : array.nals) {
        bitstream::appendNumber(bytes, nal.size(), 2);
        bitstream::append(bytes, nal);
    }
}

/// `field` with its lowest 12 bits, min_spatial_segmentation_idc, replaced.
std::uint16_t withSpatialSegmentation(std::uint16_t field, int idc) {
    return static_cast<std::uint16_t>((field & 0xF000) | idc);
}

} // namespace

std::vector<ByteView> HevcConfiguration::nalsOfType(NalType type) const {
    std::vector<ByteView> found;
    for (const Array& array : arrays) {
        if (array.type == type) {
            found.insert(found.end(), array.nals.begin(), array.nals.end());
        }
    }
    return found;
}

HevcConfiguration HevcConfiguration::parse(ByteView content) {
    ByteCursor cursor(content, "video's decoder configuration");
    if (cursor.byte() != 1) {
        throw BitstreamError::unsupported("the video's decoder configuration is of an unknown version");
    }
    HevcConfiguration record;
    record.profile = cursor.byte();
    record.compatibilityFlags = static_cast<std::uint32_t>(cursor.number(4));
    record.constraintFlags = cursor.number(6);
    record.levelIdc = cursor.byte();
    record.spatialSegmentation = cursor.word();
    record.parallelism = cursor.byte();
    record.chroma = cursor.byte();
    record.lumaDepth = cursor.byte();
    record.chromaDepth = cursor.byte();
    record.averageFrameRate = cursor.word();
    record.layersAndLength = cursor.byte();
    const std::uint8_t count = cursor.byte();
    for (std::uint8_t i = 0; i < count; ++i) {
        record.arrays.push_back(takeArray(cursor));
    }
    record.trailer.assign(cursor.rest().begin(), cursor.rest().end());
    return record;
}

Bytes HevcConfiguration::serialise() const {
    Bytes bytes{1, profile};
    bitstream::appendNumber(bytes, compatibilityFlags, 4);
    bitstream::appendNumber(bytes, constraintFlags, 6);
    bytes.push_back(levelIdc);
    bitstream::appendNumber(bytes, spatialSegmentation, 2);
    for (const std::uint8_t byte : {parallelism, chroma, lumaDepth, chromaDepth}) {
        bytes.push_back(byte);
    }
    bitstream::appendNumber(bytes, averageFrameRate, 2);
    bytes.push_back(layersAndLength);
    bytes.push_back(static_cast<std::uint8_t>(arrays.size()));
    for (const Array& array : arrays) {
        appendArray(bytes, array);
    }
    bitstream::append(bytes, trailer);
    return bytes;
}

void HevcConfiguration::add(ByteView nal) {
    constexpr std::size_t most = 0xFFFF;
    if (nal.size() < nalHeaderSize) {
        throw BitstreamError::corrupt("a parameter set of the video is empty");
    }
    const NalType type = nalType(nal);
    auto array = std::ranges::find(arrays, type, &Array::type);
    if (array == arrays.end()) {
        const auto place = std::ranges::find_if(arrays, [&](const Array& each) { return each.type > type; });
        array = arrays.insert(place, Array{true, false, type, {}});
    }
    Bytes set(nal.begin(), nal.end());
    if (std::ranges::find(array->nals, set) != array->nals.end()) {
        return;
    }
    if (set.size() > most || array->nals.size() >= most) {
        throw BitstreamError::unsupported("the video's decoder configuration has no room for another set");
    }
    array->nals.push_back(std::move(set));
}

HevcConfiguration mergeForSplice(const HevcConfiguration& source, const HevcConfiguration& inserted,
                                 const std::vector<Bytes>& more) {
    constexpr std::uint8_t tierFlag = 0x20;
    constexpr std::uint16_t spatialSegmentationBits = 0x0FFF;
    constexpr std::uint8_t reservedBitsOfParallelism = 0xFC;
    constexpr std::uint8_t allButConstantFrameRate = 0x3F;
    constexpr std::uint8_t formatBits = 0x03;
    constexpr std::uint8_t depthBits = 0x07;
    const auto differ = [](std::uint8_t a, std::uint8_t b, std::uint8_t bits) {
        return ((a ^ b) & bits) != 0;
    };
    if (differ(source.chroma, inserted.chroma, formatBits) ||
        differ(source.lumaDepth, inserted.lumaDepth, depthBits) ||
        differ(source.chromaDepth, inserted.chromaDepth, depthBits)) {
        throw BitstreamError::unsupported("the encoded freeze is not of the video's colour format");
    }

    HevcConfiguration merged = source;
    merged.profile |= inserted.profile & tierFlag;
    merged.compatibilityFlags &= inserted.compatibilityFlags;
    merged.constraintFlags &= inserted.constraintFlags;
    merged.levelIdc = std::max(source.levelIdc, inserted.levelIdc);
    merged.spatialSegmentation = withSpatialSegmentation(
        source.spatialSegmentation, std::min(source.spatialSegmentation & spatialSegmentationBits,
                                             inserted.spatialSegmentation & spatialSegmentationBits));
    merged.parallelism = source.parallelism & reservedBitsOfParallelism;
    merged.averageFrameRate = 0; // the source's rate would be wrong, because hidden pictures count too
    merged.layersAndLength = source.layersAndLength & allButConstantFrameRate;
    for (const auto& array : inserted.arrays) {
        if (isParameterSet(array.type)) {
            for (const Bytes& nal : array.nals) {
                merged.add(nal);
            }
        }
    }
    for (const Bytes& nal : more) {
        merged.add(nal);
    }
    return merged;
}

} // namespace zelvra::hevc
