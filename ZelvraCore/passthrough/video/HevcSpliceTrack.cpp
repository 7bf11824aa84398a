// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/HevcSpliceTrack.h"

#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/hevc/FreezeFit.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/ClipFile.h"
#include "ZelvraCore/passthrough/video/PlannedTrack.h"
#include "ZelvraCore/passthrough/video/SplicePlan.h"

#include <algorithm>

namespace zelvra::passthrough {

namespace {

using bitstream::Bytes;
using Kind = PlannedSample::Kind;

// ITU-T H.265 clauses 7.4.3.1 to 7.4.3.3
constexpr int vpsIdLimit = 16;
constexpr int spsIdLimit = 16;
constexpr int ppsIdLimit = 64;

std::vector<Bytes> parameterSetsOf(const hevc::HevcConfiguration& configuration) {
    std::vector<Bytes> sets;
    for (const hevc::NalType type : {hevc::NalType::vps, hevc::NalType::sps, hevc::NalType::pps}) {
        for (const bitstream::ByteView nal : configuration.nalsOfType(type)) {
            sets.emplace_back(nal.begin(), nal.end());
        }
    }
    return sets;
}

} // namespace

HevcSpliceTrack::HevcSpliceTrack(const SourceVideo& source)
    : source_(source),
      stream_(source, CodingChanges::refused),
      encoding_(hevc::freezeEncodingFor(stream_.sps())) {}

SamplePlan& HevcSpliceTrack::plan(const VideoCut& cut) {
    cut_ = cut;
    const SpliceRules rules{
        .hiding = Hiding::neverShown,
        .isDisposable =
            [this](std::uint32_t index) {
                const hevc::PictureFacts facts = stream_.at(index);
                return facts.subLayerNonReference && facts.temporalId == stream_.sps().maxSubLayers - 1;
            },
        .canResumeAt = [](std::uint32_t) { return true; },
    };
    plan_ = planSplice(pictures(), source_.track.timescale, cut, rules);
    return plan_;
}

hevc::Identity HevcSpliceTrack::identify(const hevc::HevcConfiguration& configuration) {
    const auto [known, isNew] = identities_.try_emplace(parameterSetsOf(configuration));
    if (isNew) {
        known->second = {bitstream::leastFreeId(usedIds_.vps, vpsIdLimit),
                         bitstream::leastFreeId(usedIds_.sps, spsIdLimit),
                         bitstream::leastFreeId(usedIds_.pps, ppsIdLimit)};
        usedIds_.vps.insert(known->second.vpsId);
        usedIds_.sps.insert(known->second.spsId);
        usedIds_.pps.insert(known->second.ppsId);
        inserted_.push_back(hevc::reidentify(configuration, known->second, stream_.sps()));
    }
    return known->second;
}

HevcSpliceTrack::Clip HevcSpliceTrack::readClip(const SourceVideo& clip, std::uint32_t freeze) {
    const std::uint32_t frozen = std::min(cut_.freezes[freeze].position, pictures().count() - 1);
    const hevc::HevcConfiguration configuration = configurationOf<HevcCodec>(clip);
    return {hevc::ParameterSets(configuration), configuration.nalLengthSize(), identify(configuration),
            hevc::carriedMetadata(source_.sample(pictures().indexAt(frozen)), stream_.nalLengthSize())};
}

StoredBytes HevcSpliceTrack::freezeBytes(const Clip& clip, const SourceVideo& video, std::uint32_t part,
                                         SpoolStore& spool) const {
    const Bytes sample =
        hevc::reidentifySample(video.sample(part), clip.nalLengthSize, clip.own, clip.identity);
    return spool.append(
        clip.metadata.empty() ? sample : hevc::withMetadata(sample, clip.nalLengthSize, clip.metadata));
}

/// In `hvc1` all parameter sets are in the sample entry (ISO/IEC 14496-15 clause 8.4.1.1); files that break
/// the rule repeat them at sync samples.
bool HevcSpliceTrack::mayCarryParameterSets(std::uint32_t index) const {
    return stream_.parameterSetsInSamples() && source_.track.samples[index].sync;
}

StoredBytes HevcSpliceTrack::sourceBytes(const PlannedSample& planned, SpoolStore& spool) {
    const isobmff::Sample& own = source_.track.samples[planned.index];
    const StoredBytes untouched{0, own.size, own.offset};
    if (planned.startsRun) {
        runSets_ = hevc::ParameterSets(stream_.configuration());
    }
    const bool cutBefore = planned.startsRun && planned.index > 0;
    if (!planned.shown) {
        return spool.append(hevc::hideSample(source_.sample(planned.index), stream_.nalLengthSize(), runSets_,
                                             twins_, cutBefore));
    }
    if (!cutBefore && !mayCarryParameterSets(planned.index)) {
        return untouched;
    }
    const auto changed = hevc::completeSample(source_.sample(planned.index), stream_.nalLengthSize(),
                                              runSets_, twins_, cutBefore);
    return changed ? spool.append(*changed) : untouched;
}

OutputTrack HevcSpliceTrack::build(const Clips& clips, SpoolStore& spool) {
    usedIds_ = stream_.usedIds();
    if (std::ranges::any_of(plan_.samples, [](const PlannedSample& sample) { return !sample.shown; })) {
        twins_ = hevc::chooseTwinIds(bitstream::idsOf(hevc::ParameterSets(stream_.configuration()).allPps()),
                                     usedIds_.pps);
        for (const auto& [id, twin] : twins_) {
            usedIds_.pps.insert(twin);
        }
    }
    OutputTrack track = plannedTrack(plan_, source_.track);
    std::optional<ClipFile> file; // the clip of the freeze being written
    Clip clip;
    for (std::size_t i = 0; i < plan_.samples.size(); ++i) {
        const PlannedSample& planned = plan_.samples[i];
        if (planned.kind == Kind::source) {
            track.samples[i].bytes = sourceBytes(planned, spool);
            continue;
        }
        if (planned.part == 0) {
            file.emplace(clips.freezes[planned.index]);
            clip = readClip(file->video(), planned.index);
        }
        track.samples[i].bytes = freezeBytes(clip, file->video(), planned.part, spool);
    }
    track.sampleEntry = sampleEntry();
    return track;
}

/// The source's entry, its configuration completed by the clips' parameter sets and the twins. The bit rate
/// box would no longer be true.
Bytes HevcSpliceTrack::sampleEntry() const {
    hevc::HevcConfiguration configuration = stream_.configuration();
    for (const hevc::HevcConfiguration& clip : inserted_) {
        configuration = hevc::mergeForSplice(configuration, clip, {});
    }
    for (const Bytes& twin : hevc::twinsOf(hevc::ParameterSets(stream_.configuration()), twins_)) {
        configuration.add(twin);
    }
    const Bytes entry =
        bitstream::replaceChildBox(source_.sampleEntry().box, "hvcC", configuration.serialise());
    return bitstream::removeChildBox(entry, "btrt");
}

} // namespace zelvra::passthrough
