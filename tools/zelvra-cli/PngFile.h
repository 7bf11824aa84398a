// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/media/Image.h"

#include <filesystem>

namespace zelvra::cli {

/// Writes an opaque picture as a PNG file. The file appears only when it is complete, and replaces an
/// existing one. Throws MediaError::unwritable.
void writePng(const Image& image, const std::filesystem::path& file);

} // namespace zelvra::cli
