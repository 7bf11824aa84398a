// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillTrack.h"

#include "ZelvraCore/bitstream/h264/FreezeFit.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/passthrough/video/StillCoder.h"
#include "ZelvraCore/passthrough/video/StillPlan.h"

#include <algorithm>
#include <utility>

namespace zelvra::passthrough {

namespace {

using PictureType = StillSite::PictureType;

std::uint32_t modulo(std::int64_t value, int bits) {
    return static_cast<std::uint32_t>(value & ((std::int64_t{1} << bits) - 1));
}

/// Decides how the stills of one movie are coded, from the headers of the pictures around them; lives for one
/// call. Called in the order of the stream, since stills must differ from those of the site before.
class SiteCoding {
public:
    explicit SiteCoding(SourceStream<H264Codec>& stream) : stream_(stream) {}

    StillCoding at(const StillSite& site) {
        if (site.pictureType == PictureType::idr) {
            return idrStills(site);
        }
        StillCoding coding{.sps = stream_.sps(), .headers = {}};
        if (site.pictureType == PictureType::recoveryPoint) {
            coding.headers = recoveryHeaders(site);
        } else {
            coding.headers = {nonReferenceHeader(site)};
        }
        return coding;
    }

private:
    /// Unlike the source's pictures on both sides, and the stills of the site before.
    StillCoding idrStills(const StillSite& site) {
        std::set<std::uint32_t> taken = lastIdrPicIds_;
        taken.insert(stream_.at(*site.head).idrPicId);
        if (site.decodedBefore) {
            taken.insert(stream_.at(*site.decodedBefore).idrPicId);
        }
        StillCoding coding = idrCoding(stream_.sps(), taken);
        lastIdrPicIds_ = idrPicIdsOf(coding);
        return coding;
    }

    /// A stream that starts at a non-IDR intra picture must not get an IDR picture before it: its frame_num
    /// and order counts continue those of pictures that are not stored. They stay valid after an intra
    /// reference picture that has the numbers right before. The stills after that one are no references.
    std::vector<h264::StillHeader> recoveryHeaders(const StillSite& site) {
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

    /// A non-reference picture right after the picture that is shown before it, in output order too.
    h264::StillHeader nonReferenceHeader(const StillSite& site) {
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
        // If the source counts in steps of 1 no number is left between; the number before serves as well.
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

    SourceStream<H264Codec>& stream_;
    bool recoveryStarted_ = false;          ///< a site before has the picture that the stream starts with
    std::set<std::uint32_t> lastIdrPicIds_; ///< of our own IDR pictures, at the site before
};

StillCodings codingsOf(const StillSites& sites, SourceStream<H264Codec>& stream) {
    SiteCoding coding(stream);
    StillCodings codings;
    if (sites.leadIn) {
        codings.leadIn = coding.at(*sites.leadIn);
        codings.cover = coding.at(*sites.cover);
    }
    for (const StillSite& site : sites.freezes) {
        codings.freezes.push_back(coding.at(site));
    }
    if (sites.leadOut) {
        codings.leadOut = coding.at(*sites.leadOut);
    }
    return codings;
}

} // namespace

StillTrack::StillTrack(const SourceVideo& source)
    : stream_(source, CodingChanges::refused),
      encoding_(h264::freezeEncodingFor(stream_.sps(), stream_.pps())) {}

VideoPlan StillTrack::plan(const VideoCut& cut) {
    StillPlan stills =
        planStills(pictures(), stream_.video().track.timescale, cut, [this](std::uint32_t index) {
            const h264::PictureFacts facts = stream_.at(index);
            return PictureTraits{facts.idr, facts.isReference};
        });
    return {.samples = std::move(stills.samples),
            .stills = codingsOf(stills.sites, stream_),
            .frozenPictures = {}};
}

OutputTrack StillTrack::build(const VideoPlan& plan, std::int64_t editStart, const Clips& clips,
                              SpoolStore& spool) {
    return StillCoder(stream_).build(plan, editStart, clips, spool);
}

} // namespace zelvra::passthrough
