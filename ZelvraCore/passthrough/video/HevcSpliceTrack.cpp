// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/HevcSpliceTrack.h"

#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/hevc/CarriedMetadata.h"
#include "ZelvraCore/bitstream/hevc/FreezeFit.h"
#include "ZelvraCore/bitstream/hevc/Hiding.h"
#include "ZelvraCore/bitstream/hevc/Identity.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/ClipFile.h"
#include "ZelvraCore/passthrough/video/PlannedTrack.h"
#include "ZelvraCore/passthrough/video/SplicePlan.h"

#include <algorithm>
#include <map>
#include <optional>

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

/// Whether the plan stores pictures that are decoded and not shown.
bool hidesPictures(const SamplePlan& plan) {
    return std::ranges::any_of(plan.samples, [](const PlannedSample& sample) { return !sample.shown; });
}

/// Gives the samples of one planned movie their bytes; lives for one call.
class SpliceCoder {
public:
    SpliceCoder(const SourceStream<HevcCodec>& stream, const VideoPlan& plan, SpoolStore& spool)
        : source_(stream.video()), stream_(stream), plan_(plan), spool_(spool), usedIds_(stream.usedIds()) {
        if (hidesPictures(plan.samples)) {
            twins_ = hevc::chooseTwinIds(
                bitstream::idsOf(hevc::ParameterSets(stream_.configuration()).allPps()), usedIds_.pps);
            for (const auto& [id, twin] : twins_) {
                usedIds_.pps.insert(twin);
            }
        }
    }

    OutputTrack build(std::int64_t editStart, const VideoTrackBuilder::Clips& clips) {
        OutputTrack track = plannedTrack(plan_.samples, source_.track, editStart);
        std::optional<ClipFile> file; // the clip of the freeze being written
        Clip clip;
        for (std::size_t i = 0; i < track.samples.size(); ++i) {
            const PlannedSample& planned = plan_.samples.samples[i];
            if (planned.kind == Kind::source) {
                track.samples[i].bytes = sourceBytes(planned);
                continue;
            }
            if (planned.part == 0) {
                file.emplace(clips.freezes[planned.index]);
                clip = readClip(file->video(), planned.index);
            }
            track.samples[i].bytes = freezeBytes(clip, file->video(), planned.part);
        }
        track.sampleEntry = sampleEntry();
        return track;
    }

private:
    /// A freeze clip under the ids it has in the movie.
    struct Clip {
        hevc::ParameterSets own;
        int nalLengthSize = 4;
        hevc::Identity identity;
        hevc::CarriedMetadata metadata; ///< of the frozen picture
    };

    Clip readClip(const SourceVideo& clip, std::uint32_t freeze) {
        const hevc::HevcConfiguration configuration = configurationOf<HevcCodec>(clip);
        return {hevc::ParameterSets(configuration), configuration.nalLengthSize(), identify(configuration),
                hevc::carriedMetadata(source_.sample(plan_.frozenPictures[freeze]), stream_.nalLengthSize())};
    }

    hevc::Identity identify(const hevc::HevcConfiguration& configuration) {
        const auto [known, isNew] = identities_.try_emplace(parameterSetsOf(configuration));
        if (isNew) {
            known->second = {bitstream::lowestFreeId(usedIds_.vps, vpsIdLimit),
                             bitstream::lowestFreeId(usedIds_.sps, spsIdLimit),
                             bitstream::lowestFreeId(usedIds_.pps, ppsIdLimit)};
            usedIds_.vps.insert(known->second.vpsId);
            usedIds_.sps.insert(known->second.spsId);
            usedIds_.pps.insert(known->second.ppsId);
            inserted_.push_back(hevc::reidentify(configuration, known->second, stream_.sps()));
        }
        return known->second;
    }

    StoredBytes freezeBytes(const Clip& clip, const SourceVideo& video, std::uint32_t part) {
        const Bytes sample =
            hevc::reidentifySample(video.sample(part), clip.nalLengthSize, clip.own, clip.identity);
        return spool_.append(
            clip.metadata.empty() ? sample : hevc::withMetadata(sample, clip.nalLengthSize, clip.metadata));
    }

    /// In `hvc1` all parameter sets are in the sample entry (ISO/IEC 14496-15 clause 8.4.1.1); files that
    /// break the rule repeat them at sync samples.
    bool mayCarryParameterSets(std::uint32_t index) const {
        return stream_.parameterSetsInSamples() && source_.track.samples[index].sync;
    }

    StoredBytes sourceBytes(const PlannedSample& planned) {
        const isobmff::Sample& own = source_.track.samples[planned.index];
        const StoredBytes untouched{Store::source, own.size, own.offset};
        if (planned.startsRun) {
            runSets_ = hevc::ParameterSets(stream_.configuration());
        }
        const bool cutBefore = planned.startsRun && planned.index > 0;
        if (!planned.shown) {
            return spool_.append(hevc::hideSample(source_.sample(planned.index), stream_.nalLengthSize(),
                                                  runSets_, twins_, cutBefore));
        }
        if (!cutBefore && !mayCarryParameterSets(planned.index)) {
            return untouched;
        }
        const auto changed = hevc::completeSample(source_.sample(planned.index), stream_.nalLengthSize(),
                                                  runSets_, twins_, cutBefore);
        return changed ? spool_.append(*changed) : untouched;
    }

    /// The source's entry with the clips' parameter sets and the twins added to its configuration. Its bit
    /// rate box would no longer be true and is removed.
    Bytes sampleEntry() const {
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

    const SourceVideo& source_;
    const SourceStream<HevcCodec>& stream_;
    const VideoPlan& plan_;
    SpoolStore& spool_;
    ParameterSetIds usedIds_; ///< by the source, then by clips and twins too
    hevc::TwinIds twins_;
    hevc::ParameterSets runSets_; ///< in force at the sample being written
    /// Parameter sets of clips that were given ids, by their bytes; clips of one source mostly share theirs.
    std::map<std::vector<Bytes>, hevc::Identity> identities_;
    std::vector<hevc::HevcConfiguration> inserted_;
};

} // namespace

HevcSpliceTrack::HevcSpliceTrack(const SourceVideo& source)
    : stream_(source, CodingChanges::refused), encoding_(hevc::freezeEncodingFor(stream_.sps())) {}

VideoPlan HevcSpliceTrack::plan(const VideoCut& cut) {
    const SpliceRules rules{
        .hiding = Hiding::neverShown,
        .isDisposable =
            [this](std::uint32_t index) {
                const hevc::PictureFacts facts = stream_.at(index);
                return facts.subLayerNonReference && facts.temporalId == stream_.sps().maxSubLayers - 1;
            },
        .canResumeAt = [](std::uint32_t) { return true; },
    };
    VideoPlan plan;
    plan.samples = planSplice(pictures(), stream_.video().track.timescale, cut, rules);
    for (const VideoCut::Freeze& freeze : cut.freezes) {
        plan.frozenPictures.push_back(pictures().indexAt(std::min(freeze.position, pictures().count() - 1)));
    }
    return plan;
}

OutputTrack HevcSpliceTrack::build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                                   SpoolStore& spool) {
    return SpliceCoder(stream_, plan, spool).build(editStart, clips);
}

} // namespace zelvra::passthrough
