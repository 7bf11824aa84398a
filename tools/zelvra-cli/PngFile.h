// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"

#include <filesystem>

namespace zelvra::cli {

/// Writes an opaque picture as a PNG file. The file appears when it is whole; one of that name is replaced.
/// Throws MediaError::unwritable.
void writePng(const Image& image, const std::filesystem::path& file);

} // namespace zelvra::cli
