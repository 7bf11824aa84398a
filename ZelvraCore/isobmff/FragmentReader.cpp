// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/FragmentReader.h"

#include "ZelvraCore/isobmff/TrackReader.h"
#include "ZelvraCore/records/MediaError.h"

namespace zelvra::isobmff {

namespace {

[[noreturn]] void failCorrupt(const std::string& line) {
    throw MediaError(MediaError::Cause::corrupt, line);
}

/// Clause 8.8.3.1: flagged as a non-sync sample, or as dependent on other samples, means no.
bool isSync(std::uint32_t flags) {
    constexpr std::uint32_t nonSync = 0x00010000;
    constexpr std::uint32_t dependsOnOthers = 0x01000000;
    return (flags & (nonSync | dependsOnOthers)) == 0;
}

/// Sums of a few times below this cannot overflow. No movie lasts that long.
constexpr std::uint64_t latestTime = std::uint64_t{1} << 60;

} // namespace

void FragmentReader::readDefaults(std::span<const std::uint8_t> movieExtendsPayload) {
    for (const RawBox& box : rawBoxes(movieExtendsPayload)) {
        if (box.type == TrackExtendsBox::type) {
            const auto extends = readBox<TrackExtendsBox>(box.payload);
            defaults_[extends.trackId] = {extends.sampleEntry, extends.duration, extends.size,
                                          extends.sampleFlags};
        }
    }
}

void FragmentReader::readFragment(std::span<const std::uint8_t> fragmentPayload, std::uint64_t offset) {
    dataEnd_ = offset;
    for (const RawBox& box : rawBoxes(fragmentPayload)) {
        if (box.type == fourCharCode("traf")) {
            readTrackFragment(box.payload, offset);
        }
    }
}

Track* FragmentReader::trackOf(std::uint32_t id) {
    const auto found =
        std::find_if(tracks_.begin(), tracks_.end(), [id](const Track& track) { return track.id == id; });
    return found != tracks_.end() && (found->isVideo() || found->isSound()) ? &*found : nullptr;
}

FragmentReader::Defaults FragmentReader::defaultsOf(const TrackFragmentHeaderBox& header) const {
    using Box = TrackFragmentHeaderBox;
    const auto found = defaults_.find(header.trackId);
    Defaults defaults = found != defaults_.end() ? found->second : Defaults{};
    defaults.sampleEntry = header.has(Box::hasSampleEntry) ? header.sampleEntry : defaults.sampleEntry;
    defaults.duration = header.has(Box::hasDuration) ? header.duration : defaults.duration;
    defaults.size = header.has(Box::hasSize) ? header.size : defaults.size;
    defaults.flags = header.has(Box::hasSampleFlags) ? header.sampleFlags : defaults.flags;
    return defaults;
}

void FragmentReader::readTrackFragment(std::span<const std::uint8_t> payload, std::uint64_t fragmentOffset) {
    const std::vector<RawBox> boxes = rawBoxes(payload);
    const RawBox* headerBox = findBox(boxes, TrackFragmentHeaderBox::type);
    if (headerBox == nullptr) {
        failCorrupt("a track fragment has no header");
    }
    const auto header = readBox<TrackFragmentHeaderBox>(headerBox->payload);
    if (header.has(TrackFragmentHeaderBox::hasBaseOffset)) {
        dataEnd_ = header.baseOffset;
    } else if (header.has(TrackFragmentHeaderBox::baseIsFragment)) {
        dataEnd_ = fragmentOffset;
    }
    const std::uint64_t base = dataEnd_;
    Track* track = trackOf(header.trackId);
    if (track == nullptr) {
        return skipRuns(boxes, base, defaultsOf(header));
    }
    try {
        readRuns(boxes, base, defaultsOf(header), *track);
    } catch (const MediaError& error) {
        const auto number = static_cast<std::size_t>(track - tracks_.data()) + 1;
        throw MediaError(error.cause(), trackName(number, *track) + ": " + error.what());
    }
}

void FragmentReader::startRun(const TrackRunBox& run, std::uint64_t base) {
    if (run.has(TrackRunBox::hasDataOffset)) {
        dataEnd_ = base + static_cast<std::uint64_t>(std::int64_t{run.dataOffset});
    }
}

void FragmentReader::skipRuns(const std::vector<RawBox>& boxes, std::uint64_t base,
                              const Defaults& defaults) {
    for (const RawBox& box : boxes) {
        if (box.type != TrackRunBox::type) {
            continue;
        }
        const auto run = readBox<TrackRunBox>(box.payload);
        startRun(run, base);
        if (!run.has(TrackRunBox::hasSizes)) {
            dataEnd_ += std::uint64_t{defaults.size} * run.count;
        }
        for (const TrackRunBox::Entry& entry : run.samples) {
            dataEnd_ += run.has(TrackRunBox::hasSizes) ? entry.size : 0;
        }
    }
}

void FragmentReader::readRuns(const std::vector<RawBox>& boxes, std::uint64_t base, const Defaults& defaults,
                              Track& track) {
    if (defaults.sampleEntry < 1 || defaults.sampleEntry > track.sampleEntries.size()) {
        failCorrupt("its samples name a sample entry that does not exist");
    }
    std::int64_t& time =
        ends_.try_emplace(track.id, static_cast<std::int64_t>(track.mediaDuration)).first->second;
    if (const RawBox* start = findBox(boxes, TrackFragmentDecodeTimeBox::type)) {
        const std::uint64_t decodeTime = readBox<TrackFragmentDecodeTimeBox>(start->payload).decodeTime;
        if (decodeTime > latestTime) {
            failCorrupt("a fragment starts beyond all time");
        }
        time = static_cast<std::int64_t>(decodeTime);
    }
    for (const RawBox& box : boxes) {
        if (box.type == TrackRunBox::type) {
            const auto run = readBox<TrackRunBox>(box.payload);
            startRun(run, base);
            readRun(run, defaults, time, track);
        }
    }
    track.hasSyncTable = true;
    track.mediaDuration = std::max(track.mediaDuration, static_cast<std::uint64_t>(time));
}

void FragmentReader::readRun(const TrackRunBox& run, const Defaults& defaults, std::int64_t& time,
                             Track& track) {
    if (run.samples.empty()) {
        bounds_.admitUnlisted(run.count);
    } else {
        bounds_.admitListed(run.count);
    }
    for (std::uint32_t i = 0; i < run.count; ++i) {
        const TrackRunBox::Entry entry = run.samples.empty() ? TrackRunBox::Entry{} : run.samples[i];
        std::uint32_t flags = run.has(TrackRunBox::hasSampleFlags) ? entry.flags : defaults.flags;
        if (i == 0 && run.has(TrackRunBox::hasFirstSampleFlags)) {
            flags = run.firstSampleFlags;
        }
        Sample sample;
        sample.offset = dataEnd_;
        sample.size = run.has(TrackRunBox::hasSizes) ? entry.size : defaults.size;
        sample.decodeTime = time;
        sample.duration = run.has(TrackRunBox::hasDurations) ? entry.duration : defaults.duration;
        sample.compositionOffset = entry.compositionOffset;
        sample.sampleEntry = static_cast<std::uint16_t>(defaults.sampleEntry - 1);
        sample.sync = track.isSound() || isSync(flags);
        bounds_.requireInFile(sample, track.samples.size() + 1);
        track.samples.push_back(sample);
        dataEnd_ += sample.size;
        time += sample.duration;
    }
}

} // namespace zelvra::isobmff
