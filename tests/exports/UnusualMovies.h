// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/NumberedMovie.h"

namespace zelvra::test {

/// H.264 movies that no encoder here writes, and between whose pictures no still fits. Unless said otherwise
/// they show the same as the movie they are made from.

/// Its order counts follow from the frame numbers alone (POC type 1), and place a non-reference picture
/// before the picture that it follows in decode order. `movie` must have no B pictures and at most the Main
/// profile.
std::filesystem::path withoutRoomBetweenPictures(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder);

/// The coding changes at picture `frame`, the first of a closed group: other encoder settings, and parameter
/// sets in the samples. `movie` must have no sound.
std::filesystem::path withChangingCoding(const NumberedMovie& movie, int frame,
                                         const std::string& otherEncoderParams,
                                         const std::filesystem::path& folder);

/// It claims that its colour planes are coded separately, which they are not, so nothing can decode it.
/// `movie` must have full chroma (4:4:4).
std::filesystem::path withPlanesApart(const NumberedMovie& movie, const std::filesystem::path& folder);

/// Its index says that the last picture lasts for 0 ticks, as some encoders write it. `movie` has a constant
/// rate and no B pictures.
std::filesystem::path withoutLengthOfLastPicture(const NumberedMovie& movie,
                                                 const std::filesystem::path& folder);

} // namespace zelvra::test
