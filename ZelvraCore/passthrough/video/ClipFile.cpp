// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/passthrough/video/ClipFile.h"

#include "ZelvraCore/isobmff/MovieReader.h"
#include "ZelvraCore/records/ZVError.h"

namespace zelvra::passthrough {

namespace {

const isobmff::Track& videoTrackOf(const isobmff::Movie& movie) {
    const isobmff::Track* track = movie.firstTrack(isobmff::videoHandler);
    if (!track) {
        throw ZVError::noVideoTrack();
    }
    return *track;
}

} // namespace

ClipFile::ClipFile(const std::filesystem::path& path)
    : bytes_(path), movie_(isobmff::readMovie(bytes_)), video_{bytes_, videoTrackOf(movie_)} {}

} // namespace zelvra::passthrough
