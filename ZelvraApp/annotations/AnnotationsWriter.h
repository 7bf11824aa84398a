// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/AnnotationsDocument.h"

#include <filesystem>
#include <string>

namespace zelvra {

/// The text of a document, from which parseAnnotations reads identical values: each time with its ticks, each
/// number bit for bit, each path byte for byte. Laid out for people, with members in a fixed order.
///
/// Pure; any thread. Throws MediaError: `internal` for a time or number that is not finite, `unwritable` for
/// a text that would be too large to be read again.
std::string annotationsText(const AnnotationsDocument& document);

/// Writes the document as a file, which is complete and on the disk when this returns. A failure leaves what
/// was there. Blocks; any thread. Throws MediaError as above, and `unwritable` with one line that names the
/// file.
void writeAnnotations(const std::filesystem::path& file, const AnnotationsDocument& document);

} // namespace zelvra
