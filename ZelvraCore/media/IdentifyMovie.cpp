// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/IdentifyMovie.h"

#include "ZelvraCore/isobmff/FileBoxes.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/media/ffmpeg/Digest.h"

#include <algorithm>

namespace zelvra::media {

namespace {

constexpr std::uint64_t endBytes = 64 << 10;
/// More is not read of files that are made to take long.
constexpr std::uint64_t mostIndexBytes = std::uint64_t{512} << 20;
constexpr int mostBoxes = 1 << 20;

void addBytes(Digest& digest, const files::ByteSource& movie, std::uint64_t offset, std::uint64_t bytes) {
    constexpr std::uint64_t pieceBytes = 1 << 20;
    std::vector<std::uint8_t> buffer(std::min(bytes, pieceBytes));
    while (bytes > 0) {
        const std::span<std::uint8_t> piece(buffer.data(), std::min<std::uint64_t>(bytes, buffer.size()));
        movie.read(offset, piece);
        digest.add(piece);
        offset += piece.size();
        bytes -= piece.size();
    }
}

bool isOfIndex(const isobmff::FileBox& box) {
    return box.type == fourCharCode("moov") || box.type == fourCharCode("moof");
}

void addIndex(Digest& digest, const files::ByteSource& movie) {
    std::uint64_t left = mostIndexBytes;
    std::uint64_t offset = 0;
    for (int count = 0; count < mostBoxes; ++count) {
        const std::optional<isobmff::FileBox> box = isobmff::fileBoxAt(movie, offset);
        if (!box || box->size > movie.size() - offset) {
            return;
        }
        if (isOfIndex(*box)) {
            if (box->size > left) {
                return;
            }
            addBytes(digest, movie, offset, box->size);
            left -= box->size;
        }
        offset += box->size;
    }
}

} // namespace

MovieIdentity identifyMovie(const files::ByteSource& movie) {
    Digest digest;
    const std::uint64_t end = std::min(movie.size(), endBytes);
    addBytes(digest, movie, 0, end);
    addBytes(digest, movie, movie.size() - end, end);
    addIndex(digest, movie);

    MovieIdentity identity{.size = movie.size()};
    const auto full = digest.finish();
    std::copy_n(full.begin(), identity.digest.size(), identity.digest.begin());
    return identity;
}

MovieIdentity identifyMovie(const Asset& asset) {
    return identifyMovie(bytesOf(asset));
}

MovieIdentity identifyMovie(const std::filesystem::path& movie) {
    return identifyMovie(files::FileByteSource(movie));
}

} // namespace zelvra::media
