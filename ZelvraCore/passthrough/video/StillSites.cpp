// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/StillSites.h"

#include <algorithm>
#include <utility>

namespace zelvra::passthrough {

namespace {

using PictureType = StillSite::PictureType;
using Indexes = std::vector<std::uint32_t>;

/// Finds the sites of one movie; lives for one call. Each operation answers from the inputs and the answers
/// before it.
class SiteFinder {
public:
    SiteFinder(const SourcePictures& pictures, const VideoCut& cut, const TraitsOf& traitsOf)
        : pictures_(pictures), cut_(cut), traitsOf_(traitsOf) {}

    /// A stored source sample is shown, or is a reference of one that is.
    Indexes stored() const {
        const auto [head, last] = pictures_.decodedFor(cut_.firstRank, cut_.endRank);
        Indexes stored;
        for (std::uint32_t i = head; i <= last; ++i) {
            // Leading pictures refer to the group before, which is not stored.
            const bool leads = pictures_.presentationTime(i) < pictures_.presentationTime(head);
            if (isShown(i) || (!leads && traitsOf_(i).reference)) {
                stored.push_back(i);
            }
        }
        return stored;
    }

    /// The stills of a freeze come right after the last stored sample that is shown before it. Positions
    /// never decrease, so one walk over the stored samples in the order of presentation serves all freezes.
    std::vector<StillSite> freezes(const Indexes& stored) const {
        std::vector<std::pair<std::uint32_t, std::size_t>> byRank; // rank, number of samples up to this one
        byRank.reserve(stored.size());
        for (std::size_t i = 0; i < stored.size(); ++i) {
            byRank.emplace_back(pictures_.rankOf(stored[i]), i + 1);
        }
        std::ranges::sort(byRank);
        std::vector<StillSite> sites;
        std::size_t walked = 0;
        std::size_t before = 0;
        for (const VideoCut::Freeze& freeze : cut_.freezes) {
            for (; walked < byRank.size() && byRank[walked].first < freeze.position; ++walked) {
                before = std::max(before, byRank[walked].second);
            }
            sites.push_back(siteAt(stored, before, freeze.position));
        }
        return sites;
    }

    std::size_t hiddenRun(const Indexes& stored, const std::vector<StillSite>& freezes) const {
        const std::size_t end = freezes.empty() ? stored.size() : freezes.front().storedBefore;
        std::size_t run = 0;
        while (run < end && !isShown(stored[run])) {
            ++run;
        }
        return run;
    }

    StillSite leadIn(const Indexes& stored) const {
        StillSite site;
        site.head = stored.front();
        site.pictureType = traitsOf_(stored.front()).idr ? PictureType::idr : PictureType::recoveryPoint;
        return site;
    }

    /// The first picture of the range covers the last of the hidden ones. It comes after all that is shown
    /// before it, as a freeze there would.
    StillSite cover(const Indexes& stored) const {
        std::size_t before = 0;
        for (std::size_t i = 0; i < stored.size(); ++i) {
            if (pictures_.rankOf(stored[i]) < cut_.firstRank) {
                before = i + 1;
            }
        }
        return siteAt(stored, before, cut_.firstRank);
    }

    /// `nullopt` if no stored picture is shown after the range.
    std::optional<StillSite> leadOut(const Indexes& stored) const {
        const auto rank = [&](std::uint32_t index) { return pictures_.rankOf(index); };
        const std::uint32_t latest = std::ranges::max(stored, {}, rank);
        if (rank(latest) < cut_.endRank) {
            return std::nullopt;
        }
        StillSite site;
        site.storedBefore = stored.size();
        site.decodedBefore = stored.back();
        site.shownBefore = latest;
        return site;
    }

    /// Sync samples of open groups that a freeze interrupts.
    std::set<std::uint32_t> notSync(const Indexes& stored, const std::vector<StillSite>& freezes) const {
        std::set<std::uint32_t> found;
        for (const StillSite& site : freezes) {
            if (site.pictureType == PictureType::idr || !site.shownAfter) {
                continue;
            }
            found.insert(*site.shownAfter);
            // Decoded before the still, shown after it: walk back over what the reordering can span.
            for (std::uint32_t i = site.decodedBefore.value_or(0); i > 0; --i) {
                if (pictures_.sample(i).sync) {
                    if (pictures_.rankOf(i) >= pictures_.rankOf(*site.shownAfter)) {
                        found.insert(i);
                    }
                    break;
                }
            }
        }
        std::erase_if(found, [&](std::uint32_t index) {
            return !pictures_.sample(index).sync || !std::ranges::binary_search(stored, index) ||
                   traitsOf_(index).idr;
        });
        return found;
    }

private:
    bool isShown(std::uint32_t index) const {
        const std::uint32_t rank = pictures_.rankOf(index);
        return rank >= cut_.firstRank && rank < cut_.endRank;
    }

    /// After `before` stored samples, shown right before the picture of rank `position`.
    StillSite siteAt(const Indexes& stored, std::size_t before, std::uint32_t position) const {
        StillSite site;
        site.storedBefore = before;
        if (before > 0) {
            site.decodedBefore = stored[before - 1];
            site.shownBefore = pictures_.indexAt(position - 1);
        }
        if (position < pictures_.count()) {
            site.shownAfter = pictures_.indexAt(position);
        }
        const bool beforeIdr = position < cut_.endRank && traitsOf_(*site.shownAfter).idr;
        site.pictureType = beforeIdr     ? PictureType::idr
                           : before == 0 ? PictureType::recoveryPoint
                                         : PictureType::nonReference;
        if (site.pictureType != PictureType::nonReference) {
            site.head = site.shownAfter;
        }
        return site;
    }

    const SourcePictures& pictures_;
    const VideoCut& cut_;
    const TraitsOf& traitsOf_;
};

} // namespace

StillSites findStillSites(const SourcePictures& pictures, const VideoCut& cut, const TraitsOf& traitsOf) {
    const SiteFinder finder(pictures, cut, traitsOf);
    StillSites sites;
    sites.stored = finder.stored();
    sites.freezes = finder.freezes(sites.stored);
    sites.hiddenRun = finder.hiddenRun(sites.stored, sites.freezes);
    if (sites.hiddenRun > 0) {
        sites.leadIn = finder.leadIn(sites.stored);
        sites.cover = finder.cover(sites.stored);
    }
    sites.leadOut = finder.leadOut(sites.stored);
    sites.notSync = finder.notSync(sites.stored, sites.freezes);
    return sites;
}

} // namespace zelvra::passthrough
