// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SplicePlan.h"
#include "ZelvraCore/passthrough/video/StillSites.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace zelvra::test {

using namespace passthrough;

/// A coded stream that is written as tokens in decode order, one for each picture: its type (I = IDR, i =
/// intra sync of an open group, P = reference, B = reference, b = none) and its rank. Decode times are even,
/// the reordering delay is as small as possible.
class TokenStream {
public:
    explicit TokenStream(const std::string& tokens, std::int64_t frame = 512) {
        std::istringstream text(tokens);
        std::vector<std::int64_t> ranks;
        for (std::string token; text >> token;) {
            types_.push_back(token[0]);
            ranks.push_back(std::stoll(token.substr(1)));
        }
        std::int64_t delay = 0;
        for (std::size_t i = 0; i < ranks.size(); ++i) {
            delay = std::max(delay, static_cast<std::int64_t>(i) - ranks[i]);
        }
        for (std::size_t i = 0; i < ranks.size(); ++i) {
            isobmff::Sample sample;
            sample.decodeTime = static_cast<std::int64_t>(i) * frame;
            sample.compositionOffset =
                static_cast<std::int32_t>((ranks[i] + delay) * frame - sample.decodeTime);
            sample.duration = static_cast<std::uint32_t>(frame);
            sample.sync = types_[i] == 'I' || types_[i] == 'i';
            samples.push_back(sample);
        }
        offset = delay * frame;
    }

    TraitsOf traits() const {
        return [this](std::uint32_t i) { return PictureTraits{types_[i] == 'I', types_[i] != 'b'}; };
    }
    SpliceRules rules(Hiding hiding) const {
        return {hiding, [this](std::uint32_t i) { return types_[i] == 'b'; },
                [this, hiding](std::uint32_t i) { return hiding == Hiding::neverShown || types_[i] == 'I'; }};
    }

    std::vector<isobmff::Sample> samples;
    std::int64_t offset = 0; ///< media time of the first shown picture

private:
    std::string types_;
};

/// Groups of twelve pictures, one a frame, in pyramids of four; `open` lets the group's intra picture lead
/// them.
inline std::string groups(int count, bool open) {
    std::ostringstream text;
    for (int group = 0; group < count; ++group) {
        const int first = group * 12;
        if (group == 0 || !open) {
            text << "I" << first << ' ';
        }
        for (int anchor = first + 4; anchor <= first + 12; anchor += 4) {
            const bool last = anchor == first + 12;
            if (last && !open) {
                text << "P" << anchor - 1 << " b" << anchor - 3 << " b" << anchor - 2 << ' ';
                continue;
            }
            text << (last ? "i" : "P") << anchor << " B" << anchor - 2 << " b" << anchor - 3 << " b"
                 << anchor - 1 << ' ';
        }
    }
    return text.str();
}

} // namespace zelvra::test
