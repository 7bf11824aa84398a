// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourceVideo.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace zelvra::passthrough {

/// Facts about a source's pictures, read from their headers only when they are needed. Facts are relative to
/// the sync sample at which a scan starts (order counts, periods), so only facts of one scan can be compared.
/// Only the latest scan is kept: calls are expected in the order of the movie. `Scanner` is
/// h264::PictureScanner or hevc::PictureScanner.
template <class Scanner, class Facts>
class PictureWindow {
public:
    using MakeScanner = std::function<Scanner()>;
    using Observe = std::function<void(const Scanner&, const Facts&)>;

    /// `observe` is called for every picture that is scanned, for some more than once.
    PictureWindow(const SourceVideo& source, MakeScanner makeScanner, Observe observe)
        : source_(source), makeScanner_(std::move(makeScanner)), observe_(std::move(observe)) {}

    /// Facts of the sample `index` (decode order), scanned from the sync sample at or before `from`, which is
    /// not greater. Throws BitstreamError, MediaError.
    Facts at(std::uint32_t index, std::uint32_t from) {
        const std::uint32_t start = syncAtOrBefore(from);
        if (!scanner_ || start != start_) {
            scanner_.emplace(makeScanner_());
            facts_.clear();
            start_ = start;
        }
        while (facts_.size() <= index - start) {
            const auto next = start + static_cast<std::uint32_t>(facts_.size());
            facts_.push_back(scanner_->scan(source_.sample(next)));
            observe_(*scanner_, facts_.back());
        }
        return facts_[index - start];
    }

    /// Facts that need no comparison with another picture's.
    Facts at(std::uint32_t index) { return at(index, index); }

private:
    std::uint32_t syncAtOrBefore(std::uint32_t index) const {
        while (index > 0 && !source_.track.samples[index].sync) {
            --index;
        }
        return index;
    }

    const SourceVideo& source_;
    MakeScanner makeScanner_;
    Observe observe_;
    std::optional<Scanner> scanner_;
    std::uint32_t start_ = 0;
    std::vector<Facts> facts_;
};

} // namespace zelvra::passthrough
