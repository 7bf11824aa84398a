// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/RawBoxes.h"

#include "ZelvraCore/isobmff/BoxTransfer.h"
#include "ZelvraCore/records/MediaError.h"

#include <algorithm>

namespace zelvra::isobmff {

namespace {

constexpr std::size_t shortHeader = 8;
constexpr std::size_t longHeader = 16;

/// The box at the start of `bytes`. Requires at least the 8 bytes of a short header.
RawBox firstBox(std::span<const std::uint8_t> bytes) {
    BoxReader reader(0, bytes);
    std::uint32_t shortSize = 0;
    RawBox box;
    reader.fields(shortSize, box.type);
    std::uint64_t size = shortSize;
    std::size_t header = shortHeader;
    if (shortSize == 1) {
        reader.fields(size);
        header = longHeader;
    } else if (shortSize == 0) { // reaches to the end of its container
        size = bytes.size();
    }
    if (size < header || size > bytes.size()) {
        throw MediaError(MediaError::Cause::corrupt,
                         "box " + quotedType(box.type) + " has the wrong size " + std::to_string(size));
    }
    box.whole = bytes.first(size);
    box.payload = box.whole.subspan(header);
    return box;
}

} // namespace

std::vector<RawBox> rawBoxes(std::span<const std::uint8_t> bytes) {
    std::vector<RawBox> boxes;
    while (bytes.size() >= shortHeader) {
        boxes.push_back(firstBox(bytes));
        bytes = bytes.subspan(boxes.back().whole.size());
    }
    return boxes;
}

std::vector<RawBox> soundEntryBoxes(std::span<const std::uint8_t> entry) {
    const std::size_t header = soundEntryHeaderSize(entry);
    return entry.size() > header ? rawBoxes(entry.subspan(header)) : std::vector<RawBox>{};
}

std::size_t soundEntryHeaderSize(std::span<const std::uint8_t> entry) {
    constexpr std::size_t versionPosition = 16;
    if (entry.size() < versionPosition + 2) {
        return entry.size();
    }
    switch (entry[versionPosition] << 8 | entry[versionPosition + 1]) {
    case 1: return 52;
    case 2: return 72;
    default: return 36;
    }
}

const RawBox* findBox(const std::vector<RawBox>& boxes, FourCharCode type) {
    const auto found =
        std::find_if(boxes.begin(), boxes.end(), [type](const RawBox& box) { return box.type == type; });
    return found != boxes.end() ? &*found : nullptr;
}

std::vector<std::uint8_t> makeBox(FourCharCode type, std::span<const std::uint8_t> payload) {
    BoxWriter writer;
    writer.open(type);
    writer.append(payload);
    writer.close();
    return writer.take();
}

} // namespace zelvra::isobmff
