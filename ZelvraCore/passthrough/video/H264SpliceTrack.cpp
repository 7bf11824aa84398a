// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/H264SpliceTrack.h"

#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>
#include <tuple>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;

/// Whether what is encoded to match the one can stand under the other as well.
bool takeTheSameStills(const h264::Sps& one, const h264::Sps& other) {
    const auto demands = [](const h264::Sps& sps) {
        return std::tuple(sps.profileIdc, sps.chroma, sps.lumaBitDepth, sps.chromaBitDepth,
                          sps.losslessAtQpZero, sps.frameMbsOnly, sps.mbAdaptiveFrameField, sps.codedWidth(),
                          sps.codedHeight(), sps.crop.left, sps.crop.right, sps.crop.top, sps.crop.bottom);
    };
    return demands(one) == demands(other);
}

bool atOnePlace(const PlannedSample& a, const PlannedSample& b) {
    return a.kind == b.kind && a.index == b.index;
}

} // namespace

H264SpliceTrack::H264SpliceTrack(const SourceVideo& source)
    : stream_(source, CodingChanges::accepted),
      encoding_(h264::freezeEncodingFor(stream_.sps(), stream_.pps())) {}

SamplePlan& H264SpliceTrack::plan(const VideoCut& cut) {
    const SpliceRules rules{
        .hiding = Hiding::brief,
        .isDisposable = [this](std::uint32_t index) { return !stream_.at(index).isReference; },
        .canResumeAt = [this](std::uint32_t index) { return stream_.at(index).idr; },
    };
    plan_ = planSplice(pictures(), stream_.video().track.timescale, cut, rules);
    placeStills(cut.freezes.size());
    return plan_;
}

OutputTrack H264SpliceTrack::build(const Clips& clips, SpoolStore& spool) {
    return StillCoder(stream_).build(plan_, places_, clips, spool);
}

/// Back to front, as stills are decoded with the parameter set of the run that follows; those behind the last
/// one with that of the last.
void H264SpliceTrack::placeStills(std::size_t freezes) {
    const std::vector<PlannedSample>& samples = plan_.samples;
    places_.freezes.resize(freezes);
    const auto last = std::ranges::find_if(samples.rbegin(), samples.rend(), &PlannedSample::startsRun);
    Head head = readHead(*last);
    std::set<std::uint32_t> taken; // idr_pic_id of the pictures behind the stills
    for (std::size_t i = samples.size(); i-- > 0;) {
        const PlannedSample& sample = samples[i];
        if (sample.startsRun) {
            head = readHead(sample);
            taken = {head.idrPicId};
        }
        if (sample.kind == Kind::source || (i > 0 && atOnePlace(samples[i - 1], sample))) {
            continue;
        }
        if (i > 0 && samples[i - 1].kind == Kind::source && pictures().sample(samples[i - 1].index).sync) {
            taken.insert(stream_.at(samples[i - 1].index).idrPicId);
        }
        StillPlace place = idrPlace(head.sps, taken);
        place.repeatsSps = true;
        taken = idrPicIdsOf(place);
        placeOf(sample) = std::move(place);
    }
}

StillPlace& H264SpliceTrack::placeOf(const PlannedSample& still) {
    switch (still.kind) {
    case Kind::leadIn: return places_.leadIn.emplace();
    case Kind::leadOut: return places_.leadOut.emplace();
    default: return places_.freezes[still.index];
    }
}

H264SpliceTrack::Head H264SpliceTrack::readHead(const PlannedSample& sample) const {
    h264::PictureScanner scanner = stream_.scanner();
    const h264::PictureFacts facts = scanner.scan(stream_.video().sample(sample.index));
    const h264::Sps& sps = scanner.parameterSets().sps(facts.spsId);
    // What came in later samples is in force when decoding resumes, unless the head brings its own.
    const bool setsOutdated = stream_.parameterSetsInSamples() && !facts.hasInBandParameterSets;
    const bool isFirst = &*std::ranges::find(plan_.samples, Kind::source, &PlannedSample::kind) == &sample;
    if (!takeTheSameStills(sps, stream_.sps()) || (setsOutdated && !isFirst)) {
        throw CannotPassThrough("its coding changes within the movie");
    }
    return {sps, facts.idrPicId};
}

} // namespace zelvra::passthrough
