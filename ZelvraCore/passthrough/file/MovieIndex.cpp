// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/file/MovieIndex.h"

#include "ZelvraCore/isobmff/Boxes.h"
#include "ZelvraCore/isobmff/RawBoxes.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/WideInteger.h"

#include <numeric>
#include <string_view>

namespace zelvra::passthrough {

namespace {

using namespace isobmff;

constexpr std::uint64_t greatest32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t shortBoxHeader = 8;

std::uint32_t require32(std::uint64_t number, const char* what) {
    if (number > greatest32) {
        throw MediaError(MediaError::Cause::unsupported,
                         std::string("cannot write the movie: ") + what + " does not fit 32 bits");
    }
    return static_cast<std::uint32_t>(number);
}

/// `value` appended to a run-length table; `Run` starts with its count.
template <class Run, class Value>
void extend(std::vector<Run>& runs, Value Run::* field, Value value, std::uint32_t count = 1) {
    if (runs.empty() || runs.back().*field != value) {
        Run run;
        run.*field = value;
        runs.push_back(run);
    }
    runs.back().count += count;
}

/// How many samples of the file a sample of the plan is.
std::uint32_t fileSamples(const OutputTrack& track, const OutputSample& sample) {
    return track.uniform ? sample.bytes.size / track.uniform.bytes * track.uniform.ticks : 1;
}

std::uint32_t countFileSamples(const OutputTrack& track) {
    std::uint64_t count = 0;
    for (const OutputSample& sample : track.samples) {
        count += fileSamples(track, sample);
    }
    return require32(count, "the number of samples");
}

std::uint64_t durationInMovie(const OutputTrack& track, std::uint32_t timescale) {
    return static_cast<std::uint64_t>((WideInteger{track.editDuration} * timescale * 2 + track.timescale) /
                                      (WideInteger{track.timescale} * 2));
}

std::vector<std::uint8_t> bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

/// One track's boxes, each made by one operation.
class TrackIndex {
public:
    TrackIndex(const OutputMovie& movie, std::size_t index, std::span<const OutputChunk> chunks,
               std::uint64_t mediaOffset, bool wideOffsets)
        : movie_(movie),
          track_(movie.tracks[index]),
          index_(index),
          chunks_(chunks),
          mediaOffset_(mediaOffset),
          wideOffsets_(wideOffsets) {}

    void write(BoxWriter& writer) const {
        writeContainer(writer, fourCharCode("trak"), [&] {
            writeBox(writer, trackHeader());
            writeContainer(writer, fourCharCode("edts"), [&] { writeBox(writer, editList()); });
            writeContainer(writer, fourCharCode("mdia"), [&] { writeMedia(writer); });
            writer.append(track_.userData);
        });
    }

private:
    bool isVideo() const { return track_.kind == OutputTrack::Kind::video; }
    bool isQuickTime() const { return movie_.container == MovieContainer::quickTime; }
    std::uint64_t movieDuration() const { return durationInMovie(track_, movieTimescale(movie_)); }

    void writeMedia(BoxWriter& writer) const {
        writeBox(writer, mediaHeader());
        writeBox(writer, mediaHandler());
        writeContainer(writer, fourCharCode("minf"), [&] {
            if (isVideo()) {
                writeBox(writer, VideoMediaHeaderBox{});
            } else {
                writeBox(writer, SoundMediaHeaderBox{});
            }
            if (isQuickTime()) {
                writeBox(writer, handler(fourCharCode("dhlr"), fourCharCode("url "),
                                         "\x0b"
                                         "DataHandler"));
            }
            writeContainer(writer, fourCharCode("dinf"), [&] { writeBox(writer, dataReference()); });
            writeContainer(writer, fourCharCode("stbl"), [&] { writeSampleTables(writer); });
        });
    }

    void writeSampleTables(BoxWriter& writer) const {
        writeBox(writer, sampleDescription());
        writeBox(writer, durations());
        if (CompositionOffsetBox offsets = compositionOffsets();
            offsets.runs.size() > 1 || (offsets.runs.size() == 1 && offsets.runs.front().offset != 0)) {
            writeBox(writer, offsets);
        }
        if (SyncSampleBox sync = syncSamples(); sync.numbers.size() < track_.samples.size()) {
            writeBox(writer, sync);
        }
        writeBox(writer, sizes());
        writeBox(writer, chunkLengths());
        LargeChunkOffsetBox offsets = chunkOffsets();
        if (wideOffsets_) {
            writeBox(writer, offsets);
        } else {
            writeBox(writer, narrow(offsets));
        }
        if (track_.rollDistance != 0) {
            writeBox(writer, rollDescription());
            writeBox(writer, rollGroup());
        }
    }

