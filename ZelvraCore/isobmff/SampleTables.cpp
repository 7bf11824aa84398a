// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/SampleTables.h"

#include "ZelvraCore/records/MediaError.h"

namespace zelvra::isobmff {

namespace {

[[noreturn]] void failCorrupt(const std::string& line) {
    throw MediaError(MediaError::Cause::corrupt, line);
}

bool isProtected(FourCharCode entryType) {
    return entryType == fourCharCode("encv") || entryType == fourCharCode("enca") ||
           entryType == fourCharCode("drmi") || entryType == fourCharCode("drms");
}

std::vector<SampleEntry> sampleEntries(SampleDescriptionBox description) {
    std::vector<SampleEntry> entries;
    for (std::vector<std::uint8_t>& box : description.entries) {
        const FourCharCode type = rawBoxes(box).front().type;
        entries.push_back({type, std::move(box), isProtected(type)});
    }
    return entries;
}

SampleSizeBox expanded(const CompactSampleSizeBox& compact) {
    SampleSizeBox sizes;
    sizes.count = static_cast<std::uint32_t>(compact.sizes.size());
    sizes.sizes.assign(compact.sizes.begin(), compact.sizes.end());
    return sizes;
}

void readTable(const RawBox& box, SampleTables& tables) {
    switch (box.type) {
    case TimeToSampleBox::type: tables.durations = readBox<TimeToSampleBox>(box.payload); break;
    case CompositionOffsetBox::type:
        tables.compositionOffsets = readBox<CompositionOffsetBox>(box.payload);
        break;
    case SyncSampleBox::type: tables.syncSamples = readBox<SyncSampleBox>(box.payload); break;
    case PartialSyncSampleBox::type:
        tables.partialSyncSamples = readBox<PartialSyncSampleBox>(box.payload);
        break;
    case SampleToChunkBox::type: tables.chunks = readBox<SampleToChunkBox>(box.payload); break;
    case SampleSizeBox::type: tables.sizes = readBox<SampleSizeBox>(box.payload); break;
    case CompactSampleSizeBox::type:
        tables.sizes = expanded(readBox<CompactSampleSizeBox>(box.payload));
        break;
    case ChunkOffsetBox::type: {
        const auto offsets = readBox<ChunkOffsetBox>(box.payload).offsets;
        tables.chunkOffsets.assign(offsets.begin(), offsets.end());
        break;
    }
    case LargeChunkOffsetBox::type:
        tables.chunkOffsets = readBox<LargeChunkOffsetBox>(box.payload).offsets;
        break;
    default: break;
    }
}

using DurationWalker = RunWalker<TimeToSampleBox::Run, std::uint32_t>;
using OffsetWalker = RunWalker<CompositionOffsetBox::Run, std::int32_t>;

/// If the table ends early, its last value applies to the remaining samples.
DurationWalker durationWalker(const TimeToSampleBox& table) {
    return {table.runs, &TimeToSampleBox::Run::duration, table.runs.empty() ? 0 : table.runs.back().duration};
}

/// The constant packets that a QuickTime sound entry describes; `bytes` is 0 if it describes none. QuickTime
/// File Format, "Sound sample description" versions 0 to 2.
UniformPackets packetsOfSoundEntry(const SampleEntry& entry) {
    constexpr std::size_t headerAndReference = 16;
    BoxReader reader(entry.type, std::span(entry.box).subspan(headerAndReference));
    std::uint16_t version = 0;
    std::uint16_t channels = 0;
    std::uint16_t bits = 0;
    reader.fields(version);
    reader.reserved(6);
    reader.fields(channels, bits);
    reader.reserved(8);
    UniformPackets packets{channels * (bits / 8u), 1};
    if (version == 1) {
        std::uint32_t samplesPerPacket = 0;
        std::uint32_t bytesPerChannelPacket = 0;
        std::uint32_t bytesPerPacket = 0;
        reader.fields(samplesPerPacket, bytesPerChannelPacket, bytesPerPacket);
        packets = {bytesPerPacket, samplesPerPacket};
    } else if (version == 2) {
        std::uint32_t bytesPerPacket = 0;
        std::uint32_t samplesPerPacket = 0;
        reader.reserved(28);
        reader.fields(bytesPerPacket, samplesPerPacket);
        packets = {bytesPerPacket, samplesPerPacket};
    }
    return packets;
}

/// Sound whose samples all have one size and last one tick is not listed sample by sample, because PCM would
/// have one for each moment. Old QuickTime files give size 1 in the table and the true size in the sample
/// entry only.
UniformPackets uniformPackets(const SampleTables& tables, const Track& track) {
    constexpr std::size_t minSoundEntrySize = 36;
    const bool oneTickEach = tables.durations && !tables.durations->runs.empty() &&
                             std::all_of(tables.durations->runs.begin(), tables.durations->runs.end(),
                                         [](const TimeToSampleBox::Run& run) { return run.duration == 1; });
    if (!track.isSound() || !oneTickEach || !tables.sizes || tables.sizes->uniformSize == 0 ||
        tables.entries.empty()) {
        return {};
    }
    const UniformPackets listed{tables.sizes->uniformSize, 1};
    if (tables.entries.front().box.size() < minSoundEntrySize) {
        return listed;
    }
    const UniformPackets described = packetsOfSoundEntry(tables.entries.front());
    const bool usable = described.bytes != 0 && described.ticks != 0;
    return usable && (listed.bytes == 1 || described.ticks > 1) ? described : listed;
}

void unfoldUniform(const SampleTables& tables, SampleBounds& bounds, Track& track) {
    constexpr std::uint64_t maxPacketsPerRecord = 1u << 14; // keeps a record small enough to be moved in one
                                                            // piece
    std::uint64_t left = tables.sizes->count;               // in ticks: one for each listed sample
    std::int64_t decodeTime = 0;
    ChunkWalker chunks(tables);
    while (const auto chunk = chunks.next()) {
        std::uint64_t offset = chunk->offset;
        std::uint64_t packets = std::min<std::uint64_t>(chunk->samples, left) / track.uniform.ticks;
        while (packets > 0) {
            const std::uint64_t count = std::min(packets, maxPacketsPerRecord);
            Sample record;
            record.offset = offset;
            record.decodeTime = decodeTime;
            bounds.admitUnlisted(1);
            if (count * track.uniform.bytes > std::numeric_limits<std::uint32_t>::max()) {
                failCorrupt("its samples are larger than 4 GiB");
            }
            record.size = static_cast<std::uint32_t>(count * track.uniform.bytes);
            record.duration = static_cast<std::uint32_t>(count * track.uniform.ticks);
            record.sampleEntry = chunk->sampleEntry;
            bounds.requireInFile(record, track.samples.size() + 1);
            track.samples.push_back(record);
            offset += record.size;
            decodeTime += record.duration;
            left -= record.duration;
            packets -= count;
        }
    }
}

void unfoldEach(const SampleTables& tables, SampleBounds& bounds, Track& track) {
    const SampleSizeBox& sizes = *tables.sizes;
    if (sizes.uniformSize != 0) {
        bounds.admitUnlisted(sizes.count);
    } else {
        bounds.admitListed(sizes.count);
    }
    track.samples.reserve(sizes.count);
    DurationWalker durations = durationWalker(*tables.durations);
    const CompositionOffsetBox none;
    OffsetWalker offsets(tables.compositionOffsets ? tables.compositionOffsets->runs : none.runs,
                         &CompositionOffsetBox::Run::offset, 0);
    ChunkWalker chunks(tables);
    std::int64_t decodeTime = 0;
    while (const auto chunk = chunks.next()) {
        std::uint64_t offset = chunk->offset;
        for (std::uint32_t i = 0; i < chunk->samples && track.samples.size() < sizes.count; ++i) {
            Sample sample;
            sample.offset = offset;
            sample.size = sizes.uniformSize != 0 ? sizes.uniformSize : sizes.sizes[track.samples.size()];
            sample.decodeTime = decodeTime;
            sample.duration = durations.next();
            sample.compositionOffset = offsets.next();
            sample.sampleEntry = chunk->sampleEntry;
            bounds.requireInFile(sample, track.samples.size() + 1);
            track.samples.push_back(sample);
            offset += sample.size;
            decodeTime += sample.duration;
        }
    }
    if (track.samples.size() < sizes.count) {
        failCorrupt("its chunks hold " + std::to_string(track.samples.size()) + " samples of " +
                    std::to_string(sizes.count));
    }
}

void markSyncSamples(const SampleTables& tables, std::vector<Sample>& samples) {
    for (Sample& sample : samples) {
        sample.sync = false;
    }
    // Numbers outside the track are ignored; some recorders write a 0.
    const auto mark = [&samples](const std::vector<std::uint32_t>& numbers, bool partial) {
        for (const std::uint32_t number : numbers) {
            if (number >= 1 && number <= samples.size()) {
                samples[number - 1].sync = true;
                samples[number - 1].partialSync = partial;
            }
        }
    };
    if (tables.partialSyncSamples) {
        mark(tables.partialSyncSamples->numbers, true);
    }
    if (tables.syncSamples) {
        mark(tables.syncSamples->numbers, false);
    }
}

} // namespace

SampleTables readSampleTables(std::span<const std::uint8_t> sampleTablePayload, bool withSamples) {
    SampleTables tables;
    for (const RawBox& box : rawBoxes(sampleTablePayload)) {
        if (box.type == SampleDescriptionBox::type) {
            tables.entries = sampleEntries(readBox<SampleDescriptionBox>(box.payload));
        } else if (withSamples) {
            readTable(box, tables);
        }
    }
    return tables;
}

ChunkWalker::ChunkWalker(const SampleTables& tables) : tables_(tables) {
    std::uint32_t previous = 0;
    for (const SampleToChunkBox::Run& run : tables.chunks->runs) {
        if (run.firstChunk <= previous || (previous == 0 && run.firstChunk != 1)) {
            failCorrupt("its table of chunks is out of order");
        }
        if (run.sampleEntry < 1 || run.sampleEntry > tables.entries.size() ||
            run.sampleEntry > std::numeric_limits<std::uint16_t>::max()) {
            failCorrupt("its samples name a sample entry that does not exist");
        }
        previous = run.firstChunk;
    }
}

std::optional<ChunkWalker::Chunk> ChunkWalker::next() {
    const std::vector<SampleToChunkBox::Run>& runs = tables_.chunks->runs;
    if (chunk_ == tables_.chunkOffsets.size() || runs.empty()) {
        return std::nullopt;
    }
    if (run_ + 1 < runs.size() && runs[run_ + 1].firstChunk == chunk_ + 1) {
        ++run_;
    }
    Chunk chunk;
    chunk.offset = tables_.chunkOffsets[chunk_++];
    chunk.samples = runs[run_].samplesPerChunk;
    chunk.sampleEntry = static_cast<std::uint16_t>(runs[run_].sampleEntry - 1);
    return chunk;
}

void unfoldSamples(const SampleTables& tables, SampleBounds& bounds, Track& track) {
    track.hasSyncTable = tables.syncSamples || tables.partialSyncSamples;
    if (!tables.sizes || tables.sizes->count == 0) {
        return; // all samples are in fragments
    }
    if (!tables.durations || !tables.chunks) {
        failCorrupt("its sample tables are incomplete");
    }
    track.uniform = uniformPackets(tables, track);
    if (track.uniform) {
        return unfoldUniform(tables, bounds, track);
    }
    unfoldEach(tables, bounds, track);
    if (track.hasSyncTable) {
        markSyncSamples(tables, track.samples);
    }
}

} // namespace zelvra::isobmff
