// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/media/still/RepeatedPicture.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/h264/ParameterSets.h"
#include "ZelvraCore/bitstream/hevc/SliceHeader.h"

namespace zelvra::media {

using bitstream::BitReader;
using bitstream::Bytes;
using bitstream::ByteView;

Bytes byteStreamOf(const NalUnits& nals) {
    Bytes stream;
    for (const Bytes& nal : nals) {
        stream.insert(stream.end(), {0, 0, 0, 1});
        stream.insert(stream.end(), nal.begin(), nal.end());
    }
    return stream;
}

RepeatedPicture::RepeatedPicture(VideoCodec codec, const NalUnits& parameterSets, NalUnits picture)
    : headerSize_(codec == VideoCodec::h264 ? 1 : hevc::nalHeaderSize), slices_(std::move(picture)) {
    if (codec == VideoCodec::h264) {
        locateH264(parameterSets);
    } else {
        locateHevc(parameterSets);
    }
}

/// ITU-T H.264 clause 7.3.3.
void RepeatedPicture::locateH264(const NalUnits& parameterSets) {
    h264::ParameterSets sets;
    for (const Bytes& nal : parameterSets) {
        sets.add(nal);
    }
    for (const Bytes& slice : slices_) {
        BitReader reader(ByteView(slice).subspan(headerSize_));
        reader.ue(); // first_mb_in_slice
        reader.ue(); // slice_type
        const h264::Sps& sps = sets.spsOfPps(static_cast<int>(reader.ue(255)));
        std::vector<Field>& fields = fields_.emplace_back();
        fields.push_back({reader.position(), sps.frameNumBits, 1});
        if (sps.pocType == 0) {
            const std::uint64_t fieldFlag = sps.frameMbsOnly ? 0 : 1;
            fields.push_back({reader.position() + static_cast<std::uint64_t>(sps.frameNumBits) + fieldFlag,
                              sps.pocLsbBits, 2});
        }
    }
}

/// ITU-T H.265 clause 7.3.6.1.
void RepeatedPicture::locateHevc(const NalUnits& parameterSets) {
    hevc::ParameterSets sets;
    for (const Bytes& nal : parameterSets) {
        sets.add(nal);
    }
    for (const Bytes& slice : slices_) {
        const hevc::SliceHeader header = hevc::parseSliceHeader(slice, sets);
        std::vector<Field>& fields = fields_.emplace_back();
        if (!header.dependent) {
            const std::uint64_t outputFlag = header.picOutputCoded ? 1 : 0;
            fields.push_back({header.afterSliceType + outputFlag, sets.spsOfPps(header.ppsId).pocLsbBits, 1});
        }
    }
}

Bytes RepeatedPicture::renumbered(const Bytes& nal, std::span<const Field> fields, std::int64_t place) const {
    BitReader reader(ByteView(nal).subspan(headerSize_));
    bitstream::BitWriter writer;
    for (const Field& field : fields) {
        writer.copy(reader, field.position - reader.position());
        const auto number = static_cast<std::uint64_t>(place * field.step);
        writer.bits(static_cast<std::uint32_t>(number & ((std::uint64_t{1} << field.bits) - 1)), field.bits);
        reader.skip(static_cast<std::uint64_t>(field.bits));
    }
    writer.copy(reader, reader.bitsLeft());
    return bitstream::withEmulationPrevention(ByteView(nal).first(headerSize_), writer.payload());
}

NalUnits RepeatedPicture::at(std::int64_t place) const {
    NalUnits picture;
    for (std::size_t i = 0; i < slices_.size(); ++i) {
        picture.push_back(renumbered(slices_[i], fields_[i], place));
    }
    return picture;
}

} // namespace zelvra::media
