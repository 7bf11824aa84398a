// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// The encoders behind StillEncoder, one for each codec. Internal to this folder.

#include "ZelvraCore/media/still/StillEncoder.h"

namespace zelvra {

std::unique_ptr<StillEncoder> makeX264StillEncoder(const std::shared_ptr<const DecodedPicture>& picture,
                                                   const CodedPictureFormat& format,
                                                   const FreezeEncoding& encoding,
                                                   const CMTime& frameDuration);
std::unique_ptr<StillEncoder> makeX265StillEncoder(const std::shared_ptr<const DecodedPicture>& picture,
                                                   const CodedPictureFormat& format,
                                                   const CMTime& frameDuration);

} // namespace zelvra
