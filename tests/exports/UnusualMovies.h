// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/NumberedMovie.h"

namespace zelvra::test {

/// H.264 movies that no encoder here writes, between whose pictures no still of ours can stand. Unless said
/// otherwise they show what the movie they are made of shows.

/// Its order counts follow from the frame numbers alone (POC type 1), and would put a picture that is no
/// reference before the one that it follows. `movie` has no B pictures and no more than the Main profile.
std::filesystem::path withoutRoomBetweenPictures(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder);

/// The coding changes at picture `frame`, the first of a closed group: other encoder settings, and parameter
/// sets in the samples. `movie` has no sound.
std::filesystem::path withChangingCoding(const NumberedMovie& movie, int frame,
                                         const std::string& otherEncoderParams,
                                         const std::filesystem::path& folder);

/// It says that its colour planes are coded apart, which they are not: nothing can decode it. `movie` has all
/// its chroma (4:4:4).
std::filesystem::path withPlanesApart(const NumberedMovie& movie, const std::filesystem::path& folder);

/// Its index says that the last picture lasts for 0 ticks, as some encoders write it. `movie` has a constant
/// rate and no B pictures.
std::filesystem::path withoutLengthOfLastPicture(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder);

} // namespace zelvra::test
