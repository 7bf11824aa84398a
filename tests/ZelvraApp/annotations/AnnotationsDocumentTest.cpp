// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraApp/annotations/BadRequest.h"
#include "ZelvraApp/annotations/Identical.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tests/support/Files.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sys/stat.h>
#include <thread>

namespace zelvra::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string complaintAbout(const std::string& json) {
    try {
        parseAnnotations(json);
    } catch (const BadRequest& error) {
        return error.what();
    }
    return "understood";
}

TEST(AnnotationsDocument, HoldsHighlightsRangeAndSoundAsAPersonWritesThem) {
    const AnnotationsDocument read = parseAnnotations(R"({
        "highlights": [
            {"at": "01:15.5", "duration": 1.25,
             "shape": {"kind": "rectangle", "p1": [0.1, 0.2], "p2": [0.5, 0.6],
                       "color": "#FF0000", "strokeWidthRatio": 0.02}},
            {"at": 12.5}],
        "range": {"from": "10/1", "to": 80}, "includeAudio": false,
        "clips": [{"start": 60, "end": "01:15.5"}, {"start": 2, "duration": 3, "highlights": [{"at": 4}]}]})");
    const auto& [highlights, trim, clips, editing, active, fullView] = read.work.annotations;
    ASSERT_EQ(highlights.size(), 2U);
    EXPECT_EQ(highlights[0].timestamp, CMTime(25, 2)) << "sorted";
    EXPECT_EQ(highlights[0].duration, CMTime(3, 1));
    EXPECT_EQ(highlights[1].duration, CMTime(5, 4));
    EXPECT_EQ(highlights[1].shape.kind, HighlightShapeKind::rectangle);
    EXPECT_EQ(highlights[1].shape.p2, (Point{0.5, 0.6}));
    EXPECT_EQ(highlights[1].shape.strokeWidthRatio, 0.02);
    EXPECT_NE(highlights[0].id, highlights[1].id);
    ASSERT_TRUE(trim);
    EXPECT_EQ(trim->start, CMTime(10, 1));
    EXPECT_EQ(trim->end(), CMTime(80, 1));
    EXPECT_EQ(read.includeAudio, false);
    ASSERT_EQ(clips.size(), 2U);
    EXPECT_EQ(clips[0].range.end(), CMTime(151, 2));
    EXPECT_EQ(clips[1].range.end(), CMTime(5, 1)) << "clips keep their order";
    EXPECT_EQ(clips[1].highlights.size(), 1U);
    EXPECT_FALSE(read.ofJournal);

    const AnnotationsDocument half = parseAnnotations(R"({"range": {"from": 2}, "version": 1})");
    EXPECT_EQ(half.from, CMTime(2, 1));
    EXPECT_FALSE(half.to || half.work.annotations.trimRange);
}

/// Contents that no person would write, with every field that a document has.
class RandomDocuments {
public:
    AnnotationsDocument next() {
        AnnotationsDocument document;
        Annotations& annotations = document.work.annotations;
        document.ofJournal = true;
        annotations = {highlights(), optional([&] { return range(); }), clips(), {}, {}, {}};
        if (annotations.trimRange && one(2)) {
            annotations.editingClipID = id();
            annotations.fullViewHighlights = highlights();
        }
        if (!annotations.trimRange) {
            document.from = optional([&] { return time(); });
            document.to = document.from ? std::nullopt : optional([&] { return time(); });
        }
        annotations.activeRoughClipID = optional([&] { return id(); });
        document.includeAudio = optional([&] { return one(2); });
        document.movie = optional([&] { return movie(); });
        document.work.defaults = {color(), real(), real(), real()};
        document.work.exported = {highlights(), optional([&] { return range(); }), clips()};
        document.work.written[Uuid{}] = {path(), bits()};
        document.work.written[id()] = {path(), bits()};
        return document;
    }

private:
    std::uint64_t bits() { return dice_(); }
    bool one(unsigned of) { return dice_() % of == 0; }
    template <class Make>
    auto optional(Make make) -> std::optional<decltype(make())> {
        return one(3) ? std::nullopt : std::optional(make());
    }

