// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/Boxes.h"

#include "ZelvraCore/records/MediaError.h"

namespace zelvra::isobmff {

namespace {

template <class Transfer>
void transferHeader(Transfer& io, CompactSampleSizeBox& box, std::uint32_t& count) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.reserved(3);
    io.fields(box.fieldSize, count);
}

} // namespace

void transfer(BoxReader& io, CompactSampleSizeBox& box) {
    std::uint32_t count = 0;
    transferHeader(io, box, count);
    if (box.fieldSize != 4 && box.fieldSize != 8 && box.fieldSize != 16) {
        throw MediaError(MediaError::Cause::corrupt,
                         "box 'stz2' has sizes of " + std::to_string(box.fieldSize) + " bits");
    }
    std::vector<std::uint8_t> packed;
    io.entries(packed, (std::uint64_t{count} * box.fieldSize + 7) / 8, 1);
    for (std::uint8_t& byte : packed) {
        io.fields(byte);
    }
    box.sizes.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        switch (box.fieldSize) {
        case 4: box.sizes[i] = i % 2 == 0 ? packed[i / 2] >> 4 : packed[i / 2] & 0x0F; break;
        case 8: box.sizes[i] = packed[i]; break;
        default: box.sizes[i] = static_cast<std::uint16_t>(packed[2 * i] << 8 | packed[2 * i + 1]);
        }
    }
}

void transfer(BoxWriter& io, CompactSampleSizeBox& box) {
    auto count = static_cast<std::uint32_t>(box.sizes.size());
    transferHeader(io, box, count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint16_t size = box.sizes[i];
        if (box.fieldSize == 16) {
            io.fields(size);
        } else if (box.fieldSize == 8) {
            io.fields(static_cast<std::uint8_t>(size));
        } else if (i % 2 == 0) {
            const std::uint16_t next = i + 1 < count ? box.sizes[i + 1] : std::uint16_t{0};
            io.fields(static_cast<std::uint8_t>(size << 4 | next));
        }
    }
}

} // namespace zelvra::isobmff