    TrackHeaderBox trackHeader() const {
        constexpr double one = 0x10000;
        TrackHeaderBox box;
        box.creationTime = box.modificationTime = track_.creationTime;
        box.trackId = static_cast<std::uint32_t>(index_ + 1);
        box.duration = movieDuration();
        box.volume = isVideo() ? 0 : 0x100;
        box.width = static_cast<std::uint32_t>(track_.width * one);
        box.height = static_cast<std::uint32_t>(track_.height * one);
        box.version = box.minVersion();
        return box;
    }

    EditListBox editList() const {
        EditListBox box;
        box.edits.push_back({movieDuration(), track_.editStart});
        box.version = box.minVersion();
        return box;
    }

    MediaHeaderBox mediaHeader() const {
        MediaHeaderBox box;
        box.creationTime = box.modificationTime = track_.creationTime;
        box.timescale = track_.timescale;
        box.duration = static_cast<std::uint64_t>(track_.mediaDuration);
        box.language = track_.language;
        box.version = box.minVersion();
        return box;
    }

    /// QuickTime's names start with their length, MP4's end with a zero.
    HandlerBox mediaHandler() const {
        const FourCharCode kind = isVideo() ? videoHandler : soundHandler;
        if (isQuickTime()) {
            return handler(fourCharCode("mhlr"), kind, isVideo() ? "\x0cVideoHandler" : "\x0cSoundHandler");
        }
        return handler(0, kind,
                       isVideo() ? std::string_view("VideoHandler\0", 13)
                                 : std::string_view("SoundHandler\0", 13));
    }

    static HandlerBox handler(FourCharCode componentType, FourCharCode kind, std::string_view name) {
        HandlerBox box;
        box.componentType = componentType;
        box.handler = kind;
        box.name = bytesOf(name);
        return box;
    }

    static DataReferenceBox dataReference() {
        DataReferenceBox box;
        box.entries.push_back(DataReferenceBox::selfContained(fourCharCode("url ")));
        return box;
    }

    SampleDescriptionBox sampleDescription() const {
        SampleDescriptionBox box;
        box.entries.push_back(track_.sampleEntry);
        return box;
    }

    TimeToSampleBox durations() const {
        TimeToSampleBox box;
        if (track_.uniform) {
            box.runs.push_back({countFileSamples(track_), 1});
            return box;
        }
        for (std::size_t i = 0; i < track_.samples.size(); ++i) {
            const bool isLast = i + 1 == track_.samples.size();
            const std::int64_t end = isLast ? track_.mediaDuration : track_.samples[i + 1].decodeTime;
            const auto duration = static_cast<std::uint64_t>(end - track_.samples[i].decodeTime);
            extend(box.runs, &TimeToSampleBox::Run::duration, require32(duration, "a sample's duration"));
        }
        return box;
    }

    CompositionOffsetBox compositionOffsets() const {
        CompositionOffsetBox box;
        for (const OutputSample& sample : track_.samples) {
            extend(box.runs, &CompositionOffsetBox::Run::offset,
                   static_cast<std::int32_t>(sample.compositionOffset));
        }
        return box;
    }

    SyncSampleBox syncSamples() const {
        SyncSampleBox box;
        for (std::size_t i = 0; i < track_.samples.size(); ++i) {
            if (track_.samples[i].sync) {
                box.numbers.push_back(static_cast<std::uint32_t>(i + 1));
            }
        }
        return box;
    }

    SampleSizeBox sizes() const {
        SampleSizeBox box;
        box.count = countFileSamples(track_);
        if (track_.uniform) {
            // If packets hold several samples, the sample entry has their size (QuickTime).
            box.uniformSize = track_.uniform.ticks == 1 ? track_.uniform.bytes : 1;
            return box;
        }
        box.sizes.reserve(track_.samples.size());
        for (const OutputSample& sample : track_.samples) {
            box.sizes.push_back(sample.bytes.size);
        }
        return box;
    }

    SampleToChunkBox chunkLengths() const {
        SampleToChunkBox box;
        std::uint32_t number = 0;
        for (const OutputChunk& chunk : chunks_) {
            if (chunk.track != index_) {
                continue;
            }
            ++number;
            std::uint64_t samples = 0;
            for (std::size_t i = 0; i < chunk.samples; ++i) {
                samples += fileSamples(track_, track_.samples[chunk.firstSample + i]);
            }
            if (box.runs.empty() || box.runs.back().samplesPerChunk != samples) {
                box.runs.push_back({number, require32(samples, "the number of samples"), 1});
            }
        }
        return box;
    }

    LargeChunkOffsetBox chunkOffsets() const {
        LargeChunkOffsetBox box;
        for (const OutputChunk& chunk : chunks_) {
            if (chunk.track == index_) {
                box.offsets.push_back(mediaOffset_ + chunk.offset);
            }
        }
        return box;
    }

    static ChunkOffsetBox narrow(const LargeChunkOffsetBox& wide) {
        ChunkOffsetBox box;
        for (const std::uint64_t offset : wide.offsets) {
            box.offsets.push_back(static_cast<std::uint32_t>(offset));
        }
        return box;
    }

