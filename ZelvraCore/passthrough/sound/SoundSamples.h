// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/file/OutputMovie.h"
#include "ZelvraCore/passthrough/sound/SoundPackets.h"
#include "ZelvraCore/passthrough/sound/SoundPlan.h"

#include <cstdint>
#include <vector>

namespace zelvra::passthrough {

/// Silent packets that are stored already.
struct StoredSilence {
    StoredBytes bytes;
    std::uint32_t packets = 1; ///< that `bytes` holds, all of one size
};

/// The samples of a planned sound track: where the bytes of each are, and when it is decoded. Source packets
/// are those of `packets` in the store `sourceStore`. Pure.
std::vector<OutputSample> soundSamples(const SoundPlan& plan, const SoundPackets& packets, Store sourceStore,
                                       const StoredSilence& silence);

} // namespace zelvra::passthrough
