// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillCoder.h"

#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/bitstream/FreeId.h"
#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/h264/NalType.h"
#include "ZelvraCore/bitstream/h264/SmallNals.h"
#include "ZelvraCore/passthrough/video/ClipFile.h"
#include "ZelvraCore/passthrough/video/PlannedTrack.h"

#include <optional>
#include <set>
#include <utility>

namespace zelvra::passthrough {

using bitstream::Bytes;
using Kind = PlannedSample::Kind;

namespace {

constexpr int ppsIdLimit = 256; // ITU-T H.264 clause 7.4.2.2

const std::filesystem::path& clipOf(const PlannedSample& still, const VideoTrackBuilder::Clips& clips) {
    switch (still.kind) {
    case Kind::leadIn:
    case Kind::cover: return clips.leadIn;
    case Kind::leadOut: return clips.leadOut;
    default: return clips.freezes[still.index];
    }
}

} // namespace

OutputTrack StillCoder::build(const VideoPlan& plan, std::int64_t editStart,
                              const VideoTrackBuilder::Clips& clips, SpoolStore& spool) {
    const isobmff::Track& source = source_.video().track;
    OutputTrack track = plannedTrack(plan.samples, source, editStart);
    std::optional<std::pair<Kind, std::uint32_t>> current; // the site that `picture` and `coded` are of
    Picture picture;
    std::map<std::size_t, StoredBytes> coded; // by header: equal stills are coded once
    for (std::size_t i = 0; i < track.samples.size(); ++i) {
        const PlannedSample& planned = plan.samples.samples[i];
        if (planned.kind == Kind::source) {
            const isobmff::Sample& own = source.samples[planned.index];
            track.samples[i].bytes = {Store::source, own.size, own.offset};
            continue;
        }
        const StillCoding& coding = plan.stills.of(planned);
        if (current != std::pair(planned.kind, planned.index)) {
            current = {planned.kind, planned.index};
            picture = read(clipOf(planned, clips), coding);
            coded.clear();
        }
        const std::size_t header = coding.headerOf(planned.part);
        if (!coded.contains(header)) {
            coded[header] = spool.append(code(picture, coding.sps, coding.headers[header]));
        }
        track.samples[i].bytes = coded[header];
    }
    track.sampleEntry = sampleEntry();
    return track;
}

StillCoder::Picture StillCoder::read(const std::filesystem::path& path, const StillCoding& coding) {
    const ClipFile clip(path);
    const h264::AvcConfiguration own = configurationOf<H264Codec>(clip.video());
    Picture picture;
    picture.own = h264::ParameterSets(own);
    const Bytes sample = clip.video().sample(0);
    for (const bitstream::ByteView nal : bitstream::splitNalUnits(sample, own.nalLengthSize)) {
        if (h264::nalType(nal) == h264::NalType::idrSlice) {
            picture.slices.emplace_back(nal.begin(), nal.end());
        }
    }
    const h264::Pps& pps = picture.own.allPps().begin()->second;
    if (const auto reason = h264::whyStillDoesNotFit(picture.own.spsOfPps(pps.id), pps, coding.sps)) {
        throw bitstream::BitstreamError::unsupported(*reason);
    }
    const OwnPps& set = ownPps(pps, coding.sps);
    picture.ppsId = set.id;
    if (source_.parameterSetsInSamples()) {
        if (coding.repeatsSps) {
            picture.setsInSample.push_back(coding.sps.nal);
        }
        picture.setsInSample.push_back(set.nal);
    }
    return picture;
}

const StillCoder::OwnPps& StillCoder::ownPps(const h264::Pps& pps, const h264::Sps& sps) {
    const auto flat = sps.scalingMatrixPresent ? std::optional(sps.chroma) : std::nullopt;
    const Bytes content = h264::rewritePps(pps.nal, 0, sps.id, flat);
    const auto known = sets_.find(content);
    if (known != sets_.end()) {
        return known->second;
    }
    std::set<int> used = source_.usedIds().pps;
    for (const auto& [other, set] : sets_) {
        used.insert(set.id);
    }
    const int id = bitstream::lowestFreeId(used, ppsIdLimit);
    return sets_.emplace(content, OwnPps{id, h264::rewritePps(content, id, sps.id), sps}).first->second;
}

/// Every still starts with a delimiter: without it, equal stills in a byte stream would be one access unit.
std::vector<std::uint8_t> StillCoder::code(const Picture& picture, const h264::Sps& sps,
                                           h264::StillHeader header) const {
    header.ppsId = picture.ppsId;
    std::vector<Bytes> nals{h264::accessUnitDelimiter()};
    nals.insert(nals.end(), picture.setsInSample.begin(), picture.setsInSample.end());
    if (!header.idr && header.nalRefIdc != 0) {
        nals.push_back(h264::recoveryPointSei(0));
    }
    for (const Bytes& slice : picture.slices) {
        nals.push_back(h264::rewriteSlice(slice, picture.own, sps, header));
    }
    return bitstream::joinNalUnits(nals, source_.nalLengthSize());
}

/// The source's entry with our picture parameter sets added to its configuration, and with the sequence
/// parameter sets that they refer to if only samples carry those. Its bit rate box would no longer be true
/// and is removed.
Bytes StillCoder::sampleEntry() const {
    h264::AvcConfiguration configuration = source_.configuration();
    for (const auto& [content, set] : sets_) {
        if (!h264::ParameterSets(configuration).allSps().contains(set.sps.id)) {
            configuration.addSps(set.sps.nal);
        }
        configuration.addPps(set.nal);
    }
    const Bytes entry = bitstream::replaceChildBox(source_.video().sampleEntry().box,
                                                   H264Codec::configurationBox, configuration.serialise());
    return bitstream::removeChildBox(entry, "btrt");
}

} // namespace zelvra::passthrough
