// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/passthrough/video/SourceVideo.h"

#include <filesystem>

namespace zelvra::passthrough {

/// A freeze clip, open for as long as this lives.
class ClipFile {
public:
    /// Throws MediaError; ZVError::noVideoTrack if the file has none.
    explicit ClipFile(const std::filesystem::path& path);

    ClipFile(const ClipFile&) = delete; // `video_` refers into this
    ClipFile& operator=(const ClipFile&) = delete;

    const SourceVideo& video() const { return video_; }

private:
    files::FileByteSource bytes_;
    isobmff::Movie movie_;
    SourceVideo video_;
};

} // namespace zelvra::passthrough
