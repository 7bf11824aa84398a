// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/FileBoxes.h"

#include "ZelvraCore/isobmff/BoxTransfer.h"

#include <algorithm>

namespace zelvra::isobmff {

std::optional<FileBox> fileBoxAt(const files::ByteSource& source, std::uint64_t offset) {
    constexpr std::uint64_t shortHeader = 8;
    constexpr std::uint64_t longHeader = 16;
    const std::uint64_t left = source.size() - offset;
    if (left < shortHeader) {
        return std::nullopt;
    }
    const std::vector<std::uint8_t> bytes = source.readBytes(offset, std::min(left, longHeader));
    BoxReader reader(0, bytes);
    FileBox box{0, offset, shortHeader, 0};
    std::uint32_t shortSize = 0;
    reader.fields(shortSize, box.type);
    box.size = shortSize;
    if (shortSize == 0) {
        box.size = left;
    } else if (shortSize == 1) {
        if (left < longHeader) {
            return std::nullopt;
        }
        reader.fields(box.size);
        box.headerSize = longHeader;
    }
    return box.size >= box.headerSize ? std::optional(box) : std::nullopt;
}

} // namespace zelvra::isobmff
