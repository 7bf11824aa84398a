// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/ContainerForms.h"

#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/records/MediaError.h"

namespace zelvra::passthrough {

namespace {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

constexpr std::size_t versionAndFlags = 4;

void append(Bytes& bytes, ByteView more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

bool hasType(ByteView bytes, std::size_t at, FourCharCode type) {
    if (bytes.size() < at + 4) {
        return false;
    }
    const ByteView code = bytes.subspan(at, 4);
    return (FourCharCode{code[0]} << 24 | FourCharCode{code[1]} << 16 | FourCharCode{code[2]} << 8 |
            code[3]) == type;
}

/// Both forms start with the handler; its position distinguishes them.
Bytes metaFor(MovieContainer container, ByteView payload) {
    const bool plain = hasType(payload, 4, fourCharCode("hdlr"));
    const bool versioned = hasType(payload, versionAndFlags + 4, fourCharCode("hdlr"));
    Bytes converted;
    if (container == MovieContainer::quickTime && versioned) {
        append(converted, payload.subspan(versionAndFlags));
    } else {
        if (container != MovieContainer::quickTime && plain) {
            converted.assign(versionAndFlags, 0);
        }
        append(converted, payload);
    }
    return isobmff::makeBox(fourCharCode("meta"), converted);
}

Bytes userDataWithoutChapters(ByteView payload) {
    Bytes kept;
    for (const isobmff::RawBox& item : isobmff::rawBoxes(payload)) {
        if (item.type != fourCharCode("chpl")) {
            append(kept, item.whole);
        }
    }
    return isobmff::makeBox(fourCharCode("udta"), kept);
}

} // namespace

std::vector<std::uint8_t> userDataFor(MovieContainer container, ByteView boxes) {
    Bytes converted;
    for (const isobmff::RawBox& box : isobmff::rawBoxes(boxes)) {
        try {
            if (box.type == fourCharCode("meta")) {
                append(converted, metaFor(container, box.payload));
            } else if (box.type == fourCharCode("udta")) {
                append(converted, userDataWithoutChapters(box.payload));
            } else {
                append(converted, box.whole);
            }
        } catch (const MediaError&) {
            // User data that contradicts its own format must not stop an export; it is left out.
        }
    }
    return converted;
}

std::vector<std::uint8_t> visualEntryFor(MovieContainer container, ByteView entry, bool fullRange) {
    const auto color = bitstream::findChildBox(entry, "colr");
    if (color && container != MovieContainer::quickTime && hasType(*color, 0, fourCharCode("nclc"))) {
        Bytes nclx(color->begin(), color->end());
        nclx[3] = 'x';
        nclx.push_back(fullRange ? 0x80 : 0);
        return bitstream::replaceChildBox(entry, "colr", nclx);
    }
    if (color && container == MovieContainer::quickTime && hasType(*color, 0, fourCharCode("nclx")) &&
        !fullRange) {
        Bytes nclc(color->begin(), color->end() - 1);
        nclc[3] = 'c';
        return bitstream::replaceChildBox(entry, "colr", nclc);
    }
    return {entry.begin(), entry.end()};
}

} // namespace zelvra::passthrough
