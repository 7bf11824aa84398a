#include "tests/render/UnusualMovies.h"

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

/// pic_order_cnt_type 2 exchanged for what it means in terms of type 1 (ITU-T H.264 clauses 8.2.1.2 and
/// 8.2.1.3), but for pictures that are no reference: those step back by 1.
Bytes withDerivedOrder(const Bytes& sps) {
    bitstream::BitReader reader(bitstream::ByteView(sps).subspan(1));
    bitstream::BitWriter writer;
    const auto copied = [&] {
        const std::uint32_t value = reader.ue();
        writer.ue(value);
    };
    writer.copy(reader, 24); // profile, constraints, level
    copied();                // id
    copied();                // frame_num's length
    if (reader.ue() != 2) {
        throw std::logic_error("the movie has B pictures, or a profile beyond Main");
    }
    writer.ue(1);
    writer.flag(true); // delta_pic_order_always_zero_flag
    writer.se(-1);     // offset_for_non_ref_pic
    writer.se(0);      // offset_for_top_to_bottom_field
    writer.ue(1);
    writer.se(2); // offset_for_ref_frame[0]
    writer.copy(reader, reader.bitsBeforeStop());
    writer.trailingBits();
    return bitstream::withEmulationPrevention(bitstream::ByteView(sps).first(1), writer.payload());
}

} // namespace

std::filesystem::path withoutRoomBetweenPictures(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder) {
    BoxFile file = BoxFile::read(movieFile(movie)); // the index is behind the media, and may grow
    Bytes& descriptions = file.track("vide").at("mdia/minf/stbl/stsd").payload;
    const auto entry = bitstream::ByteView(descriptions).subspan(stsdHeader);
    auto record = h264::AvcConfiguration::parse(*bitstream::findChildBox(entry, "avcC"));
    record.spsNals.front() = withDerivedOrder(record.spsNals.front());
    const Bytes changed = bitstream::replaceChildBox(entry, "avcC", record.serialise());
    descriptions.resize(stsdHeader);
    descriptions.insert(descriptions.end(), changed.begin(), changed.end());
    const std::filesystem::path path = folder / "no room.mov";
    file.write(path);
    return path;
}

std::filesystem::path withChangingCoding(const NumberedMovie& movie, int frame,
                                         const std::string& otherEncoderParams,
                                         const std::filesystem::path& folder) {
    NumberedMovie other = movie;
    other.encoderParams = otherEncoderParams;
    // By number, as times would let in pictures that are decoded before the cut and shown after it.
    runChecked({"ffmpeg", "-v", "error", "-i", movieFile(movie).string(), "-c", "copy", "-frames:v",
                std::to_string(frame), (folder / "first.mov").string()});
    std::ofstream(folder / "parts.txt") << "file first.mov\nfile '" << movieFile(other).string()
                                        << "'\ninpoint " << movie.timeOf(frame).seconds() << '\n';
    const std::filesystem::path path = folder / "changing.mov";
    runChecked({"ffmpeg", "-v", "error", "-f", "concat", "-safe", "0", "-i", (folder / "parts.txt").string(),
                "-c", "copy", path.string()});
    return path;
}

} // namespace zelvra::test
