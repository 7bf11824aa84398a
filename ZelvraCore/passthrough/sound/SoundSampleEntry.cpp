// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SoundSampleEntry.h"

#include "ZelvraCore/isobmff/BoxTransfer.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/sound/AudioSpecificConfig.h"

#include <algorithm>

namespace zelvra::passthrough {

namespace {

using isobmff::BoxWriter;

constexpr FourCharCode mp4a = fourCharCode("mp4a");

struct CompressedSound {
    FourCharCode type = mp4a;
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::uint32_t packetFrames = 0;
    std::span<const std::uint8_t> configuration; ///< a whole box
};

/// 16.16 fixed point; 0 for a rate that does not fit; only the configuration has it then.
std::uint32_t fixedRate(std::uint32_t sampleRate) {
    return sampleRate <= 0xFFFF ? sampleRate << 16 : 0;
}

void writeHeader(BoxWriter& writer, const CompressedSound& sound, std::uint16_t version,
                 std::uint16_t compressionId) {
    constexpr std::uint16_t dataReference = 1;
    constexpr std::uint16_t bits = 16;
    constexpr std::uint16_t packetSize = 0;
    writer.reserved(6);
    writer.fields(dataReference, version);
    writer.reserved(6);
    writer.fields(static_cast<std::uint16_t>(sound.channels), bits, compressionId, packetSize,
                  fixedRate(sound.sampleRate));
}

std::vector<std::uint8_t> plainEntry(const CompressedSound& sound) {
    BoxWriter writer;
    writer.open(sound.type);
    writeHeader(writer, sound, 0, 0);
    writer.append(sound.configuration);
    writer.close();
    return writer.take();
}

/// QuickTime File Format, "Sound sample description (version 1)" and "siDecompressionParam atom".
std::vector<std::uint8_t> quickTimeEntry(const CompressedSound& sound) {
    constexpr std::uint16_t variableBitRate = 0xFFFE;
    constexpr std::uint32_t unknownBytes = 0;
    constexpr std::uint32_t bytesPerSample = 2;
    BoxWriter writer;
    writer.open(sound.type);
    writeHeader(writer, sound, 1, variableBitRate);
    writer.fields(sound.packetFrames, unknownBytes, unknownBytes, bytesPerSample);
    writer.open(fourCharCode("wave"));
    writer.open(fourCharCode("frma"));
    writer.fields(sound.type);
    writer.close();
    if (sound.type == mp4a) {
        writer.open(mp4a);
        writer.reserved(4);
        writer.close();
    }
    writer.append(sound.configuration);
    writer.open(0); // ends the list
    writer.close();
    writer.close();
    writer.close();
    return writer.take();
}

/// QuickTime has no such box for Opus: its readers know the plain form.
std::vector<std::uint8_t> compressedEntry(const CompressedSound& sound, MovieContainer container) {
    const bool quickTime = container == MovieContainer::quickTime;
    return quickTime && sound.type != fourCharCode("Opus") ? quickTimeEntry(sound) : plainEntry(sound);
}

std::vector<std::uint8_t> withoutBitRate(const isobmff::SampleEntry& entry) {
    const std::span<const std::uint8_t> whole(entry.box);
    const std::size_t header = std::min(isobmff::soundEntryHeaderSize(whole), whole.size());
    constexpr std::size_t sizeAndType = 8;
    BoxWriter writer;
    writer.open(entry.type);
    writer.append(whole.subspan(sizeAndType, header - sizeAndType));
    for (const isobmff::RawBox& box : isobmff::soundEntryBoxes(whole)) {
        if (box.type != fourCharCode("btrt")) {
            writer.append(box.whole);
        }
    }
    writer.close();
    return writer.take();
}

} // namespace

std::vector<std::uint8_t> soundSampleEntry(const isobmff::SampleEntry& source, const SoundCodec& codec,
                                           bool sourceIsQuickTime, MovieContainer container) {
    const bool outputIsQuickTime = container == MovieContainer::quickTime;
    const bool isPcm = codec.kind == SoundCodec::Kind::pcm;
    const bool isPcmOfMp4 = source.type == fourCharCode("ipcm") || source.type == fourCharCode("fpcm");
    if (isPcm && (!outputIsQuickTime || isPcmOfMp4)) {
        throw CannotPassThrough("it is not compressed, which the container does not provide for");
    }
    if (isPcm || sourceIsQuickTime == outputIsQuickTime) {
        return sourceIsQuickTime ? source.box : withoutBitRate(source);
    }
    return compressedEntry(
        {source.type, codec.sampleRate, codec.channels, codec.packetFrames, codec.configuration}, container);
}

std::vector<std::uint8_t> aacSampleEntry(std::span<const std::uint8_t> audioSpecificConfig,
                                         std::uint32_t sampleRate, std::uint32_t channels,
                                         std::uint32_t bitRate, MovieContainer container) {
    constexpr std::uint32_t packetFrames = 1024;
    const std::vector<std::uint8_t> configuration = esdsBox(audioSpecificConfig, bitRate);
    return compressedEntry({mp4a, sampleRate, channels, packetFrames, configuration}, container);
}

} // namespace zelvra::passthrough
