// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/hevc/ShortTermRefs.h"

#include "ZelvraCore/bitstream/BitstreamError.h"

namespace zelvra::hevc {

using bitstream::BitReader;
using bitstream::BitstreamError;

namespace {

constexpr std::uint32_t maxRefs = 16;
constexpr std::uint32_t maxDistance = 0x7FFF;

struct Prediction {
    bool used = false;
    bool kept = false; ///< use_delta_flag
};

/// The candidates for a predicted set: the entries of the set that it is predicted from and, last, the
/// picture of that set, which is at distance 0. Each is shifted by `delta`.
class Predictor {
public:
    Predictor(const ShortTermRefs& from, std::int32_t delta, std::vector<Prediction> predictions)
        : from_(from.entries), delta_(delta), predictions_(std::move(predictions)) {
        for (std::size_t i = 0; i < from_.size(); ++i) {
            (from_[i].deltaPoc < 0 ? before_ : after_).push_back(i);
        }
    }

    /// Nearest first: the pictures before the current one, then those after it.
    ShortTermRefs predict() {
        takeBackwards(after_, -1);
        take(from_.size(), -1);
        takeForwards(before_, -1);
        takeBackwards(before_, 1);
        take(from_.size(), 1);
        takeForwards(after_, 1);
        return std::move(result_);
    }

private:
    void takeForwards(const std::vector<std::size_t>& indices, int sign) {
        for (const std::size_t index : indices) {
            take(index, sign);
        }
    }

    void takeBackwards(const std::vector<std::size_t>& indices, int sign) {
        takeForwards({indices.rbegin(), indices.rend()}, sign);
    }

    void take(std::size_t index, int sign) {
        const std::int32_t distance = (index < from_.size() ? from_[index].deltaPoc : 0) + delta_;
        if (predictions_[index].kept && distance * sign > 0) {
            result_.entries.push_back({distance, predictions_[index].used});
        }
    }

    std::vector<ShortTermRefs::Entry> from_;
    std::int32_t delta_;
    std::vector<Prediction> predictions_;
    std::vector<std::size_t> before_;
    std::vector<std::size_t> after_;
    ShortTermRefs result_;
};

ShortTermRefs parsePredicted(BitReader& reader, const std::vector<ShortTermRefs>& known, bool last) {
    const std::uint32_t back = last ? reader.ue() : 0;
    if (back >= known.size()) {
        throw BitstreamError::corrupt("a set of references is predicted from one that is not there");
    }
    const ShortTermRefs& from = known[known.size() - 1 - back];
    const bool negative = reader.flag();
    const auto distance = static_cast<std::int32_t>(reader.ue(maxDistance) + 1);
    std::vector<Prediction> predictions(from.entries.size() + 1);
    for (Prediction& prediction : predictions) {
        prediction.used = reader.flag();
        prediction.kept = prediction.used || reader.flag();
    }
    return Predictor(from, negative ? -distance : distance, std::move(predictions)).predict();
}

ShortTermRefs parseExplicit(BitReader& reader) {
    const std::uint32_t before = reader.ue(maxRefs);
    const std::uint32_t after = reader.ue(maxRefs);
    ShortTermRefs refs;
    const auto parseHalf = [&](std::uint32_t count, std::int32_t sign) {
        std::int32_t distance = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            distance += sign * static_cast<std::int32_t>(reader.ue(maxDistance) + 1);
            refs.entries.push_back({distance, reader.flag()});
        }
    };
    parseHalf(before, -1);
    parseHalf(after, 1);
    return refs;
}

} // namespace

ShortTermRefs parseShortTermRefs(BitReader& reader, const std::vector<ShortTermRefs>& known, bool last) {
    const bool predicted = !known.empty() && reader.flag();
    ShortTermRefs refs = predicted ? parsePredicted(reader, known, last) : parseExplicit(reader);
    if (refs.entries.size() > maxRefs) {
        throw BitstreamError::corrupt("a picture of the video has too many references");
    }
    return refs;
}

} // namespace zelvra::hevc
