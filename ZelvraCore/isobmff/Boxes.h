// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/isobmff/BoxTransfer.h"
#include "ZelvraCore/isobmff/Movie.h"

#include <algorithm>
#include <limits>

namespace zelvra::isobmff {

/// The boxes of ISO/IEC 14496-12 (and the QuickTime file format) that make up a movie's index. Each box is
/// one struct of named fields with one function `transfer` that reads or writes it. Boxes that only contain
/// boxes have no struct: the reader walks them, the writer opens and closes them.
///
/// Every struct has `type` and `==`. A struct with a `version` is written in that version. If a number may
/// need the wider form, `minVersion()` returns the version that can hold it.

/// Version 1 if any of the numbers does not fit in 32 bits, otherwise 0.
template <std::integral... Numbers>
std::uint8_t versionFor(Numbers... values) {
    constexpr std::uint64_t max32 = std::numeric_limits<std::uint32_t>::max();
    return ((static_cast<std::uint64_t>(values) > max32) || ...) ? 1 : 0;
}

/// A transformation as it is stored in files (clause 8.2.2.2), in the order a, b, u, c, d, v, x, y, w. u, v
/// and w are 2.30 fixed point, the others 16.16.
using MatrixFields = std::array<std::int32_t, 9>;
inline constexpr MatrixFields identityMatrix{0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000};

template <class Transfer>
void transferMatrix(Transfer& io, MatrixFields& matrix) {
    for (std::int32_t& number : matrix) {
        io.fields(number);
    }
}

/// Clause 4.3.
struct FileTypeBox {
    static constexpr FourCharCode type = fourCharCode("ftyp");
    FourCharCode majorBrand = 0;
    std::uint32_t minorVersion = 0;
    std::vector<FourCharCode> compatibleBrands;
    bool operator==(const FileTypeBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, FileTypeBox& box) {
    io.fields(box.majorBrand, box.minorVersion);
    if constexpr (Transfer::reading) {
        box.compatibleBrands.resize(io.remaining() / sizeof(FourCharCode));
    }
    for (FourCharCode& brand : box.compatibleBrands) {
        io.fields(brand);
    }
}

/// Clause 8.2.2.
struct MovieHeaderBox {
    static constexpr FourCharCode type = fourCharCode("mvhd");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint64_t creationTime = 0;
    std::uint64_t modificationTime = 0;
    std::uint32_t timescale = 0;
    std::uint64_t duration = 0;
    std::int32_t rate = 0x10000;
    std::int16_t volume = 0x100;
    MatrixFields matrix = identityMatrix;
    std::uint32_t nextTrackId = 1;

    std::uint8_t minVersion() const { return versionFor(creationTime, modificationTime, duration); }
    bool operator==(const MovieHeaderBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, MovieHeaderBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.sized(box.version == 1, box.creationTime, box.modificationTime);
    io.fields(box.timescale);
    io.sized(box.version == 1, box.duration);
    io.fields(box.rate, box.volume);
    io.reserved(10);
    transferMatrix(io, box.matrix);
    io.reserved(24);
    io.fields(box.nextTrackId);
}

/// Clause 8.3.2. Width and height are 16.16 fixed point.
struct TrackHeaderBox {
    static constexpr FourCharCode type = fourCharCode("tkhd");
    static constexpr std::uint32_t enabledFlag = 1;
    static constexpr std::uint32_t inMovieFlag = 2;
    std::uint8_t version = 0;
    std::uint32_t flags = enabledFlag | inMovieFlag;
    std::uint64_t creationTime = 0;
    std::uint64_t modificationTime = 0;
    std::uint32_t trackId = 0;
    std::uint64_t duration = 0; ///< in ticks of the movie
    std::int16_t layer = 0;
    std::int16_t alternateGroup = 0;
    std::int16_t volume = 0;
    MatrixFields matrix = identityMatrix;
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    std::uint8_t minVersion() const { return versionFor(creationTime, modificationTime, duration); }
    bool operator==(const TrackHeaderBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, TrackHeaderBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.sized(box.version == 1, box.creationTime, box.modificationTime);
    io.fields(box.trackId);
    io.reserved(4);
    io.sized(box.version == 1, box.duration);
    io.reserved(8);
    io.fields(box.layer, box.alternateGroup, box.volume);
    io.reserved(2);
    transferMatrix(io, box.matrix);
    io.fields(box.width, box.height);
}

/// Clause 8.6.6.
struct EditListBox {
    static constexpr FourCharCode type = fourCharCode("elst");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<Edit> edits;

