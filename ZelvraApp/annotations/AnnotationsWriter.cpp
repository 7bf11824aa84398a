// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/AnnotationsWriter.h"

#include "ZelvraApp/annotations/HighlightText.h"
#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraApp/annotations/TimeText.h"
#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/records/HexText.h"
#include "ZelvraCore/records/MediaError.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>

namespace zelvra {
namespace {

using json = nlohmann::ordered_json;

json number(double value) {
    if (!std::isfinite(value)) {
        throw MediaError(MediaError::Cause::internal, "cannot save annotations: a number is not finite");
    }
    return value;
}

/// Seconds if reading them gives the same ticks, else a fraction of ticks.
json time(const CMTime& value) {
    if (!value.isNumeric()) {
        throw MediaError(MediaError::Cause::internal, "cannot save annotations: a time is not finite");
    }
    constexpr double mostTypedSeconds = 1e9;
    const double seconds = value.seconds();
    if (seconds >= 0 && seconds <= mostTypedSeconds && identical(timeFromSeconds(seconds), value)) {
        return seconds;
    }
    const bool rounded = (value.flags & CMTime::hasBeenRounded) != 0;
    return (rounded ? "~" : "") + std::to_string(value.value) + "/" + std::to_string(value.timescale);
}

json point(const Point& value) {
    return {number(value.x), number(value.y)};
}

json color(const Color& value) {
    const auto byte = [](double part) {
        return static_cast<unsigned>(std::lround(255 * std::clamp(part, 0.0, 1.0)));
    };
    const json parts{number(value.red), number(value.green), number(value.blue), number(value.alpha)};
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", byte(value.red), byte(value.green), byte(value.blue));
    return parseColor(text) == value ? json(text) : parts;
}

/// Whether it is the same path after it was a text. False for bytes that are no UTF-8.
bool isText(const std::string& path) {
    try {
        return json::parse(json(path).dump()) == path;
    } catch (const json::exception&) {
        return false;
    }
}

json path(const std::filesystem::path& value) {
    const std::string& bytes = value.native();
    if (isText(bytes)) {
        return bytes;
    }
    return {{"hex", hexText({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()})}};
}

/// The members `start` and `end`; "duration" instead of `end` if that is more exact.
void addStretch(json& object, const CMTimeRange& range, const char* start, const char* end) {
    object[start] = time(range.start);
    if (range.end().isNumeric() && identical(CMTimeRange::fromStartToEnd(range.start, range.end()), range)) {
        object[end] = time(range.end());
    } else {
        object["duration"] = time(range.duration);
    }
}

json trim(const CMTimeRange& range) {
    json object;
    addStretch(object, range, "from", "to");
    return object;
}

json highlights(const std::vector<Highlight>& list) {
    json result = json::array();
    for (const Highlight& highlight : list) {
        const HighlightShape& shape = highlight.shape;
        result.push_back({{"id", highlight.id.text()},
                          {"at", time(highlight.timestamp)},
                          {"duration", time(highlight.duration)},
                          {"shape",
                           {{"id", shape.id.text()},
                            {"kind", rawValue(shape.kind)},
                            {"p1", point(shape.p1)},
                            {"p2", point(shape.p2)},
                            {"color", color(shape.strokeColor)},
                            {"strokeWidthRatio", number(shape.strokeWidthRatio)}}}});
    }
    return result;
}

json clips(const std::vector<MarkedClip>& list) {
    json result = json::array();
    for (const MarkedClip& clip : list) {
        json object{{"id", clip.id.text()}};
        addStretch(object, clip.range, "start", "end");
        object["highlights"] = highlights(clip.highlights);
        result.push_back(std::move(object));
    }
    return result;
}

json style(const HighlightDefaults& defaults) {
    return {{"color", color(defaults.color)},
            {"radiusRatio", number(defaults.radiusRatio)},
            {"strokeWidthRatio", number(defaults.strokeWidthRatio)},
            {"duration", number(defaults.durationSec)}};
}

json exported(const ExportedWork& work) {
    json result{{"highlights", highlights(work.highlights)}};
    if (work.trimRange) {
        result["range"] = trim(*work.trimRange);
    }
    result["clips"] = clips(work.markedClips);
    return result;
}

json written(const std::map<Uuid, WrittenMovie>& movies) {
    json result = json::array();
    for (const auto& [clip, movie] : movies) {
        json object = json::object();
        if (clip != Uuid{}) {
            object["clip"] = clip.text();
        }
        object["path"] = path(movie.file);
        object["size"] = movie.size;
        result.push_back(std::move(object));
    }
    return result;
}

void addRange(json& root, const AnnotationsDocument& document) {
    if (document.work.annotations.trimRange) {
        root["range"] = trim(*document.work.annotations.trimRange);
        return;
    }
    if (document.from) {
        root["range"]["from"] = time(*document.from);
    }
    if (document.to) {
        root["range"]["to"] = time(*document.to);
    }
}

json documentJson(const AnnotationsDocument& document) {
    const Annotations& annotations = document.work.annotations;
    json root{{"version", AnnotationsDocument::version}};
    if (document.movie) {
        root["movie"] = {{"path", path(document.movie->file)},
                         {"size", document.movie->identity.size},
                         {"digest", hexText(document.movie->identity.digest)}};
    }
    root["highlights"] = highlights(annotations.highlights);
    addRange(root, document);
    if (document.includeAudio) {
        root["includeAudio"] = *document.includeAudio;
    }
    root["clips"] = clips(annotations.markedClips);
    if (annotations.editingClipID) {
        root["editing"] = annotations.editingClipID->text();
        root["fullViewHighlights"] = highlights(annotations.fullViewHighlights);
    }
    if (annotations.activeRoughClipID) {
        root["activeClip"] = annotations.activeRoughClipID->text();
    }
    if (document.ofJournal) {
        root["journal"] = {{"style", style(document.work.defaults)},
                           {"exported", exported(document.work.exported)},
                           {"written", written(document.work.written)}};
    }
    return root;
}

constexpr std::size_t longestLine = 110;

/// Appends the items of an object or a list: `between` them, and before each its name if it has one.
template <class Append>
void layOutItems(std::string& text, const json& value, const std::string& first, const std::string& between,
                 Append append) {
    text += value.is_object() ? '{' : '[';
    bool isFirst = true;
    for (auto item = value.begin(); item != value.end(); ++item) {
        text += isFirst ? first : between;
        isFirst = false;
        if (value.is_object()) {
            text.append("\"").append(item.key()).append("\": ");
        }
        append(*item);
    }
    text += value.is_object() ? '}' : ']';
}

/// Appends `value` on one line, but stops soon after `mostBytes` of text.
void layOutLine(std::string& text, const json& value, std::size_t mostBytes) {
    if (text.size() > mostBytes) {
        return;
    }
    if (!value.is_structured()) {
        text += value.dump();
        return;
    }
    layOutItems(text, value, "", ", ", [&](const json& item) { layOutLine(text, item, mostBytes); });
}

/// Appends `value`, on one line if that is short. Its further lines are indented by `indent`.
void layOut(std::string& text, const json& value, std::size_t indent) {
    std::string line;
    layOutLine(line, value, longestLine);
    if (!value.is_structured() || value.empty() || line.size() + indent <= longestLine) {
        text += line;
        return;
    }
    const std::string newLine = "\n" + std::string(indent + 1, ' ');
    layOutItems(text, value, newLine, "," + newLine,
                [&](const json& item) { layOut(text, item, indent + 1); });
}

} // namespace

std::string annotationsText(const AnnotationsDocument& document) {
    std::string text;
    layOut(text, documentJson(document), 0);
    text += '\n';
    if (text.size() > AnnotationsDocument::mostBytes) {
        throw MediaError(MediaError::Cause::unwritable, "cannot save annotations: they are more than 16 MiB");
    }
    return text;
}

void writeAnnotations(const std::filesystem::path& file, const AnnotationsDocument& document) {
    const std::string text = annotationsText(document);
    files::AtomicFile output(file);
    output.write(0, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    output.commit();
}

} // namespace zelvra
