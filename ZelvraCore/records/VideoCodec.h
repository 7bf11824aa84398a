// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace zelvra {

/// The two codecs in which freeze clips are encoded and whose coded pictures can be copied.
enum class VideoCodec { h264, hevc };

} // namespace zelvra
