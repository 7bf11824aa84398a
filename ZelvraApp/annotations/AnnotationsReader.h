// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/AnnotationsDocument.h"

#include <filesystem>
#include <string_view>

namespace zelvra {

/// Reads a document of annotations. The text is not trusted: its size, its depth and the number of its values
/// are limited. Pure; any thread. Throws BadRequest with one line that names the mistake and its place.
AnnotationsDocument parseAnnotations(std::string_view json);

/// Reads the file of such a document, also a pipe. Blocks; any thread. Throws ZVError::fileNotFound,
/// MediaError `unreadable` and `corrupt`.
AnnotationsDocument readAnnotations(const std::filesystem::path& file);

} // namespace zelvra
