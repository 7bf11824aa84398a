// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"
#include "ZelvraCore/bitstream/h264/Pps.h"
#include "ZelvraCore/bitstream/h264/Sps.h"

#include <map>

namespace zelvra::h264 {

/// The parameter sets known at a point of a stream, by id. A newer set replaces an older one of the same id.
class ParameterSets {
public:
    ParameterSets() = default;
    explicit ParameterSets(const AvcConfiguration& configuration);

    /// Adds a sequence or picture parameter set; ignores NAL units of other types. Returns whether it was a
    /// parameter set. Throws BitstreamError.
    bool add(bitstream::ByteView nal);

    /// Throw BitstreamError (corrupt) if there is no set of that id.
    const Sps& sps(int id) const;
    const Pps& pps(int id) const;
    /// The sequence parameter set that a picture parameter set refers to.
    const Sps& spsOfPps(int ppsId) const { return sps(pps(ppsId).spsId); }

    const std::map<int, Sps>& allSps() const { return sps_; }
    const std::map<int, Pps>& allPps() const { return pps_; }

private:
    std::map<int, Sps> sps_;
    std::map<int, Pps> pps_;
};

} // namespace zelvra::h264
