// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillTrack.h"

#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"

#include <algorithm>
#include <utility>

namespace zelvra::passthrough {

namespace {

using Coding = StillSite::Coding;

std::uint32_t modulo(std::int64_t value, int bits) {
    return static_cast<std::uint32_t>(value & ((std::int64_t{1} << bits) - 1));
}

} // namespace

StillTrack::StillTrack(const SourceVideo& source)
    : stream_(source, CodingChanges::refused),
      encoding_(h264::freezeEncodingFor(stream_.sps(), stream_.pps())) {}

SamplePlan& StillTrack::plan(const VideoCut& cut) {
    plan_ = planStills(pictures(), stream_.video().track.timescale, cut, [this](std::uint32_t index) {
        const h264::PictureFacts facts = stream_.at(index);
        return PictureTraits{facts.idr, facts.isReference};
    });
    places_ = placeAll();
    return plan_.samples;
}

OutputTrack StillTrack::build(const Clips& clips, SpoolStore& spool) {
    return StillCoder(stream_).build(plan_.samples, places_, clips, spool);
}

/// In the order of the stream, which the numbers of IDR pictures depend on.
StillPlaces StillTrack::placeAll() {
    StillPlaces places;
    if (plan_.leadIn) {
        places.leadIn = placeFor(*plan_.leadIn);
        places.cover = placeFor(*plan_.cover);
    }
    for (const StillSite& site : plan_.freezes) {
        places.freezes.push_back(placeFor(site));
    }
    if (plan_.leadOut) {
        places.leadOut = placeFor(*plan_.leadOut);
    }
    return places;
}

StillPlace StillTrack::placeFor(const StillSite& site) {
    if (site.coding == Coding::idr) {
        return idrPlaceFor(site);
    }
    StillPlace place{.sps = stream_.sps(), .headers = {}};
    if (site.coding == Coding::recovery) {
        place.headers = recoveryHeaders(site);
    } else {
        place.headers = {insertedHeader(site)};
    }
    return place;
}

/// Unlike the source's pictures on both sides, and the stills of the place before.
StillPlace StillTrack::idrPlaceFor(const StillSite& site) {
    std::set<std::uint32_t> taken = lastIdrPicIds_;
    taken.insert(stream_.at(*site.head).idrPicId);
    if (site.decodedBefore) {
        taken.insert(stream_.at(*site.decodedBefore).idrPicId);
    }
    StillPlace place = idrPlace(stream_.sps(), taken);
    lastIdrPicIds_ = idrPicIdsOf(place);
    return place;
}

/// A stream that starts at an intra picture which is not IDR must not get an IDR picture in front: its
/// frame_num and order counts go on from pictures that are not there. An intra reference picture that would
/// have come right before keeps them whole; the stills behind it are no references.
std::vector<h264::StillHeader> StillTrack::recoveryHeaders(const StillSite& site) {
    const h264::Sps& sps = stream_.sps();
    if (sps.pocType == 1) {
        throw CannotPassThrough("its picture order leaves no room in front of the range");
    }
    const h264::PictureFacts head = stream_.at(*site.head);
    h264::StillHeader first;
    first.nalRefIdc = 1;
    first.frameNum = modulo(std::int64_t{head.frameNum} - 1, sps.frameNumBits);
    first.pocLsb = modulo(std::int64_t{head.pocLsb} - 2, sps.pocLsbBits);
    h264::StillHeader other;
    other.frameNum = head.frameNum;
    other.pocLsb = modulo(std::int64_t{head.pocLsb} - 1, sps.pocLsbBits);
    return std::exchange(recoveryStarted_, true) ? std::vector{other} : std::vector{first, other};
}

/// A non-reference picture right behind the picture shown before it, in output order too.
h264::StillHeader StillTrack::insertedHeader(const StillSite& site) {
    const h264::Sps& sps = stream_.sps();
    std::uint32_t from = std::min(*site.decodedBefore, *site.shownBefore);
    from = site.shownAfter ? std::min(from, *site.shownAfter) : from;
    const h264::PictureFacts before = stream_.at(*site.decodedBefore, from);
    const h264::PictureFacts shownBefore = stream_.at(*site.shownBefore, from);
    std::optional<h264::PictureFacts> shownAfter;
    if (site.shownAfter) {
        shownAfter = stream_.at(*site.shownAfter, from);
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
        modulo(std::int64_t{before.orderAfter.previousReferenceFrameNum()} + 1, sps.frameNumBits);
    auto order = [&] {
        h264::PictureOrder next = before.orderAfter;
        return next.next(sps, header.asSlice());
    };
    if (sps.pocType == 0) {
        header.pocLsb = modulo(wanted, sps.pocLsbBits);
    } else if (sps.pocType == 1 && !sps.deltaPicOrderAlwaysZero) {
        header.deltaPoc[0] = static_cast<std::int32_t>(wanted - order());
    } else if (sps.pocType == 2) {
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

} // namespace zelvra::passthrough
