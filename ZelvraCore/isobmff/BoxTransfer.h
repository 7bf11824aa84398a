// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/FourCharCode.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace zelvra::isobmff {

/// Reading and writing a box's fields. BoxReader fills them from bytes, BoxWriter appends them to bytes. Each
/// box has one function `transfer(io, box)` that names its fields in order (Boxes.h). It serves both, so
/// reading and writing cannot drift apart. Numbers are big-endian. Neither class knows any particular box.

/// The four characters in quotes. Always one printable line, whatever the bytes are.
std::string quotedType(FourCharCode type);

/// Reads the payload of one box. Throws MediaError::corrupt, naming the box, if the payload is too short.
class BoxReader {
public:
    static constexpr bool reading = true;

    /// `payload` must outlive this.
    BoxReader(FourCharCode type, std::span<const std::uint8_t> payload) : type_(type), rest_(payload) {}

    FourCharCode type() const { return type_; }
    std::size_t remaining() const { return rest_.size(); }

    /// Version and flags of a full box (ISO/IEC 14496-12, clause 4.2). Refuses a version above `maxVersion`.
    void versionAndFlags(std::uint8_t& version, std::uint32_t& flags, std::uint8_t maxVersion);

    template <std::integral... Fields>
    void fields(Fields&... values) {
        (readNumber(values), ...);
    }
    /// 64 bits if `isWide`, 32 otherwise. 32-bit values of signed fields are sign-extended.
    template <std::integral... Fields>
    void sized(bool isWide, Fields&... values) {
        (readSized(isWide, values), ...);
    }
    void flags24(std::uint32_t& flags);
    /// Bytes without meaning. They are skipped; BoxWriter writes zeros.
    void reserved(std::size_t count) { take(count); }
    template <std::size_t size>
    void bytes(std::array<std::uint8_t, size>& values) {
        const auto taken = take(size);
        std::copy(taken.begin(), taken.end(), values.begin());
    }
    /// All remaining bytes of the box.
    void rest(std::vector<std::uint8_t>& values);

    /// Resizes `list` to `count` entries of at least `entryBytes` each. Throws if they do not fit in the box.
    template <class Entry>
    void entries(std::vector<Entry>& list, std::uint64_t count, std::size_t entryBytes) {
        requireEntries(count, entryBytes);
        list.resize(count);
    }
    /// The same for a list that follows its 32-bit count.
    template <class Entry>
    void counted(std::vector<Entry>& list, std::size_t entryBytes) {
        std::uint32_t count = 0;
        fields(count);
        entries(list, count, entryBytes);
    }
    /// One whole box nested in this one.
    void box(std::vector<std::uint8_t>& whole);

private:
    template <std::integral Number>
    void readNumber(Number& value) {
        std::make_unsigned_t<Number> number = 0;
        for (const std::uint8_t byte : take(sizeof(Number))) {
            number = static_cast<std::make_unsigned_t<Number>>(std::uint64_t{number} << 8 | byte);
        }
        value = static_cast<Number>(number);
    }
    template <std::integral Number>
    void readSized(bool isWide, Number& value) {
        static_assert(sizeof(Number) == 8);
        if (isWide) {
            return readNumber(value);
        }
        std::conditional_t<std::is_signed_v<Number>, std::int32_t, std::uint32_t> narrow = 0;
        readNumber(narrow);
        value = narrow;
    }

    std::span<const std::uint8_t> take(std::size_t count);
    void requireEntries(std::uint64_t count, std::size_t entryBytes) const;
    [[noreturn]] void failShort() const;

    FourCharCode type_;
    std::span<const std::uint8_t> rest_;
};

/// Appends boxes to bytes.
class BoxWriter {
public:
    static constexpr bool reading = false;

    /// Opens a box; `close` fills in its size. Boxes nest.
    void open(FourCharCode type);
    /// Throws MediaError::unsupported if the box needs a size of more than 32 bits.
    void close();
    /// Appends whole boxes unchanged.
    void append(std::span<const std::uint8_t> bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    }

    /// Reserves capacity for `bytes` bytes in all.
    void reserve(std::size_t bytes) { bytes_.reserve(bytes); }

    std::size_t size() const { return bytes_.size(); }
    std::vector<std::uint8_t> take() { return std::exchange(bytes_, {}); }

    void versionAndFlags(const std::uint8_t& version, const std::uint32_t& flags, std::uint8_t maxVersion);
    template <std::integral... Fields>
    void fields(const Fields&... values) {
        (putNumber(values), ...);
    }
    template <std::integral... Fields>
    void sized(bool isWide, const Fields&... values) {
        ((isWide ? putNumber(values) : putNumber(static_cast<std::uint32_t>(values))), ...);
    }
    void flags24(const std::uint32_t& flags);
    void reserved(std::size_t count) { bytes_.insert(bytes_.end(), count, 0); }
    template <std::size_t size>
    void bytes(const std::array<std::uint8_t, size>& values) {
        append(values);
    }
    void rest(const std::vector<std::uint8_t>& values) { append(values); }
    template <class Entry>
    void entries(const std::vector<Entry>&, std::uint64_t, std::size_t) {}
    template <class Entry>
    void counted(const std::vector<Entry>& list, std::size_t) {
        fields(static_cast<std::uint32_t>(list.size()));
    }
    void box(const std::vector<std::uint8_t>& whole) { append(whole); }

private:
    template <std::integral Number>
    void putNumber(Number value) {
        for (std::size_t i = sizeof(Number); i > 0; --i) {
            bytes_.push_back(
                static_cast<std::uint8_t>(static_cast<std::make_unsigned_t<Number>>(value) >> (8 * (i - 1))));
        }
    }

    std::vector<std::uint8_t> bytes_;
    std::vector<std::size_t> opened_; ///< start of each box that is still open
};

} // namespace zelvra::isobmff
