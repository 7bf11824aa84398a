// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

namespace zelvra::hevc {

/// Giving the parameter sets of a freeze clip ids that the source does not use, so that both stand in one
/// sample entry. The clip has one set of each kind.

struct Identity {
    int vpsId = 0;
    int spsId = 0;
    int ppsId = 0;
};

/// One parameter set or slice segment of the clip under the new ids; other NAL units unchanged. IRAP slices
/// get no_output_of_prior_pics_flag = 0. `own` are the clip's sets as encoded. Throws BitstreamError;
/// unsupported where the clip has several sets of a kind.
bitstream::Bytes reidentify(bitstream::ByteView nal, const ParameterSets& own, const Identity& identity);

/// All NAL units of a sample; with parameter sets in the sample left out, as they are in the sample entry.
bitstream::Bytes reidentifySample(bitstream::ByteView sample, int nalLengthSize, const ParameterSets& own,
                                  const Identity& identity);

/// The clip's sequence parameter set with the source's demands on the decoded picture buffer (the greater of
/// both, should the clip need more) and at least the source's level, so that no decoder sets its buffers up
/// anew, or drops pictures not yet shown, at the splice (clause C.5.2.2).
bitstream::Bytes matchPictureBuffer(bitstream::ByteView ownSps, const Sps& source);

/// The clip's whole configuration record under the new ids, its sequence parameter set matched to the source.
HevcConfiguration reidentify(const HevcConfiguration& configuration, const Identity& identity,
                             const Sps& source);

} // namespace zelvra::hevc
