// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/Files.h"

#include <string>
#include <vector>

namespace zelvra::test {

/// A QuickTime or MP4 file as plain boxes, to make movies that no encoder writes: turned, edited twice,
/// beyond 4 GiB, damaged. Deliberately apart from the engine's own reader, so that neither hides the other's
/// faults. Files are held in memory whole; they are expected to be intact.
struct Box {
    std::string type;
    Bytes payload;             ///< of a box that holds no boxes
    std::vector<Box> children; ///< of moov, trak, edts, mdia, minf, stbl, udta and dinf

    /// The first child, grandchild and so on of those types, "mdia/minf/stbl". Throws where there is none.
    Box& at(const std::string& path);
    /// Whether `at` finds something.
    bool has(const std::string& path) const;
    /// Bytes in the file, header included.
    std::uint64_t size() const;
};

struct BoxFile {
    std::vector<Box> boxes;

    static BoxFile read(const std::filesystem::path& file);
    void write(const std::filesystem::path& file) const;

    Box& movie();
    /// The first track whose handler is `handler` ("vide", "soun"). Throws where there is none.
    Box& track(const std::string& handler);
};

/// Big-endian numbers of `bytes` bytes inside a payload.
std::uint64_t numberAt(const Bytes& payload, std::size_t position, int bytes);
void putNumber(Bytes& payload, std::size_t position, int bytes, std::uint64_t number);
void appendNumber(Bytes& payload, int bytes, std::uint64_t number);

} // namespace zelvra::test
