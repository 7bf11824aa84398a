// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

#include <map>
#include <set>

namespace zelvra::hevc {

/// Hiding pictures by the standard's own means: pic_output_flag = 0, which needs a picture parameter set that
/// has output_flag_present_flag. For each set of the source a twin with that flag and a free id is made;
/// slices of hidden pictures name the twin. The pictures are decoded and never given out (ITU-T H.265 clause
/// C.5.2).

/// Which id the twin of each picture parameter set has.
using TwinIds = std::map<int, int>;

/// Gives a free id to the twin of each id in `used`; ids in `reserved` stay free too. Throws BitstreamError
/// (unsupported) where 64 ids do not suffice.
TwinIds chooseTwinIds(const std::set<int>& used, const std::set<int>& reserved);

/// The twin of a picture parameter set.
bitstream::Bytes twinOf(const Pps& pps, int twinId);

/// The twins of all sets known that have a twin id, in order of the sets' ids.
std::vector<bitstream::Bytes> twinsOf(const ParameterSets& sets, const TwinIds& ids);

/// A sample of a movie file whose picture is hidden. `sets` are those in force before it and take what it
/// carries. Where it carries parameter sets, the twins follow the last of them. The types of NAL units stay,
/// except that a CRA or BLA picture becomes BLA without leading pictures where `headOfRun` (the caller leaves
/// them out). Throws BitstreamError.
bitstream::Bytes hideSample(bitstream::ByteView sample, int nalLengthSize, ParameterSets& sets,
                            const TwinIds& ids, bool headOfRun);

/// A sample whose picture is shown in a stream that has twins: unchanged (as an empty optional) unless it
/// carries parameter sets; then the twins follow them, because a decoder forgets the picture parameter sets
/// of a sequence parameter set that arrives again. With `headOfRun` as above, where a run's head is shown.
std::optional<bitstream::Bytes> completeSample(bitstream::ByteView sample, int nalLengthSize,
                                               ParameterSets& sets, const TwinIds& ids, bool headOfRun);

} // namespace zelvra::hevc
