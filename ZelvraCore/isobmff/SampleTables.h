// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/Boxes.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/isobmff/SampleBounds.h"

#include <optional>

namespace zelvra::isobmff {

/// The compressed tables of a track (`stbl`, ISO/IEC 14496-12 clause 8.5) and how they unfold into samples.
/// Pure: it reads no file and knows no edits.

struct SampleTables {
    std::vector<SampleEntry> entries;
    std::optional<TimeToSampleBox> durations;
    std::optional<CompositionOffsetBox> compositionOffsets;
    std::optional<SyncSampleBox> syncSamples;
    std::optional<PartialSyncSampleBox> partialSyncSamples;
    std::optional<SampleToChunkBox> chunks;
    std::optional<SampleSizeBox> sizes;
    std::vector<std::uint64_t> chunkOffsets;
};

/// Reads the boxes inside an `stbl`; `stz2` and `stco` are returned as `stsz` and `co64`. If `withSamples` is
/// false, only the sample entries are read.
SampleTables readSampleTables(std::span<const std::uint8_t> sampleTablePayload, bool withSamples);

/// Walks a table of runs, one value a sample. After the last run the value is `rest`.
template <class Run, class Value>
class RunWalker {
public:
    RunWalker(const std::vector<Run>& runs, Value Run::* value, Value rest)
        : runs_(runs), value_(value), rest_(rest) {}

    Value next() {
        while (run_ < runs_.size() && used_ == runs_[run_].count) {
            ++run_;
            used_ = 0;
        }
        if (run_ == runs_.size()) {
            return rest_;
        }
        ++used_;
        return runs_[run_].*value_;
    }

private:
    const std::vector<Run>& runs_;
    Value Run::* value_;
    Value rest_;
    std::size_t run_ = 0;
    std::uint32_t used_ = 0;
};

/// Walks the chunks of a track in order.
class ChunkWalker {
public:
    struct Chunk {
        std::uint64_t offset = 0;
        std::uint32_t samples = 0;
        std::uint16_t sampleEntry = 0; ///< index into the sample entries
    };

    /// `tables` must outlive this. Throws MediaError::corrupt if the runs are out of order or refer to a
    /// sample entry that does not exist.
    explicit ChunkWalker(const SampleTables& tables);

    /// `nullopt` after the last chunk.
    std::optional<Chunk> next();

private:
    const SampleTables& tables_;
    std::size_t chunk_ = 0;
    std::size_t run_ = 0;
};

/// Fills `samples`, `uniform` and `hasSyncTable` of a track from its tables. Throws MediaError as `bounds`
/// does, and `corrupt` if the tables contradict each other.
void unfoldSamples(const SampleTables& tables, SampleBounds& bounds, Track& track);

} // namespace zelvra::isobmff
