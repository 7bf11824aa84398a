// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/sound/SilentSound.h"

#include "ZelvraCore/bitstream/BitWriter.h"

#include <array>
#include <span>

namespace zelvra::passthrough {

namespace {

using bitstream::BitWriter;

/// Syntactic elements, ISO/IEC 14496-3 table 4.85.
enum class Element : std::uint8_t { single = 0, pair = 1, lowFrequencies = 3, end = 7 };

/// ics_info() of one long window without scale factor bands.
void writeWindow(BitWriter& writer) {
    writer.bits(0, 1);             // ics_reserved_bit
    writer.bits(0, 2 + 1 + 6 + 1); // ONLY_LONG_SEQUENCE, sine window, max_sfb, predictor_data_present
}

/// individual_channel_stream(): nothing is coded in zero bands.
void writeChannel(BitWriter& writer, bool commonWindow) {
    writer.bits(0, 8); // global_gain
    if (!commonWindow) {
        writeWindow(writer);
    }
    writer.bits(0, 1 + 1 + 1); // pulse_data_present, tns_data_present, gain_control_data_present
}

void writeElement(BitWriter& writer, Element element, std::uint32_t tag) {
    writer.bits(static_cast<std::uint32_t>(element), 3);
    writer.bits(tag, 4);
    if (element != Element::pair) {
        writeChannel(writer, false);
        return;
    }
    writer.bits(1, 1); // common_window
    writeWindow(writer);
    writer.bits(0, 2); // ms_mask_present
    writeChannel(writer, true);
    writeChannel(writer, true);
}

/// The elements of a channel configuration in their order, ISO/IEC 14496-3 table 1.19.
std::span<const Element> elementsOf(std::uint8_t channelConfiguration) {
    using enum Element;
    static constexpr std::array full{single, pair, pair, pair, lowFrequencies};
    static constexpr std::array surround{single, pair, pair, lowFrequencies};
    static constexpr std::array four{single, pair, single};
    switch (channelConfiguration) {
    case 1: return std::span(full).first(1);
    case 2: return std::span(full).subspan(1, 1);
    case 3: return std::span(full).first(2);
    case 4: return four;
    case 5: return std::span(full).first(3);
    case 6: return surround;
    default: return full;
    }
}

} // namespace

std::vector<std::uint8_t> silentAacPacket(std::uint8_t channelConfiguration) {
    BitWriter writer;
    std::array<std::uint32_t, 4> nextTags{};
    for (const Element element : elementsOf(channelConfiguration)) {
        writeElement(writer, element, nextTags.at(static_cast<std::size_t>(element))++);
    }
    writer.bits(static_cast<std::uint32_t>(Element::end), 3);
    return writer.payload();
}

std::vector<std::uint8_t> silentOpusPacket(std::uint32_t frames, std::uint32_t channels) {
    // The MDCT coder at full band, as it has a flag for silence: its frames of 2.5, 5, 10 and 20 ms.
    struct Mode {
        std::uint32_t frames;
        std::uint8_t configuration;
    };
    constexpr std::array<Mode, 4> modes{{{960, 31}, {480, 30}, {240, 29}, {120, 28}}};
    constexpr std::array<std::uint8_t, 2> silentFrame{0xFF, 0xFE};
    constexpr std::uint32_t longestPacket = 5760;
    for (const Mode& mode : modes) {
        if (frames == 0 || frames > longestPacket || frames % mode.frames != 0) {
            continue;
        }
        const std::uint32_t count = frames / mode.frames;
        const auto code = static_cast<std::uint8_t>(count == 1 ? 0 : 3);
        const auto stereo = static_cast<std::uint8_t>(channels > 1 ? 4 : 0);
        std::vector<std::uint8_t> packet{static_cast<std::uint8_t>(mode.configuration << 3 | stereo | code)};
        if (count > 1) {
            packet.push_back(static_cast<std::uint8_t>(count)); // all of one size, without padding
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            packet.insert(packet.end(), silentFrame.begin(), silentFrame.end());
        }
        return packet;
    }
    return {};
}

} // namespace zelvra::passthrough
