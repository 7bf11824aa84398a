// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/SampleEntry.h"

#include "ZelvraCore/bitstream/ByteCursor.h"

#include <algorithm>

namespace zelvra::bitstream {

namespace {

constexpr std::size_t boxHeaderSize = 8;
constexpr std::size_t childrenOffset = boxHeaderSize + 78;

struct Child {
    ByteView whole;
    ByteView content;
    std::string_view type;
};

struct Layout {
    ByteView fixed;
    std::vector<Child> children;
    ByteView tail; ///< QuickTime closes some lists of boxes with four zero bytes
};

std::string_view asText(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Layout layoutOf(ByteView entry) {
    ByteCursor cursor(entry, "video's sample entry");
    Layout layout;
    layout.fixed = cursor.take(childrenOffset);
    while (cursor.rest().size() >= boxHeaderSize) {
        const ByteView rest = cursor.rest();
        std::uint64_t size = cursor.number(4);
        if (size == 0) {
            layout.tail = rest;
            return layout;
        }
        const std::string_view type = asText(cursor.take(4));
        std::size_t headerSize = boxHeaderSize;
        if (size == 1) {
            size = cursor.number(8);
            headerSize += 8;
        }
        if (size < headerSize || size > rest.size()) {
            throw BitstreamError::corrupt("a box in the video's sample entry has an impossible size");
        }
        cursor.take(size - headerSize);
        const ByteView whole = rest.first(size);
        layout.children.push_back({whole, whole.subspan(headerSize), type});
    }
    layout.tail = cursor.rest();
    return layout;
}

Bytes boxOf(std::string_view type, ByteView content) {
    Bytes box;
    appendNumber(box, boxHeaderSize + content.size(), 4);
    box.insert(box.end(), type.begin(), type.end());
    append(box, content);
    return box;
}

/// Joins the parts of an entry and corrects its size.
Bytes entryOf(const Layout& layout) {
    Bytes entry(layout.fixed.begin(), layout.fixed.end());
    for (const Child& child : layout.children) {
        append(entry, child.whole);
    }
    append(entry, layout.tail);
    Bytes size;
    appendNumber(size, entry.size(), 4);
    std::copy(size.begin(), size.end(), entry.begin());
    return entry;
}

} // namespace

std::optional<ByteView> findChildBox(ByteView entry, std::string_view type) {
    for (const Child& child : layoutOf(entry).children) {
        if (child.type == type) {
            return child.content;
        }
    }
    return std::nullopt;
}

Bytes replaceChildBox(ByteView entry, std::string_view type, ByteView content) {
    const Bytes box = boxOf(type, content);
    Layout layout = layoutOf(entry);
    const auto found = std::ranges::find(layout.children, type, &Child::type);
    if (found != layout.children.end()) {
        found->whole = box;
    } else {
        layout.children.push_back({box, content, type});
    }
    return entryOf(layout);
}

Bytes removeChildBox(ByteView entry, std::string_view type) {
    Layout layout = layoutOf(entry);
    std::erase_if(layout.children, [&](const Child& child) { return child.type == type; });
    return entryOf(layout);
}

} // namespace zelvra::bitstream
