// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/exports/UnusualMovies.h"

#include "ZelvraCore/bitstream/BitReader.h"
#include "ZelvraCore/bitstream/BitWriter.h"
#include "ZelvraCore/bitstream/EmulationPrevention.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/bitstream/h264/AvcConfiguration.h"
#include "tests/support/BoxTree.h"
#include "tests/support/Process.h"

#include <fstream>
#include <stdexcept>

namespace zelvra::test {

namespace {

constexpr std::size_t stsdHeader = 8; ///< version, flags and the number of entries

using bitstream::BitReader;
using bitstream::BitWriter;

void copyNumber(BitReader& reader, BitWriter& writer) {
    writer.ue(reader.ue());
}

/// Replaces pic_order_cnt_type 2 by its equivalent in type 1 (ITU-T H.264 clauses 8.2.1.2 and 8.2.1.3).
/// Non-reference pictures differ: they step back by 1.
void deriveOrder(BitReader& reader, BitWriter& writer) {
    copyNumber(reader, writer); // id
    copyNumber(reader, writer); // length of frame_num
    if (reader.ue() != 2) {
        throw std::logic_error("the movie has B pictures, or a profile beyond Main");
    }
    writer.ue(1);
    writer.flag(true); // delta_pic_order_always_zero_flag
    writer.se(-1);     // offset_for_non_ref_pic
    writer.se(0);      // offset_for_top_to_bottom_field
    writer.ue(1);
    writer.se(2); // offset_for_ref_frame[0]
}

void takePlanesApart(BitReader& reader, BitWriter& writer) {
    copyNumber(reader, writer); // id
    copyNumber(reader, writer); // chroma_format_idc
    reader.skip(1);
    writer.flag(true); // separate_colour_plane_flag
}

/// The movie with its sequence parameter set changed after the profile and level. Whatever `change` leaves
/// unread stays.
std::filesystem::path withOtherSps(const NumberedMovie& movie, const std::filesystem::path& path,
                                   void (*change)(BitReader&, BitWriter&)) {
    BoxFile file = BoxFile::read(movieFile(movie)); // the index follows the media, so it may grow
    Bytes& descriptions = file.track("vide").at("mdia/minf/stbl/stsd").payload;
    const auto entry = bitstream::ByteView(descriptions).subspan(stsdHeader);
    auto record = h264::AvcConfiguration::parse(*bitstream::findChildBox(entry, "avcC"));
    Bytes& sps = record.spsNals.front();
    BitReader reader(bitstream::ByteView(sps).subspan(1));
    BitWriter writer;
    writer.copy(reader, 24);
    change(reader, writer);
    writer.copy(reader, reader.bitsBeforeStop());
    writer.trailingBits();
    sps = bitstream::withEmulationPrevention(bitstream::ByteView(sps).first(1), writer.payload());
    const Bytes changed = bitstream::replaceChildBox(entry, "avcC", record.serialise());
    descriptions.resize(stsdHeader);
    descriptions.insert(descriptions.end(), changed.begin(), changed.end());
    file.write(path);
    return path;
}

} // namespace

std::filesystem::path withoutRoomBetweenPictures(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder) {
    return withOtherSps(movie, folder / "no room.mov", deriveOrder);
}

std::filesystem::path withPlanesApart(const NumberedMovie& movie, const std::filesystem::path& folder) {
    return withOtherSps(movie, folder / "planes.mov", takePlanesApart);
}

std::filesystem::path withChangingCoding(const NumberedMovie& movie, int frame,
                                         const std::string& otherEncoderParams,
                                         const std::filesystem::path& folder) {
    NumberedMovie other = movie;
    other.encoderParams = otherEncoderParams;
    // Selects by number, because times would let in pictures that are decoded before the cut and shown after
    // it.
    runChecked({"ffmpeg", "-v", "error", "-i", movieFile(movie).string(), "-c", "copy", "-frames:v",
                std::to_string(frame), (folder / "first.mov").string()});
    std::ofstream(folder / "parts.txt") << "file first.mov\nfile '" << movieFile(other).string()
                                        << "'\ninpoint " << movie.timeOf(frame).seconds() << '\n';
    std::filesystem::path path = folder / "changing.mov";
    runChecked({"ffmpeg", "-v", "error", "-f", "concat", "-safe", "0", "-i", (folder / "parts.txt").string(),
                "-c", "copy", path.string()});
    return path;
}

std::filesystem::path withoutLengthOfLastPicture(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder) {
    BoxFile file = BoxFile::read(movieFile(movie));
    // ISO/IEC 14496-12 clause 8.6.1.2: version and flags, count of entries, then counts and lengths
    Bytes& lengths = file.track("vide").at("mdia/minf/stbl/stts").payload;
    putNumber(lengths, 4, 4, 2);
    putNumber(lengths, 8, 4, numberAt(lengths, 8, 4) - 1);
    appendNumber(lengths, 4, 1);
    appendNumber(lengths, 4, 0);
    std::filesystem::path path = folder / "no length.mov";
    file.write(path);
    return path;
}

} // namespace zelvra::test
