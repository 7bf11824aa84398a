// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/isobmff/Movie.h"

#include <algorithm>

namespace zelvra::isobmff {

bool Track::isEncrypted() const {
    return std::any_of(sampleEntries.begin(), sampleEntries.end(),
                       [](const SampleEntry& entry) { return entry.encrypted; });
}

const Track* Movie::firstTrack(FourCharCode handler) const {
    const Track* first = nullptr;
    for (const Track& track : tracks) {
        if (track.handler != handler) {
            continue;
        }
        if (track.enabled) {
            return &track;
        }
        first = first != nullptr ? first : &track;
    }
    return first;
}

} // namespace zelvra::isobmff
