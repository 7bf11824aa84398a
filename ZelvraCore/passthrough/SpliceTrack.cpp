#include "ZelvraCore/passthrough/SpliceTrack.h"

#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/hevc/FreezeFit.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/ClipFile.h"
#include "ZelvraCore/passthrough/PlannedTrack.h"
#include "ZelvraCore/passthrough/SplicePlan.h"

#include <algorithm>

namespace zelvra::passthrough {

namespace {

using bitstream::Bytes;
using Kind = PlannedSample::Kind;

// ITU-T H.265 clauses 7.4.3.1 to 7.4.3.3
constexpr int vpsIdLimit = 16;
constexpr int spsIdLimit = 16;
constexpr int ppsIdLimit = 64;

hevc::HevcConfiguration configurationOf(const SourceVideo& video) {
    const auto content = bitstream::findChildBox(video.sampleEntry().box, "hvcC");
    if (!content) {
        throw CannotPassThrough("its sample entry holds no decoder configuration");
    }
    return hevc::HevcConfiguration::parse(*content);
}

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

SpliceTrack::SpliceTrack(const SourceVideo& source)
    : source_(source),
      configuration_(configurationOf(source)),
      pictures_(source.track.samples),
      window_(
          source,
          [this] {
              return hevc::PictureScanner(hevc::ParameterSets(configuration_),
                                          configuration_.nalLengthSize());
          },
          [this](const hevc::PictureScanner& scanner, const hevc::PictureFacts& facts) {
              observe(scanner, facts);
          }) {
    window_.at(0);
    if (const auto reason = hevc::whyNoFreezeFits(*sps_)) {
        throw CannotPassThrough(*reason);
    }
}

void SpliceTrack::observe(const hevc::PictureScanner& scanner, const hevc::PictureFacts& facts) {
    const hevc::Sps& sps = scanner.parameterSets().sps(facts.spsId);
    if (!sps_) {
        sps_ = sps;
    }
    if (scanner.spsChanged() || sps.nal != sps_->nal) {
        throw CannotPassThrough("its coding changes within the movie");
    }
    vpsIds_.insert(scanner.vpsIdsSeen().begin(), scanner.vpsIdsSeen().end());
    spsIds_.insert(scanner.spsIdsSeen().begin(), scanner.spsIdsSeen().end());
    ppsIds_.insert(scanner.ppsIdsSeen().begin(), scanner.ppsIdsSeen().end());
    parameterSetsInSamples_ = parameterSetsInSamples_ || facts.hasInBandParameterSets;
}

FreezeEncoding SpliceTrack::freezeEncoding() const {
    return hevc::freezeEncodingFor(*sps_);
}

SamplePlan& SpliceTrack::plan(const VideoCut& cut) {
    cut_ = cut;
    plan_ = planSplice(pictures_, source_.track.timescale, cut, [this](std::uint32_t index) {
        const hevc::PictureFacts facts = window_.at(index);
        return facts.subLayerNonReference && facts.temporalId == sps_->maxSubLayers - 1;
    });
    return plan_;
}

hevc::Identity SpliceTrack::identify(const hevc::HevcConfiguration& configuration) {
    const auto [known, isNew] = identities_.try_emplace(parameterSetsOf(configuration));
    if (isNew) {
        known->second = {bitstream::leastFreeId(vpsIds_, vpsIdLimit),
                         bitstream::leastFreeId(spsIds_, spsIdLimit),
                         bitstream::leastFreeId(ppsIds_, ppsIdLimit)};
        vpsIds_.insert(known->second.vpsId);
        spsIds_.insert(known->second.spsId);
        ppsIds_.insert(known->second.ppsId);
        inserted_.push_back(hevc::reidentify(configuration, known->second, *sps_));
    }
    return known->second;
}

SpliceTrack::Clip SpliceTrack::readClip(const SourceVideo& clip, std::uint32_t freeze) {
    const std::uint32_t frozen = std::min(cut_.freezes[freeze].position, pictures_.count() - 1);
    const hevc::HevcConfiguration configuration = configurationOf(clip);
    return {hevc::ParameterSets(configuration), configuration.nalLengthSize(), identify(configuration),
            hevc::carriedMetadata(source_.sample(pictures_.indexAt(frozen)), configuration_.nalLengthSize())};
}

StoredBytes SpliceTrack::freezeBytes(const Clip& clip, const SourceVideo& video, std::uint32_t part,
                                     SpoolStore& spool) const {
    const Bytes sample =
        hevc::reidentifySample(video.sample(part), clip.nalLengthSize, clip.own, clip.identity);
    return spool.append(
        clip.metadata.empty() ? sample : hevc::withMetadata(sample, clip.nalLengthSize, clip.metadata));
}

/// In `hvc1` all parameter sets are in the sample entry (ISO/IEC 14496-15 clause 8.4.1.1); files that break
/// the rule repeat them at sync samples.
bool SpliceTrack::mayCarryParameterSets(std::uint32_t index) const {
    return parameterSetsInSamples_ && source_.track.samples[index].sync;
}

StoredBytes SpliceTrack::sourceBytes(const PlannedSample& planned, SpoolStore& spool) {
    const isobmff::Sample& own = source_.track.samples[planned.index];
    const StoredBytes untouched{0, own.size, own.offset};
    if (planned.startsRun) {
        runSets_ = hevc::ParameterSets(configuration_);
    }
    const bool cutBefore = planned.startsRun && planned.index > 0;
    if (!planned.shown) {
        return spool.append(hevc::hideSample(source_.sample(planned.index), configuration_.nalLengthSize(),
                                             runSets_, twins_, cutBefore));
    }
    if (!cutBefore && !mayCarryParameterSets(planned.index)) {
        return untouched;
    }
    const auto changed = hevc::completeSample(source_.sample(planned.index), configuration_.nalLengthSize(),
                                              runSets_, twins_, cutBefore);
    return changed ? spool.append(*changed) : untouched;
}

OutputTrack SpliceTrack::build(const Clips& clips, SpoolStore& spool) {
    if (std::ranges::any_of(plan_.samples, [](const PlannedSample& sample) { return !sample.shown; })) {
        twins_ = hevc::chooseTwinIds(bitstream::idsOf(hevc::ParameterSets(configuration_).allPps()), ppsIds_);
        for (const auto& [id, twin] : twins_) {
            ppsIds_.insert(twin);
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
Bytes SpliceTrack::sampleEntry() const {
    hevc::HevcConfiguration configuration = configuration_;
    for (const hevc::HevcConfiguration& clip : inserted_) {
        configuration = hevc::mergeForSplice(configuration, clip, {});
    }
    for (const Bytes& twin : hevc::twinsOf(hevc::ParameterSets(configuration_), twins_)) {
        configuration.add(twin);
    }
    const Bytes entry =
        bitstream::replaceChildBox(source_.sampleEntry().box, "hvcC", configuration.serialise());
    return bitstream::removeChildBox(entry, "btrt");
}

} // namespace zelvra::passthrough
