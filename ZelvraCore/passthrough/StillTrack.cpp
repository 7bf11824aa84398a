#include "ZelvraCore/passthrough/StillTrack.h"

#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/bitstream/h264/NalType.h"
#include "ZelvraCore/bitstream/h264/SmallNals.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/ClipFile.h"
#include "ZelvraCore/passthrough/PlannedTrack.h"

#include <algorithm>
#include <utility>

namespace zelvra::passthrough {

namespace {

using Coding = StillSite::Coding;
using Kind = PlannedSample::Kind;
using bitstream::Bytes;

constexpr int ppsIdLimit = 256; // ITU-T H.264 clause 7.4.2.2

h264::AvcConfiguration configurationOf(const SourceVideo& video) {
    const auto content = bitstream::findChildBox(video.sampleEntry().box, "avcC");
    if (!content) {
        throw CannotPassThrough("its sample entry holds no decoder configuration");
    }
    return h264::AvcConfiguration::parse(*content);
}

std::uint32_t modulo(std::int64_t value, int bits) {
    return static_cast<std::uint32_t>(value & ((std::int64_t{1} << bits) - 1));
}

} // namespace

StillTrack::StillTrack(const SourceVideo& source)
    : source_(source),
      configuration_(configurationOf(source)),
      pictures_(source.track.samples),
      window_(
          source,
          [this] {
              return h264::PictureScanner(h264::ParameterSets(configuration_), configuration_.nalLengthSize);
          },
          [this](const h264::PictureScanner& scanner, const h264::PictureFacts& facts) {
              observe(scanner, facts);
          }) {
    window_.at(0);
    if (const auto reason = h264::whyNoFreezeFits(*sps_)) {
        throw CannotPassThrough(*reason);
    }
}

void StillTrack::observe(const h264::PictureScanner& scanner, const h264::PictureFacts& facts) {
    const h264::Sps& sps = scanner.parameterSets().sps(facts.spsId);
    if (!sps_) {
        sps_ = sps;
        pps_ = scanner.parameterSets().pps(facts.ppsId);
    }
    if (scanner.spsChanged() || sps.nal != sps_->nal) {
        throw CannotPassThrough("its coding changes within the movie");
    }
    foreignPpsIds_.insert(scanner.ppsIdsSeen().begin(), scanner.ppsIdsSeen().end());
    parameterSetsInSamples_ = parameterSetsInSamples_ || facts.hasInBandParameterSets;
}

FreezeEncoding StillTrack::freezeEncoding() const {
    return h264::freezeEncodingFor(*sps_, *pps_);
}

SamplePlan& StillTrack::plan(const VideoCut& cut) {
    plan_ = planStills(pictures_, source_.track.timescale, cut, [this](std::uint32_t index) {
        const h264::PictureFacts facts = window_.at(index);
        return PictureTraits{facts.idr, facts.isReference};
    });
    return plan_.samples;
}

StillTrack::CodedStill StillTrack::readStill(const std::filesystem::path& path) {
    const ClipFile clip(path);
    CodedStill still;
    const h264::AvcConfiguration own = configurationOf(clip.video());
    still.own = h264::ParameterSets(own);
    const Bytes sample = clip.video().sample(0);
    for (const bitstream::ByteView nal : bitstream::splitNalUnits(sample, own.nalLengthSize)) {
        if (h264::nalType(nal) == h264::NalType::idrSlice) {
            still.slices.emplace_back(nal.begin(), nal.end());
        }
    }
    const h264::Pps& pps = still.own.allPps().begin()->second;
    if (const auto reason = h264::whyStillDoesNotFit(still.own.spsOfPps(pps.id), pps, *sps_)) {
        throw CannotPassThrough(*reason);
    }
    const auto flat = sps_->scalingMatrixPresent ? std::optional(sps_->chroma) : std::nullopt;
    const Bytes content = h264::rewritePps(pps.nal, 0, sps_->id, flat);
    auto known = ppsIds_.find(content);
    if (known == ppsIds_.end()) {
        std::set<int> used = foreignPpsIds_;
        for (const auto& [bytes, id] : ppsIds_) {
            used.insert(id);
        }
        known = ppsIds_.emplace(content, bitstream::leastFreeId(used, ppsIdLimit)).first;
    }
    still.ppsId = known->second;
    still.pps = h264::rewritePps(content, still.ppsId, sps_->id);
    return still;
}

/// Neighbouring IDR pictures must differ in idr_pic_id (ITU-T H.264 clause 7.4.3): the source's on both
/// sides, those of the freeze before, and one still from the next.
std::array<std::uint32_t, 2> StillTrack::chooseIdrPicIds(const StillSite& site) {
    std::set<std::uint32_t> taken{window_.at(*site.head).idrPicId};
    if (site.decodedBefore) {
        taken.insert(window_.at(*site.decodedBefore).idrPicId);
    }
    if (lastIdrPicId_) {
        taken.insert(*lastIdrPicId_);
    }
    std::array<std::uint32_t, 2> ids{};
    for (std::uint32_t& id : ids) {
        while (taken.contains(id)) {
            ++id;
        }
        taken.insert(id);
    }
    return ids;
}

h264::StillHeader StillTrack::header(const CodedStill& still, const StillSite& site, std::uint32_t variant) {
    switch (site.coding) {
    case Coding::idr: {
        h264::StillHeader header;
        header.idr = true;
        header.nalRefIdc = 3;
        header.idrPicId = still.idrPicIds.at(variant);
        return header;
    }
    case Coding::recovery: return recoveryHeader(site, variant == 0);
    case Coding::inserted: break;
    }
    return insertedHeader(site);
}

/// A stream that starts at an intra picture which is not IDR must not get an IDR picture in front: its
/// frame_num and order counts go on from pictures that are not there. An intra reference picture that would
/// have come right before keeps them whole.
h264::StillHeader StillTrack::recoveryHeader(const StillSite& site, bool first) {
    if (sps_->pocType == 1) {
        throw CannotPassThrough("its picture order leaves no room in front of the range");
    }
    const h264::PictureFacts head = window_.at(*site.head);
    h264::StillHeader header;
    header.nalRefIdc = first ? 1 : 0;
    header.frameNum = modulo(std::int64_t{head.frameNum} - (first ? 1 : 0), sps_->frameNumBits);
    header.pocLsb = modulo(std::int64_t{head.pocLsb} - (first ? 2 : 1), sps_->pocLsbBits);
    return header;
}

/// A non-reference picture right behind the picture shown before it, in output order too.
h264::StillHeader StillTrack::insertedHeader(const StillSite& site) {
    std::uint32_t from = std::min(*site.decodedBefore, *site.shownBefore);
    from = site.shownAfter ? std::min(from, *site.shownAfter) : from;
    const h264::PictureFacts before = window_.at(*site.decodedBefore, from);
    const h264::PictureFacts shownBefore = window_.at(*site.shownBefore, from);
    std::optional<h264::PictureFacts> shownAfter;
    if (site.shownAfter) {
        shownAfter = window_.at(*site.shownAfter, from);
    }
    if (before.fieldPicture || shownBefore.fieldPicture || (shownAfter && shownAfter->fieldPicture)) {
        throw CannotPassThrough("it is coded in single fields");
    }
    std::optional<std::int64_t> highest;
    if (shownAfter && shownAfter->period == shownBefore.period) {
        highest = shownAfter->poc - 1;
    }
    if (shownAfter && shownAfter->period < shownBefore.period) {
        throw CannotPassThrough("its picture order differs from its times");
    }
    // Where sources step by 1 there is no number between; the one of the picture before serves.
    std::int64_t wanted = shownBefore.poc + 1;
    if (highest && wanted > *highest) {
        wanted = shownBefore.poc;
    }
    h264::StillHeader header;
    header.frameNum =
        modulo(std::int64_t{before.orderAfter.previousReferenceFrameNum()} + 1, sps_->frameNumBits);
    auto order = [&] {
        h264::PictureOrder next = before.orderAfter;
        return next.next(*sps_, header.asSlice());
    };
    if (sps_->pocType == 0) {
        header.pocLsb = modulo(wanted, sps_->pocLsbBits);
    } else if (sps_->pocType == 1 && !sps_->deltaPicOrderAlwaysZero) {
        header.deltaPoc[0] = static_cast<std::int32_t>(wanted - order());
    } else if (sps_->pocType == 2) {
        if (!before.isReference || (shownAfter && !shownAfter->isReference)) {
            throw CannotPassThrough("its picture order leaves no room for a freeze");
        }
        wanted = order();
    }
    if (order() != wanted || wanted < shownBefore.poc || (highest && wanted > *highest)) {
        throw CannotPassThrough("its picture order leaves no room for a freeze");
    }
    return header;
}

/// Every still starts with a delimiter: in a byte stream equal stills would otherwise count as one access
/// unit.
std::vector<std::uint8_t> StillTrack::code(const CodedStill& still, const h264::StillHeader& header) const {
    std::vector<Bytes> nals{h264::accessUnitDelimiter()};
    if (!header.idr && header.nalRefIdc != 0) {
        nals.push_back(h264::recoveryPointSei(0));
    }
    if (parameterSetsInSamples_) {
        nals.push_back(still.pps);
    }
    for (const Bytes& slice : still.slices) {
        nals.push_back(h264::rewriteSlice(slice, still.own, *sps_, header));
    }
    return bitstream::joinNalUnits(nals, configuration_.nalLengthSize);
}

OutputTrack StillTrack::build(const Clips& clips, SpoolStore& spool) {
    OutputTrack track = plannedTrack(plan_.samples, source_.track);
    std::optional<std::pair<Kind, std::uint32_t>> current; // the clip that `still` and `variants` are of
    CodedStill still;
    std::map<std::uint32_t, StoredBytes> variants; // stills that differ by their headers only are coded once
    for (std::size_t i = 0; i < plan_.samples.samples.size(); ++i) {
        const PlannedSample& planned = plan_.samples.samples[i];
        if (planned.kind == Kind::source) {
            const isobmff::Sample& own = source_.track.samples[planned.index];
            track.samples[i].bytes = {0, own.size, own.offset};
            continue;
        }
        const StillSite& site = siteOf(planned);
        if (current != std::pair(planned.kind, planned.index)) {
            current = {planned.kind, planned.index};
            still = readStill(planned.kind == Kind::freeze   ? clips.freezes[planned.index]
                              : planned.kind == Kind::leadIn ? clips.leadIn
                                                             : clips.leadOut);
            still.idrPicIds = site.coding == Coding::idr ? chooseIdrPicIds(site) : still.idrPicIds;
            variants.clear();
        }
        const std::uint32_t variant = variantOf(planned, site);
        if (site.coding == Coding::idr) {
            lastIdrPicId_ = still.idrPicIds.at(variant);
        }
        if (!variants.contains(variant)) {
            h264::StillHeader coded = header(still, site, variant);
            coded.ppsId = still.ppsId;
            variants[variant] = spool.append(code(still, coded));
        }
        track.samples[i].bytes = variants[variant];
    }
    track.sampleEntry = sampleEntry();
    return track;
}

const StillSite& StillTrack::siteOf(const PlannedSample& still) const {
    switch (still.kind) {
    case Kind::leadIn: return *plan_.leadIn;
    case Kind::leadOut: return *plan_.leadOut;
    default: return plan_.freezes[still.index];
    }
}

/// IDR pictures take turns; of those in front of a stream that starts without one, only the very first is
/// different.
std::uint32_t StillTrack::variantOf(const PlannedSample& still, const StillSite& site) {
    switch (site.coding) {
    case Coding::idr: return still.part % 2;
    case Coding::recovery: return std::exchange(recoveryStarted_, true) ? 1 : 0;
    case Coding::inserted: break;
    }
    return 0;
}

/// The source's entry with our picture parameter sets in its configuration. The bit rate box would no longer
/// be true.
Bytes StillTrack::sampleEntry() const {
    h264::AvcConfiguration configuration = configuration_;
    for (const auto& [content, id] : ppsIds_) {
        configuration.addPps(h264::rewritePps(content, id, sps_->id));
    }
    const Bytes entry =
        bitstream::replaceChildBox(source_.sampleEntry().box, "avcC", configuration.serialise());
    return bitstream::removeChildBox(entry, "btrt");
}

} // namespace zelvra::passthrough
