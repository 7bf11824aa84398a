// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/MovieFileWriter.h"

#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/passthrough/file/MovieIndex.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvra::passthrough {

namespace {

/// A stretch of one store.
struct Run {
    Store store = Store::source;
    std::uint64_t offset = 0;
    std::uint64_t bytes = 0;
};

/// Calls `copy` for each run of the media, in file order; samples that are together in a store are one run.
template <class Copy>
void forEachRun(const OutputMovie& movie, std::span<const OutputChunk> chunks, Copy copy) {
    std::optional<Run> run;
    for (const OutputChunk& chunk : chunks) {
        for (std::size_t i = 0; i < chunk.samples; ++i) {
            const StoredBytes& bytes = movie.tracks[chunk.track].samples[chunk.firstSample + i].bytes;
            if (run && run->store == bytes.store && run->offset + run->bytes == bytes.offset) {
                run->bytes += bytes.size;
                continue;
            }
            if (run) {
                copy(*run);
            }
            run = Run{bytes.store, bytes.offset, bytes.size};
        }
    }
    if (run) {
        copy(*run);
    }
}

} // namespace

void writeMovieFile(const OutputMovie& movie, const MovieStores& stores,
                    const std::filesystem::path& destination, const files::WriteProgress& progress,
                    const std::stop_token& stop) {
    const std::vector<OutputChunk> chunks = layOutChunks(movie);
    const std::vector<std::uint8_t> index = buildMovieIndex(movie, chunks);
    const std::uint64_t mediaBytes = chunks.empty() ? 0 : chunks.back().offset + chunks.back().bytes;

    files::AtomicFile file(destination);
    files::FileAppender appender(file, index.size() + mediaBytes, progress, stop);
    appender.append(index);
    forEachRun(movie, chunks,
               [&](const Run& run) { appender.append(stores.of(run.store), run.offset, run.bytes); });
    appender.finish();
    file.commit();
}

} // namespace zelvra::passthrough
