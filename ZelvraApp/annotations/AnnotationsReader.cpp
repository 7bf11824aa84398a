// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/AnnotationsReader.h"

#include "ZelvraApp/annotations/HighlightText.h"
#include "ZelvraApp/annotations/TimeText.h"
#include "ZelvraCore/records/HexText.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <initializer_list>
#include <nlohmann/json.hpp>

namespace zelvra {
namespace {

using nlohmann::json;

/// The document needs 7. Each level of a deeper one would cost stack when it is printed in an error.
constexpr int greatestDepth = 16;
/// A value takes up to 100 bytes of memory, however short its text. A highlight has 20.
constexpr int mostValues = 1 << 20;

/// The text of an error on one line that a terminal can show.
std::string oneLine(std::string text) {
    constexpr std::size_t mostBytes = 200;
    std::ranges::replace_if(text, [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    if (text.size() > mostBytes) {
        std::size_t end = mostBytes;
        while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) { // not within a character
            --end;
        }
        text.replace(end, std::string::npos, "...");
    }
    return text;
}

/// Refuses a text that would take much memory or stack, before it is parsed.
void refuseExcess(std::string_view source) {
    if (source.size() > AnnotationsDocument::mostBytes) {
        throw BadRequest("it is larger than 16 MiB");
    }
    constexpr std::string_view firstBytes = "{[\xEF"; // of a structure, or of a byte order mark
    const std::size_t begin = source.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos || firstBytes.find(source[begin]) == std::string_view::npos) {
        return; // the parser reads no further
    }
    int depth = 0;
    int values = 0;
    bool isInString = false;
    for (std::size_t i = 0; i < source.size(); ++i) {
        const char c = source[i];
        if (isInString) {
            i += c == '\\' ? 1 : 0;
            isInString = c != '"';
            continue;
        }
        isInString = c == '"';
        const bool opens = c == '[' || c == '{';
        const bool closes = c == ']' || c == '}';
        depth += (opens ? 1 : 0) - (closes ? 1 : 0);
        values += opens || c == ',' ? 1 : 0;
        if (depth > greatestDepth) {
            throw BadRequest("it is nested too deeply");
        }
        if (values > mostValues) {
            throw BadRequest("it has too many values");
        }
    }
}

json parseJson(std::string_view source) {
    refuseExcess(source);
    try {
        return json::parse(source);
    } catch (const json::parse_error& error) {
        throw BadRequest("no JSON at byte " + std::to_string(error.byte));
    } catch (const json::out_of_range&) {
        throw BadRequest("no JSON: a number is too large");
    }
}

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

const json& list(const json& value) {
    if (!value.is_array()) {
        throw BadRequest("a list is expected");
    }
    return value;
}

double number(const json& value) {
    if (!value.is_number()) {
        throw BadRequest("a number is expected, not " + value.dump());
    }
    return value.get<double>();
}

std::uint64_t wholeNumber(const json& value) {
    if (!value.is_number_unsigned()) {
        throw BadRequest("a whole number is expected, not " + value.dump());
    }
    return value.get<std::uint64_t>();
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

Point point(const json& value) {
    if (!value.is_array() || value.size() != 2) {
        throw BadRequest("a point [x, y] is expected, not " + value.dump());
    }
    return {number(value[0]), number(value[1])};
}

Color color(const json& value) {
    if (!value.is_array()) {
        return parseColor(text(value));
    }
    if (value.size() != 4) {
        throw BadRequest("a color [red, green, blue, alpha] is expected, not " + value.dump());
    }
    return {number(value[0]), number(value[1]), number(value[2]), number(value[3])};
}

Uuid identifier(const json& value) {
    const std::optional<Uuid> id = Uuid::fromText(text(value));
    if (!id) {
        throw BadRequest("not an id: " + value.dump());
    }
    return *id;
}

/// The nil id is none of a clip: among written movies it stands for the whole source.
Uuid clipIdentifier(const json& value) {
    const Uuid id = identifier(value);
    if (id == Uuid{}) {
        throw BadRequest("not the id of a clip: " + value.dump());
    }
    return id;
}

std::filesystem::path path(const json& value) {
    std::string bytes;
    if (value.is_object()) {
        const std::string hex = text(object(value, {"hex"}).value("hex", json()));
        const auto decoded = bytesOfHexText(hex);
        if (!decoded) {
            throw BadRequest("not a path: " + value.dump());
        }
        bytes.assign(decoded->begin(), decoded->end());
    } else {
        bytes = text(value);
    }
    if (bytes.find('\0') != std::string::npos) {
        throw BadRequest("not a path: " + value.dump());
    }
    return bytes;
}

/// Calls `use` with the member of that name if there is one.
template <class Use>
void with(const json& value, const char* name, Use use) {
    const auto found = value.find(name);
    if (found != value.end()) {
        use(*found);
    }
}

const json& needed(const json& value, const char* name) {
    const auto found = value.find(name);
    if (found == value.end()) {
        throw BadRequest("\"" + std::string(name) + "\" is needed");
    }
    return *found;
}

/// Runs `read` and puts `where` before the text of its errors.
template <class Read>
auto reading(const std::string& where, Read read) {
    try {
        return read();
    } catch (const BadRequest& error) {
        throw BadRequest(where + ": " + error.what());
    } catch (const ZVError& error) {
        throw BadRequest(where + ": " + error.description());
    }
}

template <class Item>
void refuseSharedIds(const std::vector<Item>& items) {
    std::vector<Uuid> ids;
    std::ranges::transform(items, std::back_inserter(ids), &Item::id);
    std::ranges::sort(ids);
    const auto twice = std::ranges::adjacent_find(ids);
    if (twice != ids.end()) {
        throw BadRequest("the id " + twice->text() + " is there twice");
    }
}

/// A fraction of ticks as the writer spells it; `nullopt` for any other text.
std::optional<CMTime> writtenTime(std::string_view text) {
    const bool rounded = text.starts_with('~');
    text.remove_prefix(rounded ? 1 : 0);
    const char* end = text.data() + text.size();
    std::int64_t ticks = 0;
    std::int32_t timescale = 0;
    const auto [slash, error] = std::from_chars(text.data(), end, ticks);
    if (error != std::errc() || slash == end || *slash != '/') {
        return std::nullopt;
    }
    const auto [stop, fault] = std::from_chars(slash + 1, end, timescale);
    if (fault != std::errc() || stop != end || timescale <= 0) {
        return std::nullopt;
    }
    CMTime time(ticks, timescale);
    time.flags |= rounded ? std::uint32_t{CMTime::hasBeenRounded} : 0U;
    return time;
}

/// Reads the parts of one document.
class DocumentReader {
public:
    explicit DocumentReader(const json& root)
        : root_(object(root, {"version", "movie", "highlights", "range", "includeAudio", "clips", "editing",
                              "activeClip", "fullViewHighlights", "journal"})),
          asItWas_(root.contains("journal")) {}

    AnnotationsDocument read() const {
        AnnotationsDocument document;
        Annotations& annotations = document.work.annotations;
        part("movie", [&](const json& movie) { document.movie = movieReference(movie); });
        annotations.highlights = highlights(root_, "highlights");
        annotations.markedClips = clips(root_);
        part("range", [&](const json& range) { readRange(range, document); });
        part("includeAudio", [&](const json& include) { document.includeAudio = truth(include); });
        part("editing", [&](const json& id) { annotations.editingClipID = clipIdentifier(id); });
        part("activeClip", [&](const json& id) { annotations.activeRoughClipID = clipIdentifier(id); });
        annotations.fullViewHighlights = highlights(root_, "fullViewHighlights");
        part("journal", [&](const json& journal) {
            document.ofJournal = true;
            readJournal(journal, document.work);
        });
        if (annotations.editingClipID && !annotations.trimRange) {
            throw BadRequest("\"editing\" needs a \"range\"");
        }
        if (!annotations.editingClipID && !annotations.fullViewHighlights.empty()) {
            throw BadRequest("\"fullViewHighlights\" needs \"editing\"");
        }
        return document;
    }

private:
    template <class Use>
    void part(const char* name, Use use) const {
        with(root_, name, [&](const json& value) { reading(name, [&] { use(value); }); });
    }

    CMTime time(const json& value) const {
        if (!value.is_string()) {
            return timeFromSeconds(number(value));
        }
        const std::optional<CMTime> ticks = writtenTime(text(value));
        return ticks && (asItWas_ || ticks->value >= 0) ? *ticks : parseTime(text(value));
    }

    Highlight highlight(const json& value) const {
        object(value, {"id", "at", "duration", "shape"});
        HighlightRequest request;
        with(value, "id", [&](const json& id) { request.id = identifier(id); });
        with(value, "at", [&](const json& at) { request.at = time(at); });
        with(value, "duration", [&](const json& duration) { request.duration = time(duration); });
        with(value, "shape", [&](const json& shape) { readShape(shape, request); });
        return made(request);
    }

    static void readShape(const json& shape, HighlightRequest& request) {
        object(shape, {"id", "kind", "p1", "p2", "color", "strokeWidthRatio"});
        with(shape, "id", [&](const json& id) { request.shapeId = identifier(id); });
        with(shape, "kind", [&](const json& kind) { request.kind = parseKind(text(kind)); });
        with(shape, "p1", [&](const json& p1) { request.p1 = point(p1); });
        with(shape, "p2", [&](const json& p2) { request.p2 = point(p2); });
        with(shape, "color", [&](const json& value) { request.color = color(value); });
        with(shape, "strokeWidthRatio", [&](const json& ratio) { request.strokeWidthRatio = number(ratio); });
    }

    /// With missing points filled in. The duration and the stroke of a journal are not checked.
    Highlight made(const HighlightRequest& request) const {
        HighlightRequest checked = request;
        if (asItWas_) {
            checked.duration = HighlightRequest{}.duration;
            checked.strokeWidthRatio = HighlightRequest{}.strokeWidthRatio;
        }
        Highlight result = makeHighlight(checked);
        result.duration = request.duration;
        result.shape.strokeWidthRatio = request.strokeWidthRatio;
        return result;
    }

    std::vector<Highlight> highlights(const json& owner, const char* name) const {
        std::vector<Highlight> result;
        with(owner, name, [&](const json& value) {
            reading(name, [&] { list(value); });
            for (const json& item : value) {
                reading("highlight " + std::to_string(result.size() + 1),
                        [&] { result.push_back(highlight(item)); });
            }
            reading(name, [&] { refuseSharedIds(result); });
        });
        std::ranges::stable_sort(result, {}, &Highlight::timestamp);
        return result;
    }

    MarkedClip clip(const json& value) const {
        object(value, {"id", "start", "end", "duration", "highlights"});
        if (!value.contains("start") || value.contains("end") == value.contains("duration")) {
            throw BadRequest("\"start\" and \"end\" are needed");
        }
        return {value.contains("id") ? clipIdentifier(value["id"]) : Uuid::random(),
                stretch(value, "start", "end"), highlights(value, "highlights")};
    }

    std::vector<MarkedClip> clips(const json& owner) const {
        std::vector<MarkedClip> result;
        with(owner, "clips", [&](const json& value) {
            reading("clips", [&] { list(value); });
            for (const json& item : value) {
                reading("clip " + std::to_string(result.size() + 1), [&] { result.push_back(clip(item)); });
            }
            reading("clips", [&] { refuseSharedIds(result); });
        });
        return result;
    }

    /// From the member `start` to the member `end`, or "duration" long. Requires `start` and one of these.
    CMTimeRange stretch(const json& value, const char* start, const char* end) const {
        const CMTime from = time(value[start]);
        const CMTimeRange range = value.contains(end) ? CMTimeRange::fromStartToEnd(from, time(value[end]))
                                                      : CMTimeRange{from, time(value["duration"])};
        if (!range.duration.isNumeric() || !range.end().isNumeric()) {
            throw BadRequest("it is too long");
        }
        if (!asItWas_ && range.duration <= CMTime::zero()) {
            throw BadRequest("it ends before it starts");
        }
        return range;
    }

    void readRange(const json& value, AnnotationsDocument& document) const {
        object(value, {"from", "to", "duration"});
        if (value.contains("duration") && (value.contains("to") || !value.contains("from"))) {
            throw BadRequest("\"duration\" needs \"from\" and no \"to\"");
        }
        if (value.contains("from") && (value.contains("to") || value.contains("duration"))) {
            document.work.annotations.trimRange = stretch(value, "from", "to");
            return;
        }
        with(value, "from", [&](const json& from) { document.from = time(from); });
        with(value, "to", [&](const json& to) { document.to = time(to); });
    }

    void readJournal(const json& journal, ClipWork& work) const {
        object(journal, {"style", "exported", "written"});
        with(journal, "style",
             [&](const json& value) { work.defaults = reading("style", [&] { return style(value); }); });
        with(journal, "exported", [&](const json& value) {
            work.exported = reading("exported", [&] { return exported(value); });
        });
        with(journal, "written",
             [&](const json& value) { reading("written", [&] { readWritten(value, work); }); });
    }

    static HighlightDefaults style(const json& value) {
        object(value, {"color", "radiusRatio", "strokeWidthRatio", "duration"});
        return {.color = color(needed(value, "color")),
                .radiusRatio = number(needed(value, "radiusRatio")),
                .strokeWidthRatio = number(needed(value, "strokeWidthRatio")),
                .durationSec = number(needed(value, "duration"))};
    }

    ExportedWork exported(const json& value) const {
        object(value, {"highlights", "range", "clips"});
        ExportedWork work{
            .highlights = highlights(value, "highlights"), .trimRange = {}, .markedClips = clips(value)};
        with(value, "range", [&](const json& range) {
            object(range, {"from", "to", "duration"});
            needed(range, "from");
            needed(range, range.contains("duration") ? "duration" : "to");
            work.trimRange = stretch(range, "from", "to");
        });
        return work;
    }

    static void readWritten(const json& value, ClipWork& work) {
        for (const json& item : list(value)) {
            object(item, {"clip", "path", "size"});
            const Uuid clip = item.contains("clip") ? clipIdentifier(item["clip"]) : Uuid{};
            const WrittenMovie movie{path(needed(item, "path")), wholeNumber(needed(item, "size"))};
            if (!work.written.emplace(clip, movie).second) {
                throw BadRequest("the same clip twice");
            }
        }
    }

    static MovieReference movieReference(const json& value) {
        object(value, {"path", "size", "digest"});
        MovieReference movie{path(needed(value, "path")), {.size = wholeNumber(needed(value, "size"))}};
        const json& digest = needed(value, "digest");
        const auto bytes = bytesOfHexText(text(digest));
        if (!bytes || bytes->size() != movie.identity.digest.size()) {
            throw BadRequest("not a digest: " + digest.dump());
        }
        std::ranges::copy(*bytes, movie.identity.digest.begin());
        return movie;
    }

    const json& root_;
    bool asItWas_; ///< saved by the journal, so values are not checked for sense
};

/// The names in a newer document are not refused one by one.
void refuseNewer(const json& root) {
    if (!root.is_object()) {
        return;
    }
    with(root, "version", [](const json& value) {
        const std::uint64_t version = reading("version", [&] { return wholeNumber(value); });
        if (version > AnnotationsDocument::version) {
            throw BadRequest("written by a newer version (" + std::to_string(version) + ")");
        }
        if (version == 0) {
            throw BadRequest("version: there is no version 0");
        }
    });
}

std::string contentOf(const std::filesystem::path& file) {
    std::error_code unknown; // opening the file then reports the error
    if (!std::filesystem::exists(file, unknown) && !unknown) {
        throw ZVError::fileNotFound(file.string());
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw MediaError::cannotRead(file.string(), systemReason(errno));
    }
    std::string content;
    constexpr std::size_t pieceBytes = 64 << 10;
    while (stream && content.size() <= AnnotationsDocument::mostBytes) {
        const std::size_t held = content.size();
        content.resize(held + pieceBytes);
        stream.read(content.data() + held, pieceBytes);
        content.resize(held + static_cast<std::size_t>(stream.gcount()));
    }
    if (stream.bad()) {
        throw MediaError::cannotRead(file.string(), systemReason(EIO));
    }
    return content;
}

} // namespace

AnnotationsDocument parseAnnotations(std::string_view source) {
    try {
        const json root = parseJson(source);
        refuseNewer(root);
        return DocumentReader(root).read();
    } catch (const BadRequest& error) {
        throw BadRequest(oneLine(error.what()));
    }
}

AnnotationsDocument readAnnotations(const std::filesystem::path& file) {
    const std::string content = contentOf(file);
    try {
        return parseAnnotations(content);
    } catch (const BadRequest& error) {
        throw MediaError::cannot(MediaError::Cause::corrupt, "read", file.string(), error.what());
    }
}

} // namespace zelvra
