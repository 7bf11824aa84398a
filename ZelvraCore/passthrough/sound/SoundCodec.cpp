// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SoundCodec.h"

#include "ZelvraCore/isobmff/BoxTransfer.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/sound/AudioSpecificConfig.h"
#include "ZelvraCore/records/MediaError.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace zelvra::passthrough {

namespace {

using isobmff::RawBox;

constexpr std::uint32_t opusRate = 48000;

/// The codec's configuration, which QuickTime keeps one level deeper, in `wave`.
std::vector<std::uint8_t> configurationBox(const isobmff::SampleEntry& entry, FourCharCode type) {
    const std::vector<RawBox> boxes = isobmff::soundEntryBoxes(entry.box);
    if (const RawBox* box = isobmff::findBox(boxes, type)) {
        return {box->whole.begin(), box->whole.end()};
    }
    if (const RawBox* wave = isobmff::findBox(boxes, fourCharCode("wave"))) {
        const std::vector<RawBox> inner = isobmff::rawBoxes(wave->payload);
        if (const RawBox* box = isobmff::findBox(inner, type)) {
            return {box->whole.begin(), box->whole.end()};
        }
    }
    throw CannotPassThrough("it does not say how it is coded");
}

std::span<const std::uint8_t> payloadOf(std::span<const std::uint8_t> box) {
    return isobmff::rawBoxes(box).front().payload;
}

SoundCodec aacCodec(const isobmff::SampleEntry& entry) {
    SoundCodec codec;
    codec.kind = SoundCodec::Kind::aac;
    codec.configuration = configurationBox(entry, fourCharCode("esds"));
    const AudioSpecificConfig config = audioSpecificConfig(payloadOf(codec.configuration));
    if (!config.isPlainLowComplexity) {
        throw CannotPassThrough("it is not plain AAC-LC");
    }
    codec.sampleRate = config.sampleRate;
    codec.channels = config.channels();
    codec.packetFrames = config.packetFrames;
    codec.aacChannelConfiguration = config.channelConfiguration;
    codec.warmUpPackets = 1;
    codec.rollDistance = -1;
    return codec;
}

std::uint32_t ac3Rate(unsigned code) {
    constexpr std::array<std::uint32_t, 3> rates{48000, 44100, 32000};
    if (code >= rates.size()) {
        throw CannotPassThrough("it has an unusual sample rate");
    }
    return rates[code];
}

/// Full channels of an audio coding mode, ETSI TS 102 366 table 4.3.
std::uint32_t ac3Channels(unsigned mode, bool lowFrequencies) {
    constexpr std::array<std::uint32_t, 8> channels{2, 1, 2, 3, 3, 4, 4, 5};
    return channels[mode] + (lowFrequencies ? 1 : 0);
}

/// ETSI TS 102 366 clause F.4.
SoundCodec ac3Codec(const isobmff::SampleEntry& entry) {
    SoundCodec codec;
    codec.kind = SoundCodec::Kind::ac3;
    codec.configuration = configurationBox(entry, fourCharCode("dac3"));
    isobmff::BoxReader reader(fourCharCode("dac3"), payloadOf(codec.configuration));
    std::uint8_t first = 0;
    std::uint8_t second = 0;
    reader.fields(first, second);
    codec.sampleRate = ac3Rate(first >> 6);
    codec.channels = ac3Channels(second >> 3 & 7, (second & 4) != 0);
    codec.packetFrames = 1536;
    codec.warmUpPackets = 1;
    return codec;
}

/// ETSI TS 102 366 clause F.6.
SoundCodec eac3Codec(const isobmff::SampleEntry& entry) {
    SoundCodec codec;
    codec.kind = SoundCodec::Kind::eac3;
    codec.configuration = configurationBox(entry, fourCharCode("dec3"));
    isobmff::BoxReader reader(fourCharCode("dec3"), payloadOf(codec.configuration));
    std::uint16_t rateAndStreams = 0;
    std::uint8_t rate = 0;
    std::uint8_t mode = 0;
    std::uint8_t dependentStreams = 0;
    reader.fields(rateAndStreams, rate, mode, dependentStreams);
    const bool oneStream = (rateAndStreams & 7) == 0 && (dependentStreams >> 1 & 15) == 0;
    if (!oneStream || reader.remaining() > 0) {
        throw CannotPassThrough("it is E-AC-3 of several streams");
    }
    codec.sampleRate = ac3Rate(rate >> 6);
    codec.channels = ac3Channels(mode >> 1 & 7, (mode & 1) != 0);
    codec.packetFrames = 1536;
    codec.warmUpPackets = 1;
    return codec;
}

/// The decoder's "magic cookie", after version and flags.
SoundCodec alacCodec(const isobmff::SampleEntry& entry) {
    SoundCodec codec;
    codec.kind = SoundCodec::Kind::alac;
    codec.configuration = configurationBox(entry, fourCharCode("alac"));
    isobmff::BoxReader reader(fourCharCode("alac"), payloadOf(codec.configuration));
    std::uint8_t channels = 0;
    reader.reserved(4);
    reader.fields(codec.packetFrames);
    reader.reserved(5);
    reader.fields(channels);
    reader.reserved(10);
    reader.fields(codec.sampleRate);
    codec.channels = channels;
    return codec;
}

/// "Encapsulation of Opus in ISO Base Media File Format", clause 4.3.2. Only the track says how long its
/// packets last.
SoundCodec opusCodec(const isobmff::SampleEntry& entry, const isobmff::Track& track) {
    SoundCodec codec;
    codec.kind = SoundCodec::Kind::opus;
    codec.configuration = configurationBox(entry, fourCharCode("dOps"));
    isobmff::BoxReader reader(fourCharCode("dOps"), payloadOf(codec.configuration));
    std::uint8_t channels = 0;
    std::uint8_t mappingFamily = 0;
    reader.reserved(1);
    reader.fields(channels);
    reader.reserved(8);
    reader.fields(mappingFamily);
    if (mappingFamily != 0 || track.samples.empty()) {
        throw CannotPassThrough("it is Opus of several streams");
    }
    codec.channels = channels;
    codec.sampleRate = opusRate;
    codec.packetFrames = static_cast<std::uint32_t>(std::uint64_t{track.samples.front().duration} * opusRate /
                                                    track.timescale);
    constexpr std::uint32_t warmUpFrames = opusRate * 80 / 1000;
    codec.warmUpPackets =
        codec.packetFrames != 0 ? (warmUpFrames + codec.packetFrames - 1) / codec.packetFrames : 0;
    codec.rollDistance = static_cast<std::int16_t>(-static_cast<int>(codec.warmUpPackets));
    return codec;
}

/// The flags of QuickTime's `lpcm` say what a number is; only 8-bit numbers may be unsigned here.
std::optional<std::uint8_t> silenceOfLinearPcm(const isobmff::SampleEntry& entry) {
    constexpr std::size_t version2Size = 72;
    if (entry.box.size() < version2Size) {
        return std::nullopt;
    }
    isobmff::BoxReader reader(entry.type, std::span(entry.box).subspan(56));
    std::uint32_t bits = 0;
    std::uint32_t flags = 0;
    reader.fields(bits, flags);
    constexpr std::uint32_t isFloat = 1;
    constexpr std::uint32_t isSigned = 4;
    const bool centredAtZero = (flags & (isFloat | isSigned)) != 0;
    return centredAtZero ? std::optional<std::uint8_t>(0)
           : bits == 8   ? std::optional<std::uint8_t>(0x80)
                         : std::nullopt;
}

/// The byte that silence is made of; `nullopt` if it is not PCM.
std::optional<std::uint8_t> silentPcmByte(const isobmff::SampleEntry& entry) {
    constexpr std::size_t bitsPosition = 26;
    const bool eightBits = entry.box.size() > bitsPosition + 1 && entry.box[bitsPosition + 1] == 8;
    switch (entry.type) {
    case fourCharCode("sowt"):
    case fourCharCode("twos"):
    case fourCharCode("in24"):
    case fourCharCode("in32"):
    case fourCharCode("fl32"):
    case fourCharCode("fl64"):
    case fourCharCode("ipcm"):
    case fourCharCode("fpcm"): return 0;
    case fourCharCode("lpcm"): return silenceOfLinearPcm(entry);
    case fourCharCode("raw "):
    case fourCharCode("NONE"): return eightBits ? std::optional<std::uint8_t>(0x80) : std::nullopt;
    case fourCharCode("ulaw"): return 0xFF;
    case fourCharCode("alaw"): return 0xD5;
    default: return std::nullopt;
    }
}

SoundCodec pcmCodec(const isobmff::SampleEntry& entry, const isobmff::Track& track) {
    const std::optional<std::uint8_t> silence = silentPcmByte(entry);
    constexpr std::uint32_t mostBytes = 1024; // of all channels
    if (!silence || !track.uniform || track.uniform.ticks != 1 || track.uniform.bytes > mostBytes) {
        throw CannotPassThrough("no silence can be put into sound of the kind " +
                                isobmff::quotedType(entry.type));
    }
    constexpr std::size_t channelsPosition = 24;
    SoundCodec codec;
    codec.sampleRate = track.timescale;
    codec.channels = entry.box.size() > channelsPosition + 1 ? entry.box[channelsPosition + 1] : 0;
    codec.silentByte = *silence;
    return codec;
}

SoundCodec codecOf(const isobmff::SampleEntry& entry, const isobmff::Track& track) {
    switch (entry.type) {
    case fourCharCode("mp4a"): return aacCodec(entry);
    case fourCharCode("ac-3"): return ac3Codec(entry);
    case fourCharCode("ec-3"): return eac3Codec(entry);
    case fourCharCode("alac"): return alacCodec(entry);
    case fourCharCode("Opus"): return opusCodec(entry, track);
    default: return pcmCodec(entry, track);
    }
}

/// Packets that are longer or shorter than their codec's are a sign of something else: band replication, a
/// wrong index.
void requirePacketsToLast(const SoundCodec& codec, const isobmff::Track& track) {
    constexpr std::uint32_t mostPacketFrames = 1u << 16;
    constexpr std::uint32_t mostTicks = std::numeric_limits<std::int32_t>::max();
    if (codec.sampleRate == 0 || codec.packetFrames == 0 || codec.packetFrames > mostPacketFrames ||
        track.timescale > mostTicks) {
        throw CannotPassThrough("it does not say how it is coded");
    }
    if (codec.kind == SoundCodec::Kind::pcm || track.samples.size() < 2) {
        return;
    }
    const isobmff::Sample& last = track.samples.back();
    const double seconds =
        static_cast<double>(last.decodeTime - track.samples.front().decodeTime) / track.timescale;
    const double expected =
        static_cast<double>(track.samples.size() - 1) * codec.packetFrames / codec.sampleRate;
    constexpr double tolerance = 0.25;
    if (track.uniform || std::abs(seconds - expected) > tolerance * expected) {
        throw CannotPassThrough("its packets do not last as long as those of its codec");
    }
}

} // namespace

const isobmff::SampleEntry& soleSoundEntry(const isobmff::Track& track) {
    const std::uint16_t entry = track.samples.empty() ? 0 : track.samples.front().sampleEntry;
    const bool same =
        std::all_of(track.samples.begin(), track.samples.end(),
                    [entry](const isobmff::Sample& sample) { return sample.sampleEntry == entry; });
    if (!same || entry >= track.sampleEntries.size()) {
        throw CannotPassThrough("its coding changes on the way");
    }
    return track.sampleEntries[entry];
}

SoundCodec soundCodec(const isobmff::Track& track) {
    const isobmff::SampleEntry& entry = soleSoundEntry(track);
    if (entry.encrypted) {
        throw CannotPassThrough("it is encrypted");
    }
    try {
        SoundCodec codec = codecOf(entry, track);
        requirePacketsToLast(codec, track);
        return codec;
    } catch (const MediaError&) {
        throw CannotPassThrough("its description is damaged");
    }
}

} // namespace zelvra::passthrough