    /// Any finite number: subnormal, huge, or short.
    double real() {
        double number = std::bit_cast<double>(bits());
        while (!std::isfinite(number)) {
            number = std::bit_cast<double>(bits());
        }
        const double some[]{number, 0, -0.0, 0.1, 3, DBL_MIN, DBL_TRUE_MIN, DBL_MAX, -1e-5};
        return some[dice_() % std::size(some)];
    }
    CMTime time() {
        const std::int32_t scales[]{1, 600, 360'000, 90'000, 30'000, 1001, INT32_MAX};
        CMTime time(static_cast<std::int64_t>(bits() % 10'000'000), scales[dice_() % std::size(scales)]);
        time.value = one(5) ? -time.value : time.value;
        time.value = one(20) ? INT64_MAX / 2 : time.value;
        time.flags |= one(4) ? std::uint32_t{CMTime::hasBeenRounded} : 0U;
        return time;
    }
    CMTimeRange range() { return {time(), one(2) ? CMTime(bits() % 9000, 600) : time()}; }
    Color color() {
        const auto byte = [&] { return static_cast<double>(dice_() % 256) / 255; };
        return one(2) ? Color{byte(), byte(), byte(), 1} : Color{real(), real(), real(), real()};
    }
    Uuid id() {
        Uuid uuid;
        std::ranges::generate(uuid.bytes, [&] { return static_cast<std::uint8_t>(dice_()); });
        return uuid;
    }
    std::vector<Highlight> highlights() {
        std::vector<Highlight> list(dice_() % 4);
        for (Highlight& highlight : list) {
            highlight = {id(),
                         time(),
                         time(),
                         {id(),
                          static_cast<HighlightShapeKind>(dice_() % 3),
                          {real(), real()},
                          {real(), real()},
                          color(),
                          real()}};
        }
        std::ranges::stable_sort(list, {}, &Highlight::timestamp);
        return list;
    }
    std::vector<MarkedClip> clips() {
        std::vector<MarkedClip> list(dice_() % 3);
        for (MarkedClip& clip : list) {
            clip = {id(), range(), highlights()};
        }
        return list;
    }
    std::filesystem::path path() {
        const std::string names[]{
            "/games/match.mp4",   "/spiele/größe \"1\".mp4", "/\xE9t\xE9.mp4", "/\xED\xA0\x80", "",
            "/line\nbreak\\.mp4", "/\xF0\x9F\x8F\x80"};
        return names[dice_() % std::size(names)];
    }
    MovieReference movie() {
        MovieReference movie{path(), {.size = bits()}};
        std::ranges::generate(movie.identity.digest, [&] { return static_cast<std::uint8_t>(dice_()); });
        return movie;
    }

    std::mt19937_64 dice_{20240607};
};

void expectIdentical(const AnnotationsDocument& read, const AnnotationsDocument& written) {
    EXPECT_TRUE(identical(read.work, written.work));
    EXPECT_EQ(read.ofJournal, written.ofJournal);
    EXPECT_EQ(read.movie, written.movie);
    EXPECT_TRUE(identical(read.from, written.from));
    EXPECT_TRUE(identical(read.to, written.to));
    EXPECT_EQ(read.includeAudio, written.includeAudio);
}

TEST(AnnotationsDocument, IsReadAsItWasWritten) {
    RandomDocuments documents;
    for (int i = 0; i < 1000 && !testing::Test::HasFailure(); ++i) {
        const AnnotationsDocument written = documents.next();
        const std::string text = annotationsText(written);
        SCOPED_TRACE(text);
        const AnnotationsDocument read = parseAnnotations(text);
        expectIdentical(read, written);
        EXPECT_EQ(std::signbit(read.work.defaults.radiusRatio),
                  std::signbit(written.work.defaults.radiusRatio));
        EXPECT_EQ(annotationsText(read), text);
    }
}

TEST(AnnotationsDocument, IsLaidOutForPeople) {
    AnnotationsDocument document;
    document.includeAudio = true;
    document.work.annotations.trimRange = CMTimeRange::fromStartToEnd({900, 600}, {4'500'000, 360'000});
    document.work.annotations.highlights = {
        {.id = *Uuid::fromText("00000000-0000-4000-8000-000000000001"),
         .timestamp = {1, 3},
         .duration = {720'000, 360'000},
         .shape = {.id = *Uuid::fromText("00000000-0000-4000-8000-000000000002"),
                   .p1 = {0.5, 0.5},
                   .p2 = {0.5, 0.25},
                   .strokeColor = {1, 0.8, 0, 1},
                   .strokeWidthRatio = 0.004}}};
    EXPECT_EQ(annotationsText(document), R"({
 "version": 1,
 "highlights": [
  {
   "id": "00000000-0000-4000-8000-000000000001",
   "at": "1/3",
   "duration": 2.0,
   "shape": {
    "id": "00000000-0000-4000-8000-000000000002",
    "kind": "circle",
    "p1": [0.5, 0.5],
    "p2": [0.5, 0.25],
    "color": "#FFCC00",
    "strokeWidthRatio": 0.004}}],
 "range": {"from": "900/600", "to": 12.5},
 "includeAudio": true,
 "clips": []}
)");
}

TEST(AnnotationsDocument, ReportsWhereTheMistakeIs) {
    const auto highlight = [](const std::string& members) {
        return complaintAbout(R"({"highlights": [{"at": 1}, {)" + members + "}]}");
    };
    EXPECT_EQ(complaintAbout("{"), "no JSON at byte 2");
    EXPECT_EQ(complaintAbout("[]"), "an object is expected, not []");
    EXPECT_EQ(complaintAbout(R"({"highlight": []})"), "unknown name \"highlight\"");
    EXPECT_EQ(complaintAbout(R"({"highlights": {}})"), "highlights: a list is expected");
    EXPECT_EQ(highlight(R"("at": -1)"), "highlight 2: invalid timestamp: -1.000000");
    EXPECT_EQ(highlight(R"("at": "-1/1")"), "highlight 2: invalid timestamp: -1/1");
    EXPECT_EQ(highlight(R"("at": "1/0")"), "highlight 2: invalid timestamp: 1/0");
    EXPECT_THAT(highlight(R"("at": 1e300)"), HasSubstr("highlight 2: invalid timestamp: 1000000000"));
    EXPECT_EQ(highlight(R"("at": 1, "duration": 0)"),
              "highlight 2: a highlight's duration must be above zero");
    EXPECT_EQ(highlight(R"("at": 1, "id": "7")"), "highlight 2: not an id: \"7\"");
    EXPECT_EQ(complaintAbout(
                  R"({"clips": [{"start": 1, "end": 2, "id": "00000000-0000-0000-0000-000000000000"}]})"),
              "clip 1: not the id of a clip: \"00000000-0000-0000-0000-000000000000\"");
    EXPECT_EQ(highlight(R"("at": 1, "shape": {"p1": [1]})"),
              "highlight 2: a point [x, y] is expected, not [1]");
    EXPECT_EQ(highlight(R"("at": 1, "shape": {"p1": [1, null]})"),
              "highlight 2: a number is expected, not null");
    EXPECT_EQ(highlight(R"("at": 1, "shape": {"color": 7})"), "highlight 2: a text is expected, not 7");
    EXPECT_EQ(highlight(R"("at": 1, "shape": {"color": [1, 1, 1]})"),
              "highlight 2: a color [red, green, blue, alpha] is expected, not [1,1,1]");
    EXPECT_EQ(highlight(R"("at": 1, "id": "00000000-0000-4000-8000-000000000001"},
                           {"at": 2, "id": "00000000-0000-4000-8000-000000000001")"),
              "highlights: the id 00000000-0000-4000-8000-000000000001 is there twice");
    EXPECT_EQ(complaintAbout(R"({"highlights": [{"at": 1e999}]})"), "no JSON: a number is too large");
    EXPECT_EQ(complaintAbout(R"({"range": {"from": "x"}})"), "range: invalid timestamp: x");
    EXPECT_EQ(complaintAbout(R"({"range": {"from": 2, "to": 1}})"), "range: it ends before it starts");
    EXPECT_EQ(complaintAbout(R"({"range": {"duration": 2}})"),
              "range: \"duration\" needs \"from\" and no \"to\"");
    EXPECT_EQ(complaintAbout(R"({"clips": [{"start": 1}]})"), "clip 1: \"start\" and \"end\" are needed");
    EXPECT_EQ(complaintAbout(R"({"clips": [{"start": "9223372036854775807/1", "duration": 9}]})"),
              "clip 1: it is too long");
    EXPECT_EQ(complaintAbout(R"({"includeAudio": 1})"), "includeAudio: true or false is expected, not 1");
    EXPECT_EQ(complaintAbout(R"({"movie": {"path": "x", "size": 1}})"), "movie: \"digest\" is needed");
    EXPECT_EQ(complaintAbout(R"({"movie": {"path": "x", "size": 1, "digest": "00"}})"),
              "movie: not a digest: \"00\"");
    EXPECT_EQ(complaintAbout(R"({"movie": {"path": {"hex": "0"}, "size": 1, "digest": ""}})"),
              "movie: not a path: {\"hex\":\"0\"}");
    EXPECT_EQ(complaintAbout(R"({"movie": {"path": "a\u0000b", "size": 1, "digest": ""}})"),
              "movie: not a path: \"a\\u0000b\"");
    EXPECT_EQ(complaintAbout(R"({"movie": {"path": "x", "size": -1, "digest": ""}})"),
              "movie: a whole number is expected, not -1");
    EXPECT_EQ(
        complaintAbout(R"({"journal": {"written": [{"path": "x", "size": 1}, {"path": "y", "size": 1}]}})"),
        "journal: written: the same clip twice");
    EXPECT_EQ(complaintAbout(R"({"journal": {"exported": {"highlights": [7]}}})"),
              "journal: exported: highlight 1: an object is expected, not 7");
    EXPECT_EQ(complaintAbout(R"({"editing": "00000000-0000-4000-8000-000000000001"})"),
              "\"editing\" needs a \"range\"");
    EXPECT_EQ(complaintAbout(R"({"fullViewHighlights": [{"at": 1}]})"),
              "\"fullViewHighlights\" needs \"editing\"");
}

TEST(AnnotationsDocument, OfANewerVersionIsReportedAsSuch) {
    EXPECT_EQ(complaintAbout(R"({"version": 2, "stickers": []})"), "written by a newer version (2)");
    EXPECT_EQ(complaintAbout(R"({"version": 18446744073709551615})"),
              "written by a newer version (18446744073709551615)");
    EXPECT_EQ(complaintAbout(R"({"version": 0})"), "version: there is no version 0");
    EXPECT_EQ(complaintAbout(R"({"version": "1"})"), "version: a whole number is expected, not \"1\"");

    const TemporaryFolder folder;
    std::ofstream(folder / "x.json") << R"({"version": 2})";
    try {
        readAnnotations(folder / "x.json");
        FAIL();
    } catch (const MediaError& error) {
        EXPECT_EQ(error.what(),
                  "cannot read '" + (folder / "x.json").string() + "': written by a newer version (2)");
        EXPECT_EQ(error.cause(), MediaError::Cause::corrupt);
    }
}

TEST(AnnotationsDocument, MadeToDoHarmIsRefusedInOneShortLine) {
    const auto repeated = [](const std::string& text, std::size_t count) {
        std::string result;
        while (count-- > 0) {
            result += text;
        }
        return result;
    };
    const std::string wide = R"({"highlights": [[)" + repeated("1,", 100'000) + "1]]}";
    for (const std::string& json :
         {repeated("[", 1'000'000), repeated(R"({"a":)", 1'000'000), "[" + repeated("[],", 2'000'000) + "1]",
          std::string(AnnotationsDocument::mostBytes + 1, ' '), wide, "{\"" + repeated("é", 5000) + "\": 1}",
          std::string("{\"a\\nb\\u001b[2J\": 1}"), std::string(R"({"range": {"from": "1\n2"}})"),
          std::string("{\"\xFF\": 1}")}) {
        const std::string line = complaintAbout(json);
        EXPECT_NE(line, "understood");
        EXPECT_LE(line.size(), 210U);
        EXPECT_TRUE(std::ranges::none_of(line, [](unsigned char c) { return c < ' '; })) << line;
    }
    EXPECT_EQ(complaintAbout(repeated("[", 1'000'000)), "it is nested too deeply");
}

TEST(AnnotationsDocument, ThatCouldNotBeReadAgainIsNotWritten) {
    const TemporaryFolder folder;
    const auto file = folder / "notes.json";
    AnnotationsDocument document;
    document.work.annotations.highlights = {Highlight()};
    EXPECT_THROW(writeAnnotations(file, document), MediaError);
    const Highlight plain{.id = {}, .timestamp = {1, 1}, .duration = {1, 1}, .shape = {}};
    document.work.annotations.highlights = {plain};
    document.work.annotations.highlights[0].shape.p1.x = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THROW(writeAnnotations(file, document), MediaError);
    document.work.annotations.highlights = {plain};
    document.movie = MovieReference{std::string(AnnotationsDocument::mostBytes, 'x'), {}};
    EXPECT_THROW(writeAnnotations(file, document), MediaError);
    EXPECT_THAT(folder.names(), ElementsAre());

    document.movie.reset();
    document.work.annotations.highlights.assign(5000, plain);
    for (Highlight& highlight : document.work.annotations.highlights) {
        highlight.id = Uuid::random();
        highlight.shape.id = highlight.id;
    }
    writeAnnotations(file, document);
    EXPECT_TRUE(identical(readAnnotations(file).work.annotations, document.work.annotations));
    EXPECT_THAT(folder.names(), ElementsAre("notes.json"));
    EXPECT_THROW(writeAnnotations(folder / "missing/notes.json", document), MediaError);
}

TEST(AnnotationsDocument, IsReadFromAPipeAndNotFromAFolder) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    std::jthread writer([&] { std::ofstream(folder / "pipe") << R"({"highlights": [{"at": 1}]})"; });
    EXPECT_EQ(readAnnotations(folder / "pipe").work.annotations.highlights.size(), 1U);
    EXPECT_THROW(readAnnotations(folder.path()), MediaError);
    EXPECT_THROW(readAnnotations(folder / "missing"), ZVError);
    EXPECT_THROW(readAnnotations("/dev/zero"), MediaError) << "endless, and not read to the end";
}

} // namespace
} // namespace zelvra::test
