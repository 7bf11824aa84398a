// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/SoundPiece.h"
#include "tests/support/Files.h"
#include "tests/support/NumberedSound.h"
#include "tests/support/Process.h"

#include <string>
#include <utility>
#include <vector>

namespace zelvra::test {

inline SoundPiece play(CMTime from, CMTime to) {
    return {SoundPiece::Kind::source, from, to - from};
}
inline SoundPiece silence(CMTime duration) {
    return {SoundPiece::Kind::silence, {}, duration};
}

/// A movie with `seconds` of numbered sound only, coded with ffmpeg's `arguments`.
inline void makeSoundMovie(const std::filesystem::path& file, int rate, int channels, double seconds,
                           const std::vector<std::string>& arguments) {
    std::string pcm = numberedSoundBytes(static_cast<std::int64_t>(seconds * rate), rate, channels);
    std::vector<std::string> command{"ffmpeg", "-v",
                                     "error",  "-y",
                                     "-f",     "s16le",
                                     "-ar",    std::to_string(rate),
                                     "-ac",    std::to_string(channels),
                                     "-i",     "-"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    command.push_back(file.string());
    runChecked(command, [&pcm] { return std::exchange(pcm, {}); });
}

} // namespace zelvra::test