    std::uint8_t minVersion() const {
        return std::any_of(edits.begin(), edits.end(), [](const Edit& edit) {
            return versionFor(edit.duration) == 1 ||
                   edit.mediaTime > std::numeric_limits<std::int32_t>::max();
        });
    }
    bool operator==(const EditListBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, EditListBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.counted(box.edits, box.version == 1 ? 20 : 12);
    for (Edit& edit : box.edits) {
        io.sized(box.version == 1, edit.duration, edit.mediaTime);
        io.fields(edit.rate);
    }
}

/// Clause 8.4.2.
struct MediaHeaderBox {
    static constexpr FourCharCode type = fourCharCode("mdhd");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint64_t creationTime = 0;
    std::uint64_t modificationTime = 0;
    std::uint32_t timescale = 0;
    std::uint64_t duration = 0;
    std::uint16_t language = 0;
    std::uint16_t quality = 0; ///< QuickTime only

    std::uint8_t minVersion() const { return versionFor(creationTime, modificationTime, duration); }
    bool operator==(const MediaHeaderBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, MediaHeaderBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.sized(box.version == 1, box.creationTime, box.modificationTime);
    io.fields(box.timescale);
    io.sized(box.version == 1, box.duration);
    io.fields(box.language, box.quality);
}

/// Clause 8.4.3. In QuickTime a component type precedes the handler and a Pascal string follows it.
struct HandlerBox {
    static constexpr FourCharCode type = fourCharCode("hdlr");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    FourCharCode componentType = 0; ///< QuickTime: "mhlr" or "dhlr"; 0 in MP4
    FourCharCode handler = 0;
    std::vector<std::uint8_t> name; ///< with its length byte or its terminating zero
    bool operator==(const HandlerBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, HandlerBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.componentType, box.handler);
    io.reserved(12);
    io.rest(box.name);
}

/// Clause 12.1.2. Mode and colour keep their only useful value.
struct VideoMediaHeaderBox {
    static constexpr FourCharCode type = fourCharCode("vmhd");
    std::uint8_t version = 0;
    std::uint32_t flags = 1; // required by the standard
    std::uint16_t graphicsMode = 0;
    std::array<std::uint8_t, 6> operationColor{};
    bool operator==(const VideoMediaHeaderBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, VideoMediaHeaderBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.graphicsMode);
    io.bytes(box.operationColor);
}

/// Clause 12.2.2.
struct SoundMediaHeaderBox {
    static constexpr FourCharCode type = fourCharCode("smhd");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::int16_t balance = 0;
    bool operator==(const SoundMediaHeaderBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, SoundMediaHeaderBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.balance);
    io.reserved(2);
}

/// Clause 8.7.2. Each entry is a whole box.
struct DataReferenceBox {
    static constexpr FourCharCode type = fourCharCode("dref");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<std::vector<std::uint8_t>> entries;