    RollDescriptionBox rollDescription() const {
        RollDescriptionBox box;
        box.rollDistances.push_back(track_.rollDistance);
        return box;
    }

    SampleToGroupBox rollGroup() const {
        SampleToGroupBox box;
        box.runs.push_back({countFileSamples(track_), 1});
        return box;
    }

    const OutputMovie& movie_;
    const OutputTrack& track_;
    std::size_t index_;
    std::span<const OutputChunk> chunks_;
    std::uint64_t mediaOffset_;
    bool wideOffsets_;
};

FileTypeBox fileType(const OutputMovie& movie) {
    FileTypeBox box;
    switch (movie.container) {
    case MovieContainer::quickTime: box = {fourCharCode("qt  "), 0x200, {fourCharCode("qt  ")}}; break;
    case MovieContainer::appleM4v:
        box = {fourCharCode("M4V "), 1, {fourCharCode("M4V "), fourCharCode("mp42"), fourCharCode("isom")}};
        break;
    case MovieContainer::mpeg4:
        box = {
            fourCharCode("isom"), 0x200, {fourCharCode("isom"), fourCharCode("iso2"), fourCharCode("mp41")}};
        for (const OutputTrack& track : movie.tracks) {
            const FourCharCode coding = rawBoxes(track.sampleEntry).front().type;
            if (coding == fourCharCode("avc1") || coding == fourCharCode("hvc1")) {
                box.compatibleBrands.push_back(coding);
            }
        }
        break;
    }
    box.compatibleBrands.insert(box.compatibleBrands.end(), movie.compatibleBrands.begin(),
                                movie.compatibleBrands.end());
    return box;
}

MovieHeaderBox movieHeader(const OutputMovie& movie) {
    MovieHeaderBox box;
    box.creationTime = box.modificationTime = movie.creationTime;
    box.timescale = movieTimescale(movie);
    for (const OutputTrack& track : movie.tracks) {
        box.duration = std::max(box.duration, durationInMovie(track, box.timescale));
    }
    box.nextTrackId = static_cast<std::uint32_t>(movie.tracks.size() + 1);
    box.version = box.minVersion();
    return box;
}

void writeMediaHeader(BoxWriter& writer, std::uint64_t mediaBytes) {
    constexpr FourCharCode type = fourCharCode("mdat");
    constexpr std::uint64_t longBoxHeader = 16;
    if (mediaBytes + shortBoxHeader <= greatest32) {
        writer.fields(static_cast<std::uint32_t>(mediaBytes + shortBoxHeader), type);
    } else {
        writer.fields(std::uint32_t{1}, type, mediaBytes + longBoxHeader);
    }
}

/// No more than that for any usual movie.
std::size_t expectedBytes(const OutputMovie& movie) {
    constexpr std::size_t besideSamples = 65536;
    constexpr std::size_t bytesOfASample = 48;
    std::size_t bytes = besideSamples;
    for (const OutputTrack& track : movie.tracks) {
        bytes += track.samples.size() * bytesOfASample;
    }
    return bytes;
}

/// Everything before the media, for media that starts at `mediaOffset`.
std::vector<std::uint8_t> buildAt(const OutputMovie& movie, std::span<const OutputChunk> chunks,
                                  std::uint64_t mediaOffset, bool wideOffsets) {
    BoxWriter writer;
    writer.reserve(expectedBytes(movie)); // growing a long movie's index would hold it twice
    writeBox(writer, fileType(movie));
    writeContainer(writer, fourCharCode("moov"), [&] {
        writeBox(writer, movieHeader(movie));
        for (std::size_t i = 0; i < movie.tracks.size(); ++i) {
            TrackIndex(movie, i, chunks, mediaOffset, wideOffsets).write(writer);
        }
        writer.append(movie.userData);
    });
    writeMediaHeader(writer, chunks.empty() ? 0 : chunks.back().offset + chunks.back().bytes);
    return writer.take();
}

} // namespace

std::vector<std::uint8_t> buildMovieIndex(const OutputMovie& movie, std::span<const OutputChunk> chunks) {
    const std::uint64_t lastOffset = chunks.empty() ? 0 : chunks.back().offset;
    std::size_t size = buildAt(movie, chunks, 0, false).size();
    const bool wideOffsets = size + lastOffset > greatest32;
    if (wideOffsets) {
        size = buildAt(movie, chunks, 0, true).size();
    }
    return buildAt(movie, chunks, size, wideOffsets);
}

std::uint32_t movieTimescale(const OutputMovie& movie) {
    constexpr std::uint64_t greatest = std::numeric_limits<std::int32_t>::max();
    std::uint64_t timescale = 1;
    for (const OutputTrack& track : movie.tracks) {
        const std::uint64_t common = std::lcm(timescale, std::uint64_t{track.timescale});
        timescale = common <= greatest ? common : std::max(timescale, std::uint64_t{track.timescale});
    }
    return static_cast<std::uint32_t>(timescale);
}

} // namespace zelvra::passthrough
