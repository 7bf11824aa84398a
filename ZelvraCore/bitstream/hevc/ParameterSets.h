// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/HevcConfiguration.h"
#include "ZelvraCore/bitstream/hevc/Pps.h"
#include "ZelvraCore/bitstream/hevc/Sps.h"

#include <map>

namespace zelvra::hevc {

/// The parameter sets known at a point of a stream, by id. A newer set replaces an older one of the same id.
/// Sets of layers above the base layer are unsupported.
class ParameterSets {
public:
    ParameterSets() = default;
    explicit ParameterSets(const HevcConfiguration& configuration);

    /// Adds a video, sequence or picture parameter set; ignores NAL units of other types. Returns whether it
    /// was a parameter set. Throws BitstreamError.
    bool add(bitstream::ByteView nal);

    /// Throw BitstreamError (corrupt) if there is no set of that id.
    const Sps& sps(int id) const;
    const Pps& pps(int id) const;
    const Sps& spsOfPps(int ppsId) const { return sps(pps(ppsId).spsId); }

    const std::map<int, Vps>& allVps() const { return vps_; }
    const std::map<int, Sps>& allSps() const { return sps_; }
    const std::map<int, Pps>& allPps() const { return pps_; }

private:
    std::map<int, Vps> vps_;
    std::map<int, Sps> sps_;
    std::map<int, Pps> pps_;
};

} // namespace zelvra::hevc
