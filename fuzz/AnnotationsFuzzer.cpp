// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraApp/annotations/BadRequest.h"
#include "ZelvraApp/annotations/Identical.h"

#include <cstdlib>
#include <string_view>

using namespace zelvra;

namespace {

/// One line, whatever the document holds.
void requireOneLine(std::string_view text) {
    if (text.empty() || text.size() > 300 || text.find('\n') != std::string_view::npos) {
        std::abort();
    }
}

/// What was understood can be written, and is read again as it was.
void requireRoundTrip(const AnnotationsDocument& document) {
    const std::string text = annotationsText(document);
    const AnnotationsDocument again = parseAnnotations(text);
    if (!identical(again.work.annotations, document.work.annotations) || annotationsText(again) != text) {
        std::abort();
    }
}

} // namespace

/// Reads arbitrary bytes as a document of annotations. The only exception allowed is BadRequest.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        requireRoundTrip(parseAnnotations({reinterpret_cast<const char*>(data), size}));
    } catch (const BadRequest& error) { // refused, as expected
        requireOneLine(error.what());
    }
    return 0;
}
