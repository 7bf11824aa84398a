// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/hevc/ParameterSets.h"
#include "ZelvraCore/files/ByteSource.h"
#include "ZelvraCore/isobmff/Movie.h"

#include <optional>

namespace zelvra::media {

/// Finds the coded pictures of an HEVC track that are decoded and never shown: those with pic_output_flag = 0
/// (ITU-T H.265 clause 7.4.7.1), which the program itself writes into movies that it exports. A movie's
/// tables do not distinguish them, so each call reads the start of a sample: call it only for suspect
/// samples. Other codecs have no such flag.
class HiddenPictures {
public:
    /// Both outlive this. A track whose configuration cannot be read has no hidden pictures.
    HiddenPictures(const files::ByteSource& bytes, const isobmff::Track& track);

    /// Whether the sample's picture is never shown. False also if its header cannot be read.
    bool hides(const isobmff::Sample& sample) const;

private:
    void readConfiguration(const isobmff::Track& track);

    const files::ByteSource& bytes_;
    std::optional<hevc::ParameterSets> sets_; ///< `nullopt`: not a track of readable HEVC
    int nalLengthSize_ = 4;
};

} // namespace zelvra::media
