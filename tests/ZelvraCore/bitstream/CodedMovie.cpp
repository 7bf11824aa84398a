// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraCore/bitstream/CodedMovie.h"

#include "ZelvraCore/bitstream/NalUnits.h"
#include "ZelvraCore/bitstream/SampleEntry.h"
#include "ZelvraCore/isobmff/MovieReader.h"
#include "tests/support/Files.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <sstream>

namespace zelvra::test {

using bitstream::Bytes;

namespace {

std::string fourCharacters(FourCharCode code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text.push_back(static_cast<char>(code >> shift & 0xFF));
    }
    return text;
}

void appendByteStream(Bytes& stream, bitstream::ByteView nal) {
    for (const std::uint8_t byte : {0, 0, 0, 1}) {
        stream.push_back(byte);
    }
    stream.insert(stream.end(), nal.begin(), nal.end());
}

} // namespace

std::vector<std::size_t> CodedMovie::shownOrder() const {
    std::vector<std::size_t> order(samples.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return presentation[i]; });
    return order;
}

CodedMovie readCodedMovie(const std::filesystem::path& file) {
    const files::FileByteSource source(file);
    const isobmff::Movie movie = isobmff::readMovie(source);
    CodedMovie coded;
    const isobmff::Track* track = movie.firstTrack(isobmff::videoHandler);
    if (track == nullptr) {
        return coded;
    }
    coded.type = fourCharacters(track->sampleEntries.front().type);
    coded.sampleEntry = track->sampleEntries.front().box;
    if (const auto record = bitstream::findChildBox(coded.sampleEntry, coded.h264() ? "avcC" : "hvcC")) {
        coded.configuration.assign(record->begin(), record->end());
    }
    for (const isobmff::Sample& sample : track->samples) {
        coded.samples.push_back(source.readBytes(sample.offset, sample.size));
        coded.presentation.push_back(sample.presentationTime());
    }
    return coded;
}

std::vector<std::string> decodedPictures(const std::string& format, const std::vector<Bytes>& parameterSets,
                                         const std::vector<Bytes>& samples, int nalLengthSize) {
    Bytes stream;
    for (const Bytes& nal : parameterSets) {
        appendByteStream(stream, nal);
    }
    for (const Bytes& sample : samples) {
        for (const auto nal : bitstream::splitNalUnits(sample, nalLengthSize)) {
            appendByteStream(stream, nal);
        }
    }
    const TemporaryFolder folder;
    writeBytes(folder / "stream", stream);
    const ProcessResult result =
        runChecked({"ffmpeg", "-v", "warning", "-f", format, "-i", (folder / "stream").string(), "-fps_mode",
                    "passthrough", "-f", "framemd5", "-"});
    std::vector<std::string> pictures;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("#")) {
            pictures.push_back(line.substr(line.find_last_of(' ') + 1));
        }
    }
    std::istringstream warnings(result.errors);
    for (std::string line; std::getline(warnings, line);) {
        if (line.find("imestamp") == std::string::npos) { // a byte stream has no times
            ADD_FAILURE() << line;
        }
    }
    return pictures;
}

std::vector<std::filesystem::path> sharedMoviesOf(MovieCodec codec) {
    std::vector<std::filesystem::path> found;
    for (const auto& file : sharedMovies()) {
        const std::string name = file.filename().string();
        if (name.starts_with("broken") || file.extension() == ".md") {
            continue;
        }
        const CodedMovie movie = readCodedMovie(file);
        if (!movie.configuration.empty() && (codec == MovieCodec::h264 ? movie.h264() : movie.hevc())) {
            found.push_back(file);
        }
    }
    return found;
}

} // namespace zelvra::test
