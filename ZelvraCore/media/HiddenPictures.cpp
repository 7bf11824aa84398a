// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/HiddenPictures.h"

#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/hevc/SliceHeader.h"
#include "ZelvraCore/records/MediaError.h"

#include <algorithm>

namespace zelvra::media {

namespace {

/// Parameter sets and messages before a picture's first slice, and the slice's header.
constexpr std::uint64_t mostBytesBeforeSliceData = 16384;

/// The first slice segment; it may be cut short by the end of `sample`. Empty if there is none.
bitstream::ByteView firstSlice(bitstream::ByteView sample, int nalLengthSize) {
    bitstream::NalUnitWalk walk(sample, nalLengthSize);
    while (const std::optional<bitstream::ByteView> nal = walk.next()) {
        if (nal->size() > hevc::nalHeaderSize && hevc::isSlice(hevc::nalType(*nal))) {
            return *nal;
        }
    }
    return {};
}

} // namespace

HiddenPictures::HiddenPictures(const files::ByteSource& bytes, const isobmff::Track& track) : bytes_(bytes) {
    if (track.sampleEntries.empty() || track.isEncrypted()) {
        return;
    }
    const FourCharCode type = track.sampleEntries.front().type;
    if (type != fourCharCode("hvc1") && type != fourCharCode("hev1")) {
        return;
    }
    try {
        readConfiguration(track);
    } catch (const MediaError&) {
        sets_.reset(); // decoding the track will report what is wrong with it
    }
}

void HiddenPictures::readConfiguration(const isobmff::Track& track) {
    const auto content = bitstream::findChildBox(track.sampleEntries.front().box, "hvcC");
    if (content) {
        const auto configuration = hevc::HevcConfiguration::parse(*content);
        nalLengthSize_ = configuration.nalLengthSize();
        sets_.emplace(configuration);
    }
}

bool HiddenPictures::hides(const isobmff::Sample& sample) const {
    if (!sets_) {
        return false;
    }
    try {
        const auto start =
            bytes_.readBytes(sample.offset, std::min<std::uint64_t>(sample.size, mostBytesBeforeSliceData));
        const bitstream::ByteView slice = firstSlice(start, nalLengthSize_);
        return !slice.empty() && !hevc::parseSliceHeader(slice, *sets_).picOutput;
    } catch (const MediaError&) {
        return false;
    }
}

} // namespace zelvra::media
