// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/StillQuality.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>

namespace zelvra::media {

namespace {

/// Where searches begin, and how many dB a step of the quantiser costs, on usual pictures of cameras. The
/// least loss that was seen on any saves a trial that is bound to fail.
constexpr int usualQuantiser = 24;
constexpr double usualLossOfStep = 0.7;
constexpr double leastLossOfStep = 0.3;

/// Remembers what was tried.
class Trials {
public:
    explicit Trials(const std::function<StillTrial(int)>& trial) : trial_(trial) {}

    const StillTrial& of(int quantiser) {
        const auto known = results_.find(quantiser);
        return known != results_.end() ? known->second
                                       : results_.emplace(quantiser, trial_(quantiser)).first->second;
    }

private:
    const std::function<StillTrial(int)>& trial_;
    std::map<int, StillTrial> results_;
};

int greatestGoodQuantiser(const StillGoal& goal, Trials& trials) {
    int good = goal.leastQuantiser; // used, good or not, if nothing above it is good
    int bad = goal.greatestQuantiser + 1;
    int next = std::clamp(usualQuantiser, good, goal.greatestQuantiser);
    while (bad - good > 1) {
        next = std::clamp(next, good + 1, bad - 1);
        const StillTrial& trial = trials.of(next);
        const double surplus = std::clamp(trial.lumaPsnr - goal.leastLumaPsnr, -20.0, 20.0);
        (goal.isGood(trial) ? good : bad) = next;
        if (goal.isGood(trial) && surplus < leastLossOfStep) {
            return next;
        }
        next += static_cast<int>(std::floor(surplus / usualLossOfStep));
    }
    return good;
}

int leastSmallQuantiser(const StillGoal& goal, int from, Trials& trials) {
    int large = from - 1;
    int small = goal.greatestQuantiser;
    while (small - large > 1) {
        const int middle = large + (small - large) / 2;
        (trials.of(middle).bytes <= *goal.mostBytes ? small : large) = middle;
    }
    return small;
}

} // namespace

int chooseQuantiser(const StillGoal& goal, const std::function<StillTrial(int)>& trial) {
    Trials trials(trial);
    const int good = greatestGoodQuantiser(goal, trials);
    if (!goal.mostBytes || trials.of(good).bytes <= *goal.mostBytes) {
        return good;
    }
    return leastSmallQuantiser(goal, good + 1, trials);
}

StillComparison::StillComparison(const StillPicture& source, std::shared_ptr<const DecodedPicture> given,
                                 const CodedPictureFormat& format)
    : given_(std::move(given)),
      format_(format),
      luma_(regionOf(source, {})),
      chroma_(regionOf(source, subsamplingOf(format.chroma))) {}

StillComparison::Region StillComparison::regionOf(const StillPicture& source,
                                                  ChromaSubsampling shared) const {
    Region region;
    region.left = format_.frame.cropLeft / shared.across;
    region.top = format_.frame.cropTop / shared.down;
    region.width = format_.visibleWidth() / shared.across;
    region.height = format_.visibleHeight() / shared.down;
    region.counts.assign(static_cast<std::size_t>(region.width) * static_cast<std::size_t>(region.height), 1);
    const auto sourceWidth = static_cast<std::size_t>(source.picture->width);
    for (std::size_t i = 0; i < source.drawn.size(); ++i) {
        const int x = static_cast<int>(i % sourceWidth) / shared.across;
        const int y = static_cast<int>(i / sourceWidth) / shared.down;
        if (source.drawn[i] != 0 && x < region.width && y < region.height) {
            region.counts[static_cast<std::size_t>(y) * static_cast<std::size_t>(region.width) +
                          static_cast<std::size_t>(x)] = 0;
        }
    }
    return region;
}

template <class Sample>
StillComparison::Difference StillComparison::ofPlane(const StillEncoder::PlaneView& coded,
                                                     const DecodedPicture::Plane& given,
                                                     const Region& region) const {
    Difference difference;
    const std::uint8_t* counts = region.counts.data();
    for (int y = region.top; y < region.top + region.height; ++y) {
        const std::uint8_t* shown = coded.origin + y * coded.stepDown + region.left * coded.stepAcross;
        const std::uint8_t* wanted = given.bytes.data() + static_cast<std::size_t>(y) * given.stride +
                                     static_cast<std::size_t>(region.left) * sizeof(Sample);
        std::int64_t squares = 0;
        std::int64_t sum = 0;
        std::int64_t samples = 0;
        for (int x = 0; x < region.width; ++x) {
            Sample a = 0;
            Sample b = 0;
            std::memcpy(&a, shown, sizeof a);
            std::memcpy(&b, wanted, sizeof b);
            const int error = *counts != 0 ? a - b : 0;
            squares += static_cast<std::int64_t>(error) * error;
            sum += error;
            samples += *counts;
            shown += coded.stepAcross;
            wanted += sizeof(Sample);
            ++counts;
        }
        difference.squares += static_cast<double>(squares);
        difference.sum += static_cast<double>(sum);
        difference.samples += static_cast<double>(samples);
    }
    return difference;
}

StillComparison::Difference StillComparison::ofPlane(const StillEncoder::CodedPicture& coded,
                                                     std::size_t index) const {
    const Region& region = index == 0 ? luma_ : chroma_;
    const StillEncoder::PlaneView& shown = coded.decoded.at(index);
    const DecodedPicture::Plane& wanted = given_->planes.at(index);
    return format_.bitDepth > 8 ? ofPlane<std::uint16_t>(shown, wanted, region)
                                : ofPlane<std::uint8_t>(shown, wanted, region);
}

StillTrial StillComparison::of(const StillEncoder::CodedPicture& coded) const {
    const double codeUnit = 1 << (format_.bitDepth - 8);
    StillTrial result;
    result.bytes = coded.byteCount();
    result.lumaPsnr = std::numeric_limits<double>::infinity();
    const std::size_t planes = format_.chroma == ChromaFormat::monochrome ? 1 : 3;
    for (std::size_t i = 0; i < planes; ++i) {
        const Difference difference = ofPlane(coded, i);
        if (i == 0 && difference.squares > 0) {
            const double peak = 255 * codeUnit;
            result.lumaPsnr = 10 * std::log10(peak * peak * difference.samples / difference.squares);
        }
        if (difference.samples > 0) {
            const double mean = std::abs(difference.sum) / difference.samples / codeUnit;
            result.meanDifference = std::max(result.meanDifference, mean);
        }
    }
    return result;
}

} // namespace zelvra::media