    /// The entry for media in the same file: `url ` in MP4, `alis` in QuickTime, with flag 1 and no payload.
    static std::vector<std::uint8_t> selfContained(FourCharCode kind) {
        BoxWriter writer;
        writer.open(kind);
        writer.fields(std::uint32_t{1});
        writer.close();
        return writer.take();
    }
    bool operator==(const DataReferenceBox&) const = default;
};

/// Clause 8.5.2. Each entry is a whole box.
struct SampleDescriptionBox {
    static constexpr FourCharCode type = fourCharCode("stsd");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<std::vector<std::uint8_t>> entries;
    bool operator==(const SampleDescriptionBox&) const = default;
};

template <class Transfer, class Box>
    requires std::same_as<Box, DataReferenceBox> || std::same_as<Box, SampleDescriptionBox>
void transfer(Transfer& io, Box& box) {
    constexpr std::size_t minEntrySize = 8;
    io.versionAndFlags(box.version, box.flags, 1);
    io.counted(box.entries, minEntrySize);
    for (std::vector<std::uint8_t>& entry : box.entries) {
        io.box(entry);
    }
}

/// Clause 8.6.1.2.
struct TimeToSampleBox {
    static constexpr FourCharCode type = fourCharCode("stts");
    struct Run {
        std::uint32_t count = 0;
        std::uint32_t duration = 0;
        bool operator==(const Run&) const = default;
    };
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<Run> runs;
    bool operator==(const TimeToSampleBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, TimeToSampleBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.counted(box.runs, 8);
    for (TimeToSampleBox::Run& run : box.runs) {
        io.fields(run.count, run.duration);
    }
}

/// Clause 8.6.1.3. Version 0 is read as signed too, because QuickTime writes negative offsets in it.
struct CompositionOffsetBox {
    static constexpr FourCharCode type = fourCharCode("ctts");
    struct Run {
        std::uint32_t count = 0;
        std::int32_t offset = 0;
        bool operator==(const Run&) const = default;
    };
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<Run> runs;
    bool operator==(const CompositionOffsetBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, CompositionOffsetBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.counted(box.runs, 8);
    for (CompositionOffsetBox::Run& run : box.runs) {
        io.fields(run.count, run.offset);
    }
}

/// Clause 8.6.2 (`stss`), and QuickTime's table of partial sync samples (`stps`) of the same layout.
template <FourCharCode boxType>
struct SampleNumbersBox {
    static constexpr FourCharCode type = boxType;
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<std::uint32_t> numbers; ///< 1-based, increasing
    bool operator==(const SampleNumbersBox&) const = default;
};
using SyncSampleBox = SampleNumbersBox<fourCharCode("stss")>;
using PartialSyncSampleBox = SampleNumbersBox<fourCharCode("stps")>;

template <class Transfer, FourCharCode boxType>
void transfer(Transfer& io, SampleNumbersBox<boxType>& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.counted(box.numbers, 4);
    for (std::uint32_t& number : box.numbers) {
        io.fields(number);
    }
}

/// Clause 8.7.4.
struct SampleToChunkBox {
    static constexpr FourCharCode type = fourCharCode("stsc");
    struct Run {
        std::uint32_t firstChunk = 1;
        std::uint32_t samplesPerChunk = 0;
        std::uint32_t sampleEntry = 1; ///< 1-based number of the sample entry
        bool operator==(const Run&) const = default;
    };
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<Run> runs;
    bool operator==(const SampleToChunkBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, SampleToChunkBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.counted(box.runs, 12);
    for (SampleToChunkBox::Run& run : box.runs) {
        io.fields(run.firstChunk, run.samplesPerChunk, run.sampleEntry);
    }
}

/// Clause 8.7.3.2.
struct SampleSizeBox {
    static constexpr FourCharCode type = fourCharCode("stsz");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint32_t uniformSize = 0; ///< if not 0, the size of every sample, and `sizes` is empty
    std::uint32_t count = 0;       ///< number of samples
    std::vector<std::uint32_t> sizes;
    bool operator==(const SampleSizeBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, SampleSizeBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.uniformSize, box.count);
    if (box.uniformSize == 0) {
        io.entries(box.sizes, box.count, 4);
    }
    for (std::uint32_t& size : box.sizes) {
        io.fields(size);
    }
}

/// Clause 8.7.3.3. `sizes` holds the unpacked numbers of `fieldSize` bits.
struct CompactSampleSizeBox {
    static constexpr FourCharCode type = fourCharCode("stz2");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint8_t fieldSize = 16; ///< 4, 8 or 16
    std::vector<std::uint16_t> sizes;
    bool operator==(const CompactSampleSizeBox&) const = default;
};

void transfer(BoxReader& io, CompactSampleSizeBox& box);
void transfer(BoxWriter& io, CompactSampleSizeBox& box);

/// Clause 8.7.5: `stco` with 32, `co64` with 64 bits an offset.
template <FourCharCode boxType, class Offset>
struct OffsetsBox {
    static constexpr FourCharCode type = boxType;
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::vector<Offset> offsets;
    bool operator==(const OffsetsBox&) const = default;
};
using ChunkOffsetBox = OffsetsBox<fourCharCode("stco"), std::uint32_t>;
using LargeChunkOffsetBox = OffsetsBox<fourCharCode("co64"), std::uint64_t>;

template <class Transfer, FourCharCode boxType, class Offset>
void transfer(Transfer& io, OffsetsBox<boxType, Offset>& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.counted(box.offsets, sizeof(Offset));
    for (Offset& offset : box.offsets) {
        io.fields(offset);
    }
}

/// Clause 8.9.3 with the roll recovery entries of clause 10.1; version 1, 2 bytes an entry.
struct RollDescriptionBox {
    static constexpr FourCharCode type = fourCharCode("sgpd");
    static constexpr FourCharCode grouping = fourCharCode("roll");
    std::uint8_t version = 1;
    std::uint32_t flags = 0;
    FourCharCode groupingType = grouping;
    std::uint32_t entryLength = 2;
    std::vector<std::int16_t> rollDistances;
    bool operator==(const RollDescriptionBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, RollDescriptionBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.fields(box.groupingType);
    if (box.version == 1) {
        io.fields(box.entryLength);
    }
    io.counted(box.rollDistances, sizeof(std::int16_t));
    for (std::int16_t& distance : box.rollDistances) {
        io.fields(distance);
    }
}

/// Clause 8.9.2, version 0.
struct SampleToGroupBox {
    static constexpr FourCharCode type = fourCharCode("sbgp");
    struct Run {
        std::uint32_t count = 0;
        std::uint32_t description = 0; ///< 1-based number of the group's description; 0 = in no group
        bool operator==(const Run&) const = default;
    };
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    FourCharCode groupingType = RollDescriptionBox::grouping;
    std::vector<Run> runs;
    bool operator==(const SampleToGroupBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, SampleToGroupBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.groupingType);
    io.counted(box.runs, 8);
    for (SampleToGroupBox::Run& run : box.runs) {
        io.fields(run.count, run.description);
    }
}

/// Clause 8.8.3.
struct TrackExtendsBox {
    static constexpr FourCharCode type = fourCharCode("trex");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint32_t trackId = 0;
    std::uint32_t sampleEntry = 1;
    std::uint32_t duration = 0;
    std::uint32_t size = 0;
    std::uint32_t sampleFlags = 0;
    bool operator==(const TrackExtendsBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, TrackExtendsBox& box) {
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.trackId, box.sampleEntry, box.duration, box.size, box.sampleFlags);
}

/// Clause 8.8.7. The flags name the fields that the file contains; the others keep their default.
struct TrackFragmentHeaderBox {
    static constexpr FourCharCode type = fourCharCode("tfhd");
    static constexpr std::uint32_t hasBaseOffset = 0x1;
    static constexpr std::uint32_t hasSampleEntry = 0x2;
    static constexpr std::uint32_t hasDuration = 0x8;
    static constexpr std::uint32_t hasSize = 0x10;
    static constexpr std::uint32_t hasSampleFlags = 0x20;
    static constexpr std::uint32_t baseIsFragment = 0x20000;
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint32_t trackId = 0;
    std::uint64_t baseOffset = 0;
    std::uint32_t sampleEntry = 0;
    std::uint32_t duration = 0;
    std::uint32_t size = 0;
    std::uint32_t sampleFlags = 0;

