// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/TrackReader.h"

#include "ZelvraCore/isobmff/SampleTables.h"
#include "ZelvraCore/records/MediaError.h"

namespace zelvra::isobmff {

namespace {

/// The payload of a box that is mandatory. Throws MediaError::corrupt if it is missing.
std::span<const std::uint8_t> required(const std::vector<RawBox>& boxes, FourCharCode type) {
    const RawBox* box = findBox(boxes, type);
    if (box == nullptr) {
        throw MediaError(MediaError::Cause::corrupt, "has no box " + quotedType(type));
    }
    return box->payload;
}

AffineTransform affine(const MatrixFields& matrix) {
    constexpr double one = 0x10000;
    return {matrix[0] / one, matrix[1] / one, matrix[3] / one,
            matrix[4] / one, matrix[6] / one, matrix[7] / one};
}

void readTrackHeader(const TrackHeaderBox& header, Track& track) {
    constexpr double one = 0x10000;
    track.id = header.trackId;
    track.enabled = (header.flags & TrackHeaderBox::enabledFlag) != 0;
    track.creationTime = header.creationTime;
    track.matrix = affine(header.matrix);
    track.width = header.width / one;
    track.height = header.height / one;
}

void readMediaHeader(const MediaHeaderBox& header, Track& track) {
    track.timescale = header.timescale;
    track.mediaDuration = header.duration;
    track.language = header.language;
    if (track.timescale == 0) {
        throw MediaError(MediaError::Cause::corrupt, "has no timescale");
    }
}

std::vector<TrackReference> readReferences(std::span<const std::uint8_t> payload) {
    std::vector<TrackReference> references;
    for (const RawBox& box : rawBoxes(payload)) {
        TrackReference reference{box.type, std::vector<std::uint32_t>(box.payload.size() / 4)};
        BoxReader reader(box.type, box.payload);
        for (std::uint32_t& id : reference.trackIds) {
            reader.fields(id);
        }
        references.push_back(std::move(reference));
    }
    return references;
}

/// Refuses media in other files (QuickTime's reference movies), because the engine copies media from this
/// file only.
void requireOwnMedia(std::span<const std::uint8_t> dataInformation) {
    const RawBox* box = nullptr;
    const std::vector<RawBox> boxes = rawBoxes(dataInformation);
    if ((box = findBox(boxes, DataReferenceBox::type)) == nullptr) {
        return;
    }
    for (const std::vector<std::uint8_t>& entry : readBox<DataReferenceBox>(box->payload).entries) {
        constexpr std::size_t flagsEnd = 12;
        if (entry.size() >= flagsEnd && (entry[flagsEnd - 1] & 1) == 0) {
            throw MediaError(MediaError::Cause::unsupported, "its media is in another file");
        }
    }
}

void readMedia(std::span<const std::uint8_t> payload, SampleBounds& bounds, Track& track) {
    const std::vector<RawBox> media = rawBoxes(payload);
    track.handler = readBox<HandlerBox>(required(media, HandlerBox::type)).handler;
    readMediaHeader(readBox<MediaHeaderBox>(required(media, MediaHeaderBox::type)), track);

    const bool withSamples = track.isVideo() || track.isSound();
    const std::vector<RawBox> information = rawBoxes(required(media, fourCharCode("minf")));
    if (const RawBox* data = findBox(information, fourCharCode("dinf")); data != nullptr && withSamples) {
        requireOwnMedia(data->payload);
    }
    SampleTables tables = readSampleTables(required(information, fourCharCode("stbl")), withSamples);
    if (withSamples) {
        unfoldSamples(tables, bounds, track);
        track.indexedSamples = track.samples.size();
    }
    track.sampleEntries = std::move(tables.entries);
}

std::uint64_t decodeEnd(const Sample& sample) {
    return static_cast<std::uint64_t>(sample.decodeTime) + sample.duration;
}

void append(const RawBox& box, std::vector<std::uint8_t>& bytes) {
    bytes.insert(bytes.end(), box.whole.begin(), box.whole.end());
}

void readTrackBoxes(const std::vector<RawBox>& boxes, SampleBounds& bounds, Track& track) {
    readMedia(required(boxes, fourCharCode("mdia")), bounds, track);
    readTrackHeader(readBox<TrackHeaderBox>(required(boxes, TrackHeaderBox::type)), track);
    for (const RawBox& box : boxes) {
        switch (box.type) {
        case fourCharCode("edts"):
            for (const RawBox& edits : rawBoxes(box.payload)) {
                if (edits.type == EditListBox::type) {
                    track.edits = readBox<EditListBox>(edits.payload).edits;
                    bounds.admitEdits(track.edits.size());
                }
            }
            break;
        case fourCharCode("tref"): track.references = readReferences(box.payload); break;
        case fourCharCode("udta"):
        case fourCharCode("meta"): append(box, track.userData); break;
        default: break;
        }
    }
    if (track.isVideo() || track.isSound()) { // the header's value may be wrong and does not include
                                              // fragments
        track.mediaDuration = track.samples.empty() ? 0 : decodeEnd(track.samples.back());
    }
}

} // namespace

std::string trackName(std::size_t number, const Track& track) {
    const std::string kind = track.isVideo() ? " (video)" : track.isSound() ? " (sound)" : "";
    return "track " + std::to_string(number) + kind;
}

Track readTrack(std::span<const std::uint8_t> trackPayload, std::size_t number, SampleBounds& bounds) {
    Track track;
    try {
        readTrackBoxes(rawBoxes(trackPayload), bounds, track);
    } catch (const MediaError& error) {
        throw MediaError(error.cause(), trackName(number, track) + ": " + error.what());
    }
    return track;
}

} // namespace zelvra::isobmff
