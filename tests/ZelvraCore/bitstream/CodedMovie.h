// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"
#include "tests/support/NumberedMovie.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zelvra::test {

/// The coded pictures of a movie's first video track, held in memory.
struct CodedMovie {
    std::string type; ///< of its sample entry, for example "avc1"
    bitstream::Bytes sampleEntry;
    bitstream::Bytes configuration;         ///< content of avcC or hvcC; empty for other codecs
    std::vector<bitstream::Bytes> samples;  ///< in decode order
    std::vector<std::int64_t> presentation; ///< media time of each sample
    bool h264() const { return type == "avc1" || type == "avc3"; }
    bool hevc() const { return type == "hvc1" || type == "hev1"; }

    /// Indexes of the samples in order of presentation.
    std::vector<std::size_t> shownOrder() const;
};

CodedMovie readCodedMovie(const std::filesystem::path& file);
inline CodedMovie readCodedMovie(const NumberedMovie& movie) {
    return readCodedMovie(movieFile(movie));
}

/// MD5 sums of the pictures that ffmpeg decodes, in output order. The input is parameter sets and samples
/// concatenated as a byte stream (annex B). Any warning of the decoder fails the test.
std::vector<std::string> decodedPictures(const std::string& format,
                                         const std::vector<bitstream::Bytes>& parameterSets,
                                         const std::vector<bitstream::Bytes>& samples, int nalLengthSize = 4);

/// The movies of the shared collection that can be read and have this codec; broken ones are left out.
std::vector<std::filesystem::path> sharedMoviesOf(MovieCodec codec);

} // namespace zelvra::test
