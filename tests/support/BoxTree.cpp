// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/BoxTree.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace zelvra::test {
namespace {

constexpr std::array<std::string_view, 8> containers{"moov", "trak", "edts", "mdia",
                                                     "minf", "stbl", "udta", "dinf"};

std::vector<Box> parse(const Bytes& bytes, std::size_t begin, std::size_t end) {
    std::vector<Box> boxes;
    while (begin + 8 <= end) {
        std::uint64_t size = numberAt(bytes, begin, 4);
        std::size_t header = 8;
        if (size == 1) {
            size = numberAt(bytes, begin + 8, 8);
            header = 16;
        } else if (size == 0) {
            size = end - begin;
        }
        if (size < header || size > end - begin) {
            throw std::runtime_error("box tree: a box larger than its parent");
        }
        Box box;
        box.type.assign(bytes.begin() + static_cast<std::ptrdiff_t>(begin) + 4,
                        bytes.begin() + static_cast<std::ptrdiff_t>(begin) + 8);
        const std::size_t stop = begin + static_cast<std::size_t>(size);
        if (std::find(containers.begin(), containers.end(), box.type) != containers.end()) {
            box.children = parse(bytes, begin + header, stop);
        } else {
            box.payload.assign(bytes.begin() + static_cast<std::ptrdiff_t>(begin + header),
                               bytes.begin() + static_cast<std::ptrdiff_t>(stop));
        }
        boxes.push_back(std::move(box));
        begin = stop;
    }
    return boxes;
}

void append(Bytes& bytes, const Box& box) {
    appendNumber(bytes, 4, box.size());
    bytes.insert(bytes.end(), box.type.begin(), box.type.end());
    bytes.insert(bytes.end(), box.payload.begin(), box.payload.end());
    for (const Box& child : box.children) {
        append(bytes, child);
    }
}

template <class BoxType>
BoxType* find(BoxType& box, std::string_view path) {
    const std::string_view type = path.substr(0, path.find('/'));
    for (BoxType& child : box.children) {
        if (child.type == type) {
            return type.size() == path.size() ? &child : find(child, path.substr(type.size() + 1));
        }
    }
    return nullptr;
}

} // namespace

Box& Box::at(const std::string& path) {
    Box* found = find(*this, path);
    if (found == nullptr) {
        throw std::runtime_error("box tree: no " + path + " in " + type);
    }
    return *found;
}

bool Box::has(const std::string& path) const {
    return find(*this, path) != nullptr;
}

std::uint64_t Box::size() const {
    std::uint64_t size = 8 + payload.size();
    for (const Box& child : children) {
        size += child.size();
    }
    return size;
}

BoxFile BoxFile::read(const std::filesystem::path& file) {
    const Bytes bytes = readBytes(file);
    return {parse(bytes, 0, bytes.size())};
}

void BoxFile::write(const std::filesystem::path& file) const {
    Bytes bytes;
    for (const Box& box : boxes) {
        append(bytes, box);
    }
    writeBytes(file, bytes);
}

Box& BoxFile::movie() {
    for (Box& box : boxes) {
        if (box.type == "moov") {
            return box;
        }
    }
    throw std::runtime_error("box tree: no moov");
}

Box& BoxFile::track(const std::string& handler) {
    for (Box& box : movie().children) {
        if (box.type == "trak") {
            const Bytes& kind = box.at("mdia/hdlr").payload;
            if (kind.size() >= 12 && std::equal(handler.begin(), handler.end(), kind.begin() + 8)) {
                return box;
            }
        }
    }
    throw std::runtime_error("box tree: no track of " + handler);
}

std::uint64_t numberAt(const Bytes& payload, std::size_t position, int bytes) {
    std::uint64_t number = 0;
    for (int i = 0; i < bytes; ++i) {
        number = number << 8 | payload.at(position + static_cast<std::size_t>(i));
    }
    return number;
}

void putNumber(Bytes& payload, std::size_t position, int bytes, std::uint64_t number) {
    for (int i = bytes - 1; i >= 0; --i, number >>= 8) {
        payload.at(position + static_cast<std::size_t>(i)) = static_cast<std::uint8_t>(number);
    }
}

void appendNumber(Bytes& payload, int bytes, std::uint64_t number) {
    payload.resize(payload.size() + static_cast<std::size_t>(bytes));
    putNumber(payload, payload.size() - static_cast<std::size_t>(bytes), bytes, number);
}

} // namespace zelvra::test
