// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/Files.h"

#include <string>
#include <vector>

namespace zelvra::test {

/// A QuickTime or MP4 file as plain boxes. Makes movies that no encoder writes: turned, edited twice, beyond
/// 4 GiB, damaged. Deliberately independent of the engine's own reader, so that neither hides the other's
/// faults. Files are held in memory as a whole and must be intact.
struct Box {
    std::string type;
    Bytes payload;             ///< of a box without child boxes
    std::vector<Box> children; ///< of moov, trak, edts, mdia, minf, stbl, udta and dinf

    /// The descendant at a path of types such as "mdia/minf/stbl", taking the first child of each type.
    /// Throws if there is none.
    Box& at(const std::string& path);
    /// Whether `at` would find a box.
    bool has(const std::string& path) const;
    /// Size in the file in bytes, header included.
    std::uint64_t size() const;
};

struct BoxFile {
    std::vector<Box> boxes;

    static BoxFile read(const std::filesystem::path& file);
    void write(const std::filesystem::path& file) const;

    Box& movie();
    /// The first track with that handler ("vide", "soun"). Throws if there is none.
    Box& track(const std::string& handler);
};

/// Big-endian numbers of `bytes` bytes inside a payload.
std::uint64_t numberAt(const Bytes& payload, std::size_t position, int bytes);
void putNumber(Bytes& payload, std::size_t position, int bytes, std::uint64_t number);
void appendNumber(Bytes& payload, int bytes, std::uint64_t number);

} // namespace zelvra::test
