// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/MovieSurgery.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace zelvra::test {
namespace {

/// Positions in version 0 boxes (ISO/IEC 14496-12): mvhd 8.2.2, tkhd 8.3.2, mdhd 8.4.2, elst 8.6.6.
constexpr std::size_t timescaleInHeader = 12;
constexpr std::size_t matrixInTrackHeader = 40;
constexpr std::size_t durationInTrackHeader = 20;
constexpr std::size_t durationInMovieHeader = 16;
constexpr std::size_t mediaTimeInEditList = 12;

std::int32_t timescale(const Box& header) {
    return static_cast<std::int32_t>(numberAt(header.payload, timescaleInHeader, 4));
}

void putFixed(Bytes& payload, std::size_t position, double value, int fractionBits) {
    const auto fixed = static_cast<std::int32_t>(std::lround(std::ldexp(value, fractionBits)));
    putNumber(payload, position, 4, static_cast<std::uint32_t>(fixed));
}

std::vector<Box*> tracks(BoxFile& file) {
    std::vector<Box*> tracks;
    for (Box& box : file.movie().children) {
        if (box.type == "trak") {
            tracks.push_back(&box);
        }
    }
    return tracks;
}

/// Adds `shift` to each chunk offset of the movie, and changes 32-bit offsets to `bytes` bytes.
void shiftChunks(BoxFile& file, std::uint64_t shift, int bytes) {
    for (Box* track : tracks(file)) {
        Box& offsets = track->at("mdia/minf/stbl/stco");
        Bytes shifted(offsets.payload.begin(), offsets.payload.begin() + 8);
        for (std::size_t at = 8; at < offsets.payload.size(); at += 4) {
            appendNumber(shifted, bytes, numberAt(offsets.payload, at, 4) + shift);
        }
        offsets.payload = std::move(shifted);
        offsets.type = bytes == 8 ? "co64" : "stco";
    }
}

/// Puts the index right after the file type box.
void reinsertIndex(BoxFile& file) {
    const auto index =
        std::find_if(file.boxes.begin(), file.boxes.end(), [](const Box& box) { return box.type == "moov"; });
    std::rotate(file.boxes.begin() + 1, index, index + 1);
}

} // namespace

void setDisplayMatrix(BoxFile& file, const AffineTransform& matrix) {
    Bytes& header = file.track("vide").at("tkhd").payload;
    const double cells[] = {matrix.a, matrix.b, 0, matrix.c, matrix.d, 0, matrix.tx, matrix.ty, 1};
    for (std::size_t i = 0; i < std::size(cells); ++i) {
        putFixed(header, matrixInTrackHeader + 4 * i, cells[i], i % 3 == 2 ? 30 : 16);
    }
}

void showOnly(BoxFile& file, std::span<const CMTimeRange> stretches) {
    const std::int32_t movieTimescale = timescale(file.movie().at("mvhd"));
    std::uint64_t total = 0;
    for (Box* track : tracks(file)) {
        const std::int32_t mediaTimescale = timescale(track->at("mdia/mdhd"));
        Bytes& list = track->at("edts/elst").payload;
        const std::uint64_t firstMediaTime = numberAt(list, mediaTimeInEditList, 4);
        Bytes edits;
        appendNumber(edits, 4, 0);
        appendNumber(edits, 4, stretches.size());
        total = 0;
        for (const CMTimeRange& stretch : stretches) {
            const auto duration =
                static_cast<std::uint64_t>(stretch.duration.converted(movieTimescale).value);
            const std::uint64_t mediaTime =
                stretch.start.isValid()
                    ? firstMediaTime +
                          static_cast<std::uint64_t>(stretch.start.converted(mediaTimescale).value)
                    : 0xFFFFFFFF;
            total += duration;
            appendNumber(edits, 4, duration);
            appendNumber(edits, 4, mediaTime);
            appendNumber(edits, 4, 0x00010000);
        }
        list = std::move(edits);
        putNumber(track->at("tkhd").payload, durationInTrackHeader, 4, total);
    }
    putNumber(file.movie().at("mvhd").payload, durationInMovieHeader, 4, total);
}

void useTwoSampleEntries(BoxFile& file) {
    Box& table = file.track("vide").at("mdia/minf/stbl");
    Bytes& entries = table.at("stsd").payload;
    const Bytes entry(entries.begin() + 8, entries.end());
    entries.insert(entries.end(), entry.begin(), entry.end());
    putNumber(entries, 4, 4, 2);

    const auto chunks = static_cast<std::uint32_t>(numberAt(table.at("stco").payload, 4, 4));
    if (chunks < 2) {
        throw std::runtime_error("two sample entries need two chunks");
    }
    // Runs of chunks (8.7.4): first chunk, samples per chunk, sample entry. Written out chunk by chunk.
    const Bytes runs = table.at("stsc").payload;
    Bytes split;
    appendNumber(split, 4, 0);
    appendNumber(split, 4, chunks);
    std::size_t run = 8;
    for (std::uint32_t chunk = 1; chunk <= chunks; ++chunk) {
        if (run + 12 < runs.size() && numberAt(runs, run + 12, 4) == chunk) {
            run += 12;
        }
        appendNumber(split, 4, chunk);
        appendNumber(split, 4, numberAt(runs, run + 4, 4));
        appendNumber(split, 4, chunk <= chunks / 2 ? 1 : 2);
    }
    table.at("stsc").payload = std::move(split);
}

void moveIndexToFront(BoxFile& file) {
    shiftChunks(file, file.movie().size(), 4);
    reinsertIndex(file);
}

void writeBeyond4GiB(BoxFile file, const std::filesystem::path& path) {
    constexpr std::uint64_t hole = std::uint64_t{1} << 32;
    shiftChunks(file, 0, 8); // gives the index its final size first
    const std::uint64_t shift = file.movie().size() + hole;
    for (Box* track : tracks(file)) {
        Bytes& offsets = track->at("mdia/minf/stbl/co64").payload;
        for (std::size_t at = 8; at < offsets.size(); at += 8) {
            putNumber(offsets, at, 8, numberAt(offsets, at, 8) + shift);
        }
    }
    reinsertIndex(file);
    BoxFile media;
    media.boxes.assign(file.boxes.begin() + 2, file.boxes.end());
    file.boxes.resize(2);
    file.write(path);

    Bytes freeBox; // one box with a 64-bit size over the whole hole
    appendNumber(freeBox, 4, 1);
    freeBox.insert(freeBox.end(), {'f', 'r', 'e', 'e'});
    appendNumber(freeBox, 8, hole);
    const std::filesystem::path tail = path.string() + ".media";
    media.write(tail);
    const Bytes mediaBytes = readBytes(tail);
    std::filesystem::remove(tail);
    std::ofstream stream(path, std::ios::binary | std::ios::app);
    stream.write(reinterpret_cast<const char*>(freeBox.data()), static_cast<std::streamsize>(freeBox.size()));
    stream.close();
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - freeBox.size() + hole);
    stream.open(path, std::ios::binary | std::ios::app);
    stream.write(reinterpret_cast<const char*>(mediaBytes.data()),
                 static_cast<std::streamsize>(mediaBytes.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

} // namespace zelvra::test
