// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

namespace zelvra::hevc {

/// Gives the parameter sets of a freeze clip ids that the source does not use, so that one sample entry can
/// contain both. The clip has one set of each kind.

struct Identity {
    int vpsId = 0;
    int spsId = 0;
    int ppsId = 0;
};

/// One parameter set or slice segment of the clip with the new ids; other NAL units unchanged. IRAP slices
/// get no_output_of_prior_pics_flag = 0. `own` are the clip's sets as encoded. Throws BitstreamError;
/// unsupported if the clip has several sets of a kind.
bitstream::Bytes reidentify(bitstream::ByteView nal, const ParameterSets& own, const Identity& identity);

/// All NAL units of a sample with the new ids. Parameter sets are left out, as they are in the sample entry.
bitstream::Bytes reidentifySample(bitstream::ByteView sample, int nalLengthSize, const ParameterSets& own,
                                  const Identity& identity);

/// The clip's sequence parameter set with the source's requirements on the decoded picture buffer (or the
/// clip's, if greater) and at least the source's level. Otherwise decoders would set their buffers up anew at
/// the splice, or drop pictures not yet shown (clause C.5.2.2).
bitstream::Bytes matchPictureBuffer(bitstream::ByteView ownSps, const Sps& source);

/// The clip's whole configuration record with the new ids. Its sequence parameter set is matched to the
/// source.
HevcConfiguration reidentify(const HevcConfiguration& configuration, const Identity& identity,
                             const Sps& source);

} // namespace zelvra::hevc
