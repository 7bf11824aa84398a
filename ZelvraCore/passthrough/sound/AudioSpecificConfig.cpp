// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/AudioSpecificConfig.h"

#include "ZelvraCore/isobmff/BoxTransfer.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>
#include <array>

namespace zelvra::passthrough {

namespace {

/// Descriptor tags and object types of ISO/IEC 14496-1, tables 1 and 5.
constexpr std::uint8_t elementaryStreamTag = 3;
constexpr std::uint8_t decoderConfigTag = 4;
constexpr std::uint8_t decoderSpecificTag = 5;
constexpr std::uint8_t syncLayerTag = 6;
constexpr std::uint8_t mpeg4Audio = 0x40;
constexpr std::uint8_t mpeg2AacLowComplexity = 0x67;

constexpr FourCharCode esds = fourCharCode("esds");

/// Reads a descriptor's tag and length (seven bits a byte, four bytes at most); its content follows.
void enterDescriptor(isobmff::BoxReader& reader, std::uint8_t expectedTag) {
    std::uint8_t tag = 0;
    reader.fields(tag);
    if (tag != expectedTag) {
        throw CannotPassThrough("it is not described as AAC is");
    }
    std::uint8_t lengthByte = 0x80;
    for (int i = 0; i < 4 && (lengthByte & 0x80) != 0; ++i) {
        reader.fields(lengthByte);
    }
}

void skipStreamFields(isobmff::BoxReader& reader) {
    std::uint16_t streamId = 0;
    std::uint8_t flags = 0;
    reader.fields(streamId, flags);
    if ((flags & 0x80) != 0) { // depends on another stream
        reader.reserved(2);
    }
    if ((flags & 0x40) != 0) { // has an address
        std::uint8_t length = 0;
        reader.fields(length);
        reader.reserved(length);
    }
    if ((flags & 0x20) != 0) { // has a clock of its own
        reader.reserved(2);
    }
}

/// The first bits of the configuration, as many as eight bytes hold; zeros beyond its end.
class LeadingBits {
public:
    explicit LeadingBits(std::span<const std::uint8_t> bytes) {
        for (std::size_t i = 0; i < 8; ++i) {
            rest_ = rest_ << 8 | (i < bytes.size() ? bytes[i] : 0);
        }
    }
    std::uint32_t take(int count) {
        const auto bits = static_cast<std::uint32_t>(rest_ >> (64 - count));
        rest_ <<= count;
        return bits;
    }

private:
    std::uint64_t rest_ = 0;
};

std::uint32_t samplingRate(LeadingBits& bits) {
    constexpr std::array<std::uint32_t, 13> rates{96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                                  22050, 16000, 12000, 11025, 8000,  7350};
    constexpr std::uint32_t escape = 15;
    const std::uint32_t index = bits.take(4);
    return index == escape ? bits.take(24) : index < rates.size() ? rates[index] : 0;
}

AudioSpecificConfig parseConfig(std::span<const std::uint8_t> bytes) {
    constexpr std::uint32_t lowComplexity = 2;
    constexpr std::uint32_t greatestConfiguration = 7;
    LeadingBits bits(bytes);
    AudioSpecificConfig config;
    const std::uint32_t objectType = bits.take(5);
    config.sampleRate = samplingRate(bits);
    config.channelConfiguration = static_cast<std::uint8_t>(bits.take(4));
    config.packetFrames = bits.take(1) != 0 ? 960 : 1024;
    const bool dependsOnCore = bits.take(1) != 0;
    const bool extended = bits.take(1) != 0;
    constexpr std::uint32_t syncExtension = 0x2B7;
    constexpr std::uint32_t bandReplication = 5;
    const bool replicatesBands =
        bits.take(11) == syncExtension && bits.take(5) == bandReplication && bits.take(1) != 0;
    config.isPlainLowComplexity = objectType == lowComplexity && !dependsOnCore && !extended &&
                                  !replicatesBands && config.channelConfiguration >= 1 &&
                                  config.channelConfiguration <= greatestConfiguration;
    return config;
}

/// Its length in one byte.
std::vector<std::uint8_t> descriptor(std::uint8_t tag, std::span<const std::uint8_t> payload) {
    isobmff::BoxWriter writer;
    writer.fields(tag, static_cast<std::uint8_t>(payload.size()));
    writer.append(payload);
    return writer.take();
}

std::vector<std::uint8_t> decoderConfig(std::span<const std::uint8_t> config, std::uint32_t bitRate) {
    constexpr std::uint8_t audioStream = 0x15;
    isobmff::BoxWriter writer;
    writer.fields(mpeg4Audio, audioStream);
    writer.reserved(3); // the decoder's buffer: not stated
    writer.fields(bitRate, bitRate);
    writer.append(descriptor(decoderSpecificTag, config));
    return descriptor(decoderConfigTag, writer.take());
}

} // namespace

AudioSpecificConfig audioSpecificConfig(std::span<const std::uint8_t> esdsPayload) {
    isobmff::BoxReader reader(esds, esdsPayload);
    reader.reserved(4); // version and flags
    enterDescriptor(reader, elementaryStreamTag);
    skipStreamFields(reader);
    enterDescriptor(reader, decoderConfigTag);
    std::uint8_t objectType = 0;
    reader.fields(objectType);
    if (objectType != mpeg4Audio && objectType != mpeg2AacLowComplexity) {
        throw CannotPassThrough("it is not AAC");
    }
    reader.reserved(12);
    enterDescriptor(reader, decoderSpecificTag);
    std::vector<std::uint8_t> config;
    reader.rest(config);
    return parseConfig(config);
}

std::vector<std::uint8_t> esdsBox(std::span<const std::uint8_t> audioSpecificConfig, std::uint32_t bitRate) {
    constexpr std::uint16_t streamId = 0;
    constexpr std::uint8_t noFlags = 0;
    constexpr std::uint8_t predefined = 2;
    isobmff::BoxWriter stream;
    stream.fields(streamId, noFlags);
    stream.append(decoderConfig(audioSpecificConfig, bitRate));
    stream.append(descriptor(syncLayerTag, {&predefined, 1}));
    isobmff::BoxWriter box;
    box.open(esds);
    box.reserved(4); // version and flags
    box.append(descriptor(elementaryStreamTag, stream.take()));
    box.close();
    return box.take();
}

} // namespace zelvra::passthrough
