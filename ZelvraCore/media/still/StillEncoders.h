// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// The implementations of StillEncoder, one for each codec.

#include "ZelvraCore/media/still/StillEncoder.h"

namespace zelvra::media {

std::unique_ptr<StillEncoder> makeX264StillEncoder(const std::shared_ptr<const DecodedPicture>& picture,
                                                   const CodedPictureFormat& format,
                                                   const FreezeEncoding& encoding,
                                                   const CMTime& frameDuration);
std::unique_ptr<StillEncoder> makeX265StillEncoder(const std::shared_ptr<const DecodedPicture>& picture,
                                                   const CodedPictureFormat& format,
                                                   const CMTime& frameDuration);

} // namespace zelvra::media
