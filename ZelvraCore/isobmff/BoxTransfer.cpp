// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/BoxTransfer.h"

#include "ZelvraCore/records/MediaError.h"

#include <limits>

namespace zelvra::isobmff {

namespace {

constexpr std::size_t boxHeaderSize = 8;

} // namespace

std::string quotedType(FourCharCode type) {
    std::string text = fourCharString(type);
    for (char& character : text) {
        character = character < ' ' || character > '~' ? '?' : character;
    }
    return "'" + text + "'";
}

void BoxReader::versionAndFlags(std::uint8_t& version, std::uint32_t& flags, std::uint8_t maxVersion) {
    fields(version);
    flags24(flags);
    if (version > maxVersion) {
        throw MediaError(MediaError::Cause::unsupported,
                         "box " + quotedType(type_) + " has the unknown version " + std::to_string(version));
    }
}

void BoxReader::flags24(std::uint32_t& flags) {
    flags = 0;
    for (const std::uint8_t byte : take(3)) {
        flags = flags << 8 | byte;
    }
}

void BoxReader::rest(std::vector<std::uint8_t>& values) {
    const auto taken = take(rest_.size());
    values.assign(taken.begin(), taken.end());
}

void BoxReader::box(std::vector<std::uint8_t>& whole) {
    const std::span<const std::uint8_t> start = rest_;
    std::uint32_t size = 0;
    readNumber(size);
    rest_ = start;
    if (size < boxHeaderSize) {
        failShort();
    }
    const auto taken = take(size);
    whole.assign(taken.begin(), taken.end());
}

std::span<const std::uint8_t> BoxReader::take(std::size_t count) {
    if (count > rest_.size()) {
        failShort();
    }
    const auto taken = rest_.first(count);
    rest_ = rest_.subspan(count);
    return taken;
}

void BoxReader::requireEntries(std::uint64_t count, std::size_t entryBytes) const {
    if (count > rest_.size() / entryBytes) {
        throw MediaError(MediaError::Cause::corrupt,
                         "box " + quotedType(type_) + " claims " + std::to_string(count) +
                             " entries but has room for " + std::to_string(rest_.size() / entryBytes));
    }
}

void BoxReader::failShort() const {
    throw MediaError(MediaError::Cause::corrupt, "box " + quotedType(type_) + " is cut short");
}

void BoxWriter::open(FourCharCode type) {
    opened_.push_back(bytes_.size());
    fields(std::uint32_t{0}, type);
}

void BoxWriter::close() {
    const std::size_t start = opened_.back();
    opened_.pop_back();
    const std::size_t size = bytes_.size() - start;
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        throw MediaError(MediaError::Cause::unsupported, "the movie index would be larger than 4 GiB");
    }
    for (std::size_t i = 0; i < 4; ++i) {
        bytes_[start + i] = static_cast<std::uint8_t>(size >> (24 - 8 * i));
    }
}

void BoxWriter::versionAndFlags(const std::uint8_t& version, const std::uint32_t& flags, std::uint8_t) {
    fields(version);
    flags24(flags);
}

void BoxWriter::flags24(const std::uint32_t& flags) {
    for (const int shift : {16, 8, 0}) {
        bytes_.push_back(static_cast<std::uint8_t>(flags >> shift));
    }
}

} // namespace zelvra::isobmff
