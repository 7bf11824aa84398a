// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"
#include "ZelvraCore/bitstream/h264/Pps.h"
#include "ZelvraCore/bitstream/h264/Sps.h"

#include <map>

namespace zelvra::h264 {

/// The parameter sets known at a point of a stream, by id: the newest of an id counts.
class ParameterSets {
public:
    ParameterSets() = default;
    explicit ParameterSets(const AvcConfiguration& configuration);

    /// Takes a sequence or picture parameter set; NAL units of other types are passed over. Throws
    /// BitstreamError. Returns whether it was a parameter set.
    bool add(bitstream::ByteView nal);

    /// Throw BitstreamError (corrupt) where there is none of that id.
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
