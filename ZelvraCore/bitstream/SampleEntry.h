// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/bitstream/Bytes.h"

#include <optional>
#include <string_view>

namespace zelvra::bitstream {

/// The boxes inside a visual sample entry (ISO/IEC 14496-12 clause 12.1.3). The entry is one whole box: 8
/// bytes of header, 78 of fixed fields, then child boxes. Offers only what the decoder configuration needs:
/// find a child, replace it. Malformed children throw BitstreamError (corrupt). Types are four characters.

/// The content of the first child of that type, without its header, as a view into `entry`; `nullopt` if
/// there is none.
std::optional<ByteView> findChildBox(ByteView entry, std::string_view type);

/// The same entry with the content of the first child of that type replaced. If there is none, a new child is
/// appended. All sizes are corrected.
Bytes replaceChildBox(ByteView entry, std::string_view type, ByteView content);

/// The same entry without the children of that type.
Bytes removeChildBox(ByteView entry, std::string_view type);

} // namespace zelvra::bitstream