    bool has(std::uint32_t flag) const { return (flags & flag) != 0; }
    bool operator==(const TrackFragmentHeaderBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, TrackFragmentHeaderBox& box) {
    using Box = TrackFragmentHeaderBox;
    io.versionAndFlags(box.version, box.flags, 0);
    io.fields(box.trackId);
    if (box.has(Box::hasBaseOffset)) {
        io.fields(box.baseOffset);
    }
    if (box.has(Box::hasSampleEntry)) {
        io.fields(box.sampleEntry);
    }
    if (box.has(Box::hasDuration)) {
        io.fields(box.duration);
    }
    if (box.has(Box::hasSize)) {
        io.fields(box.size);
    }
    if (box.has(Box::hasSampleFlags)) {
        io.fields(box.sampleFlags);
    }
}

/// Clause 8.8.12.
struct TrackFragmentDecodeTimeBox {
    static constexpr FourCharCode type = fourCharCode("tfdt");
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint64_t decodeTime = 0;

    std::uint8_t minVersion() const { return versionFor(decodeTime); }
    bool operator==(const TrackFragmentDecodeTimeBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, TrackFragmentDecodeTimeBox& box) {
    io.versionAndFlags(box.version, box.flags, 1);
    io.sized(box.version == 1, box.decodeTime);
}

/// Clause 8.8.8. The flags name the fields that each sample has; the others stay 0 and take a default.
struct TrackRunBox {
    static constexpr FourCharCode type = fourCharCode("trun");
    static constexpr std::uint32_t hasDataOffset = 0x1;
    static constexpr std::uint32_t hasFirstSampleFlags = 0x4;
    static constexpr std::uint32_t hasDurations = 0x100;
    static constexpr std::uint32_t hasSizes = 0x200;
    static constexpr std::uint32_t hasSampleFlags = 0x400;
    static constexpr std::uint32_t hasCompositionOffsets = 0x800;
    struct Entry {
        std::uint32_t duration = 0;
        std::uint32_t size = 0;
        std::uint32_t flags = 0;
        std::int32_t compositionOffset = 0;
        bool operator==(const Entry&) const = default;
    };
    std::uint8_t version = 0;
    std::uint32_t flags = 0;
    std::uint32_t count = 0; ///< number of samples
    std::int32_t dataOffset = 0;
    std::uint32_t firstSampleFlags = 0;
    std::vector<Entry> samples; ///< empty if no field is stored for each sample

