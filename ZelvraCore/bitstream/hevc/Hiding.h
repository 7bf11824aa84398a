// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

#include <map>
#include <set>

namespace zelvra::hevc {

/// Hides pictures with the standard's own switch, pic_output_flag = 0. The switch needs a picture parameter
/// set with output_flag_present_flag. Therefore each set of the source gets a twin: a copy with that flag and
/// a free id. Slices of hidden pictures refer to the twin. The pictures are decoded but never output (ITU-T
/// H.265 clause C.5.2).

/// Id of the twin, by id of the picture parameter set.
using TwinIds = std::map<int, int>;

/// Chooses a free id for the twin of each id in `used`. Ids in `reserved` are not chosen. Throws
/// BitstreamError (unsupported) if the 64 possible ids do not suffice.
TwinIds chooseTwinIds(const std::set<int>& used, const std::set<int>& reserved);

/// The twin of a picture parameter set.
bitstream::Bytes twinOf(const Pps& pps, int twinId);

/// The twins of all known sets that have a twin id, in order of the sets' ids.
std::vector<bitstream::Bytes> twinsOf(const ParameterSets& sets, const TwinIds& ids);

/// A sample of a movie file with its picture hidden. `sets` are the parameter sets in force before it; those
/// in the sample are added to them. If the sample contains parameter sets, the twins follow the last of them.
/// The types of NAL units stay, with one exception: if `headOfRun`, a CRA or BLA picture becomes BLA without
/// leading pictures (the caller leaves those out). Throws BitstreamError.
bitstream::Bytes hideSample(bitstream::ByteView sample, int nalLengthSize, ParameterSets& sets,
                            const TwinIds& ids, bool headOfRun);

/// A sample whose picture is shown in a stream that has twins. `nullopt` means unchanged. If the sample
/// contains parameter sets, the twins follow them, because a decoder drops the picture parameter sets of a
/// sequence parameter set that is sent again. `headOfRun` has the same meaning as above, for a head that is
/// shown.
std::optional<bitstream::Bytes> completeSample(bitstream::ByteView sample, int nalLengthSize,
                                               ParameterSets& sets, const TwinIds& ids, bool headOfRun);

} // namespace zelvra::hevc
