// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/still/StillEncoder.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zelvra::media {

/// How good a frozen picture must be, and the search for the coarsest quantiser that is good enough. Good
/// first, then small: a freeze stands still beside moving pictures, so that every loss would show as a jump.

/// What came of one quantiser.
struct StillTrial {
    double lumaPsnr = 0;       ///< dB, against the decoded source; infinite if exact
    double meanDifference = 0; ///< of the plane whose mean is off most, in code values of 8 bits
    std::uint64_t bytes = 0;
};

struct StillGoal {
    double leastLumaPsnr = 42;
    double mostMeanDifference = 0.49; ///< more shows as a change of tint
    int leastQuantiser = 0;
    int greatestQuantiser = 51;
    std::optional<std::uint64_t> mostBytes;

    bool isGood(const StillTrial& trial) const {
        return trial.lumaPsnr >= leastLumaPsnr && trial.meanDifference <= mostMeanDifference;
    }
};

/// The greatest quantiser that is good enough, the least if none is. If its picture has too many bytes, the
/// least quantiser whose picture has not, the greatest if all have. Quality and size fall with the quantiser.
int chooseQuantiser(const StillGoal& goal, const std::function<StillTrial(int)>& trial);

/// Compares what a decoder will show with the source, within the visible frame and where nothing was drawn.
class StillComparison {
public:
    /// `given` is `source` as the encoder takes it, in `format`.
    StillComparison(const StillPicture& source, std::shared_ptr<const DecodedPicture> given,
                    const CodedPictureFormat& format);

    StillTrial of(const StillEncoder::CodedPicture& coded) const;

private:
    /// What counts in a plane: its visible part, one byte for each sample, not zero where it counts.
    struct Region {
        int left = 0;
        int top = 0;
        int width = 0;
        int height = 0;
        std::vector<std::uint8_t> counts;
    };
    struct Difference {
        double squares = 0;
        double sum = 0;
        double samples = 0;
    };

    Region regionOf(const StillPicture& source, ChromaSubsampling shared) const;
    Difference ofPlane(const StillEncoder::CodedPicture& coded, std::size_t index) const;
    template <class Sample>
    Difference ofPlane(const StillEncoder::PlaneView& coded, const DecodedPicture::Plane& given,
                       const Region& region) const;

    std::shared_ptr<const DecodedPicture> given_;
    CodedPictureFormat format_;
    Region luma_;
    Region chroma_;
};

} // namespace zelvra::media
