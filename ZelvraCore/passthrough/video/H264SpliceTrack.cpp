// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/H264SpliceTrack.h"

#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/SplicePlan.h"
#include "ZelvraCore/passthrough/video/StillCoder.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace zelvra::passthrough {

namespace {

using Kind = PlannedSample::Kind;

/// Whether stills that were encoded for one of them can be decoded with the other as well.
bool takeTheSameStills(const h264::Sps& one, const h264::Sps& other) {
    const auto demands = [](const h264::Sps& sps) {
        return std::tuple(sps.profileIdc, sps.chroma, sps.lumaBitDepth, sps.chromaBitDepth,
                          sps.losslessAtQpZero, sps.frameMbsOnly, sps.mbAdaptiveFrameField, sps.codedWidth(),
                          sps.codedHeight(), sps.crop.left, sps.crop.right, sps.crop.top, sps.crop.bottom);
    };
    return demands(one) == demands(other);
}

bool atOneSite(const PlannedSample& a, const PlannedSample& b) {
    return a.kind == b.kind && a.index == b.index;
}

StillCoding& codingOf(const PlannedSample& still, StillCodings& codings) {
    switch (still.kind) {
    case Kind::leadIn: return codings.leadIn.emplace();
    case Kind::leadOut: return codings.leadOut.emplace();
    default: return codings.freezes[still.index];
    }
}

} // namespace

H264SpliceTrack::H264SpliceTrack(const SourceVideo& source)
    : stream_(source, CodingChanges::accepted),
      encoding_(h264::freezeEncodingFor(stream_.sps(), stream_.pps())) {}

VideoPlan H264SpliceTrack::plan(const VideoCut& cut) {
    const SpliceRules rules{
        .hiding = Hiding::brief,
        .isDisposable = [this](std::uint32_t index) { return !stream_.at(index).isReference; },
        .canResumeAt = [this](std::uint32_t index) { return stream_.at(index).idr; },
    };
    SamplePlan samples = planSplice(pictures(), stream_.video().track.timescale, cut, rules);
    StillCodings codings = codingsOf(samples, cut.freezes.size());
    return {.samples = std::move(samples), .stills = std::move(codings), .frozenPictures = {}};
}

OutputTrack H264SpliceTrack::build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                                   SpoolStore& spool) {
    return StillCoder(stream_).build(plan, editStart, clips, spool);
}

/// From the last still to the first, as stills are decoded with the parameter set of the run that follows;
/// stills after the last run with that of the last run.
StillCodings H264SpliceTrack::codingsOf(const SamplePlan& plan, std::size_t freezes) {
    const std::vector<PlannedSample>& samples = plan.samples;
    StillCodings codings;
    codings.freezes.resize(freezes);
    const auto last = std::ranges::find_if(samples.rbegin(), samples.rend(), &PlannedSample::startsRun);
    Head head = readHead(plan, *last);
    std::set<std::uint32_t> taken; // idr_pic_id of the pictures after the stills
    for (std::size_t i = samples.size(); i-- > 0;) {
        const PlannedSample& sample = samples[i];
        if (sample.startsRun) {
            head = readHead(plan, sample);
            taken = {head.idrPicId};
        }
        if (sample.kind == Kind::source || (i > 0 && atOneSite(samples[i - 1], sample))) {
            continue;
        }
        if (i > 0 && samples[i - 1].kind == Kind::source && pictures().sample(samples[i - 1].index).sync) {
            taken.insert(stream_.at(samples[i - 1].index).idrPicId);
        }
        StillCoding coding = idrCoding(head.sps, taken);
        coding.repeatsSps = true;
        taken = idrPicIdsOf(coding);
        codingOf(sample, codings) = std::move(coding);
    }
    return codings;
}

H264SpliceTrack::Head H264SpliceTrack::readHead(const SamplePlan& plan, const PlannedSample& sample) const {
    h264::PictureScanner scanner = stream_.scanner();
    const h264::PictureFacts facts = scanner.scan(stream_.video().sample(sample.index));
    const h264::Sps& sps = scanner.parameterSets().sps(facts.spsId);
    // Parameter sets of later samples are in force when decoding resumes, unless the head brings its own.
    const bool setsOutdated = stream_.parameterSetsInSamples() && !facts.hasInBandParameterSets;
    const bool isFirst = &*std::ranges::find(plan.samples, Kind::source, &PlannedSample::kind) == &sample;
    if (!takeTheSameStills(sps, stream_.sps()) || (setsOutdated && !isFirst)) {
        throw CannotPassThrough("its coding changes within the movie");
    }
    return {sps, facts.idrPicId};
}

} // namespace zelvra::passthrough
