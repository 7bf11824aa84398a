// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/Annotations.h"

#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tools/zelvra-cli/Commands.h"
#include "tools/zelvra-cli/HighlightText.h"
#include "tools/zelvra-cli/TimeText.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <nlohmann/json.hpp>

namespace zelvra::cli {
namespace {

using nlohmann::json;

/// `value`, checked to be an object with no members other than `names`.
const json& object(const json& value, std::initializer_list<std::string_view> names) {
    if (!value.is_object()) {
        throw BadRequest("an object is expected, not " + value.dump());
    }
    for (const auto& item : value.items()) {
        if (std::find(names.begin(), names.end(), item.key()) == names.end()) {
            throw BadRequest("unknown name \"" + item.key() + "\"");
        }
    }
    return value;
}

double number(const json& value) {
    if (!value.is_number()) {
        throw BadRequest("a number is expected, not " + value.dump());
    }
    return value.get<double>();
}

std::string text(const json& value) {
    if (!value.is_string()) {
        throw BadRequest("a text is expected, not " + value.dump());
    }
    return value.get<std::string>();
}

bool truth(const json& value) {
    if (!value.is_boolean()) {
        throw BadRequest("true or false is expected, not " + value.dump());
    }
    return value.get<bool>();
}

CMTime time(const json& value) {
    return value.is_string() ? parseTime(text(value)) : timeFromSeconds(number(value));
}

Point point(const json& value) {
    if (!value.is_array() || value.size() != 2) {
        throw BadRequest("a point [x, y] is expected, not " + value.dump());
    }
    return {number(value[0]), number(value[1])};
}

/// Calls `use` with the member of that name if there is one.
template <class Use>
void with(const json& value, const char* name, Use use) {
    const auto found = value.find(name);
    if (found != value.end()) {
        use(*found);
    }
}

Highlight highlight(const json& value) {
    object(value, {"at", "duration", "shape"});
    HighlightRequest request;
    with(value, "at", [&](const json& at) { request.at = time(at); });
    with(value, "duration", [&](const json& duration) { request.duration = time(duration); });
    with(value, "shape", [&](const json& shape) {
        object(shape, {"kind", "p1", "p2", "color", "strokeWidthRatio"});
        with(shape, "kind", [&](const json& kind) { request.kind = parseKind(text(kind)); });
        with(shape, "p1", [&](const json& p1) { request.p1 = point(p1); });
        with(shape, "p2", [&](const json& p2) { request.p2 = point(p2); });
        with(shape, "color", [&](const json& color) { request.color = parseColor(text(color)); });
        with(shape, "strokeWidthRatio", [&](const json& ratio) { request.strokeWidthRatio = number(ratio); });
    });
    return makeHighlight(request);
}

template <class Read>
void reading(const std::string& where, Read read);

std::vector<Highlight> highlightList(const json& list) {
    if (!list.is_array()) {
        throw BadRequest("highlights: a list is expected");
    }
    std::vector<Highlight> highlights;
    for (std::size_t i = 0; i < list.size(); ++i) {
        reading("highlight " + std::to_string(i + 1), [&] { highlights.push_back(highlight(list[i])); });
    }
    return highlights;
}

AnnotatedClip clip(const json& value) {
    object(value, {"start", "end", "highlights"});
    AnnotatedClip result;
    with(value, "start", [&](const json& start) { result.start = time(start); });
    with(value, "end", [&](const json& end) { result.end = time(end); });
    with(value, "highlights", [&](const json& list) { result.highlights = highlightList(list); });
    if (!result.start.isValid() || !result.end.isValid()) {
        throw BadRequest("\"start\" and \"end\" are needed");
    }
    if (result.end <= result.start) {
        throw BadRequest("it ends before it starts");
    }
    return result;
}

/// Runs `read` and puts `where` before the text of its errors.
template <class Read>
void reading(const std::string& where, Read read) {
    try {
        read();
    } catch (const BadRequest& error) {
        throw BadRequest(where + ": " + error.what());
    } catch (const ZVError& error) {
        throw BadRequest(where + ": " + error.description());
    }
}

} // namespace

Annotations parseAnnotations(std::string_view source) {
    json root;
    try {
        root = json::parse(source);
    } catch (const json::parse_error& error) {
        throw BadRequest("no JSON at byte " + std::to_string(error.byte));
    } catch (const json::out_of_range&) {
        throw BadRequest("no JSON: a number is too large");
    }
    object(root, {"highlights", "range", "includeAudio", "clips"});
    Annotations annotations;
    with(root, "highlights", [&](const json& list) { annotations.highlights = highlightList(list); });
    with(root, "clips", [&](const json& list) {
        if (!list.is_array()) {
            throw BadRequest("clips: a list is expected");
        }
        for (std::size_t i = 0; i < list.size(); ++i) {
            reading("clip " + std::to_string(i + 1), [&] { annotations.clips.push_back(clip(list[i])); });
        }
    });
    reading("range", [&] {
        with(root, "range", [&](const json& range) {
            object(range, {"from", "to"});
            with(range, "from", [&](const json& from) { annotations.from = time(from); });
            with(range, "to", [&](const json& to) { annotations.to = time(to); });
        });
    });
    reading("includeAudio", [&] {
        with(root, "includeAudio", [&](const json& include) { annotations.includeAudio = truth(include); });
    });
    return annotations;
}

Annotations readAnnotations(const std::filesystem::path& file) {
    requireFile(file);
    std::ifstream stream(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        throw MediaError::cannotRead(file.string(), systemReason(EIO));
    }
    try {
        return parseAnnotations(content);
    } catch (const BadRequest& error) {
        throw MediaError::cannot(MediaError::Cause::corrupt, "read", file.string(), error.what());
    }
}

} // namespace zelvra::cli