    bool has(std::uint32_t flag) const { return (flags & flag) != 0; }
    std::size_t entryBytes() const {
        return std::size_t{4} *
               (has(hasDurations) + has(hasSizes) + has(hasSampleFlags) + has(hasCompositionOffsets));
    }
    bool operator==(const TrackRunBox&) const = default;
};

template <class Transfer>
void transfer(Transfer& io, TrackRunBox& box) {
    using Box = TrackRunBox;
    io.versionAndFlags(box.version, box.flags, 1);
    io.fields(box.count);
    if (box.has(Box::hasDataOffset)) {
        io.fields(box.dataOffset);
    }
    if (box.has(Box::hasFirstSampleFlags)) {
        io.fields(box.firstSampleFlags);
    }
    if (box.entryBytes() > 0) {
        io.entries(box.samples, box.count, box.entryBytes());
    }
    for (Box::Entry& sample : box.samples) {
        if (box.has(Box::hasDurations)) {
            io.fields(sample.duration);
        }
        if (box.has(Box::hasSizes)) {
            io.fields(sample.size);
        }
        if (box.has(Box::hasSampleFlags)) {
            io.fields(sample.flags);
        }
        if (box.has(Box::hasCompositionOffsets)) {
            io.fields(sample.compositionOffset);
        }
    }
}

/// Reads a box from its payload. Bytes after its last field are ignored.
template <class Box>
Box readBox(std::span<const std::uint8_t> payload) {
    BoxReader reader(Box::type, payload);
    Box box;
    transfer(reader, box);
    return box;
}

/// Appends a whole box. Does not change `box`, which is not const only because `transfer` also reads.
template <class Box>
void writeBox(BoxWriter& writer, Box& box) {
    writer.open(Box::type);
    transfer(writer, box);
    writer.close();
}
template <class Box>
void writeBox(BoxWriter& writer, Box&& box)
    requires(!std::is_lvalue_reference_v<Box>)
{
    writeBox(writer, box);
}

/// Appends a box whose payload is written by `content`.
template <class Content>
void writeContainer(BoxWriter& writer, FourCharCode type, Content content) {
    writer.open(type);
    content();
    writer.close();
}

} // namespace zelvra::isobmff
