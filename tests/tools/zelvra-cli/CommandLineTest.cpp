// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/journal/Journal.h"
#include "ZelvraCore/media/IdentifyMovie.h"
#include "tests/support/Files.h"
#include "tests/support/MovieReading.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sys/stat.h>

namespace zelvra::test {
namespace {

/// Runs the real program, as a script would.
ProcessResult cli(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), ZELVRA_CLI);
    return runProcess(arguments);
}

const NumberedMovie numbered{.frames = 60, .sound = SoundCodec::aac, .container = "mp4"};

/// The disc of a marker in the syntax of the command line.
std::string marker(int cell, const std::string& at, const std::string& duration) {
    const Highlight disc = markerHighlight(cell, CMTime::zero(), CMTime(1, 1), {320, 180});
    const auto place = [](Point point) { return std::to_string(point.x) + ":" + std::to_string(point.y); };
    return "at=" + at + ",duration=" + duration + ",p1=" + place(disc.shape.p1) +
           ",p2=" + place(disc.shape.p2) +
           ",color=#FFFFFF,stroke=" + std::to_string(disc.shape.strokeWidthRatio);
}

TEST(CommandLine, ProbesAMovieAsJson) {
    const ProcessResult result = cli({"probe", movieFile(numbered)});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const nlohmann::json info = nlohmann::json::parse(result.output);
    EXPECT_EQ(info["naturalSize"], (nlohmann::json{{"width", 320.0}, {"height", 180.0}}));
    EXPECT_EQ(info["displaySize"], info["naturalSize"]);
    EXPECT_EQ(info["preferredTransform"], (nlohmann::json{1.0, 0.0, 0.0, 1.0, 0.0, 0.0}));
    EXPECT_EQ(info["frameDuration"]["seconds"], 1 / 30.0);
    EXPECT_NEAR(info["duration"]["seconds"].get<double>(), 2.0, 0.03);
    EXPECT_EQ(info["nominalFrameRate"], 30.0);
    EXPECT_EQ(info["hasAudio"], true);
    EXPECT_EQ(info["videoCodec"], "avc1");
}

TEST(CommandLine, SavesTheFrameThatIsOnScreen) {
    const TemporaryFolder folder;
    const ProcessResult result =
        cli({"frame", movieFile(numbered), "--at", "0.733333", "--output", folder / "frame.png"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, (folder / "frame.png").string() + "\n");
    EXPECT_EQ(showMovie(folder / "frame.png").frames.at(0).number, 22);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"frame.png"});
}

TEST(CommandLine, ExportsHighlightsOfBothKindsWithinARange) {
    const TemporaryFolder folder;
    std::ofstream(folder / "notes.json") << R"({"highlights": [{"at": "40/30", "duration": 0.2}],
                                                "range": {"from": 0.5, "to": 0.6}, "includeAudio": false})";
    const ProcessResult result =
        cli({"export", movieFile(numbered), "--output", folder / "out.mp4", "--to", "1.5", "--highlight",
             marker(5, "1", "0.5"), "--annotations", folder / "notes.json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, (folder / "out.mp4").string() + "\n");
    EXPECT_TRUE(result.errors.ends_with("100 %\n")) << result.errors;

    const ShownMovie shown = showMovie(folder / "out.mp4");
    EXPECT_EQ(shown.frames.front().number, 15) << "the file's range, for what the command line leaves open";
    EXPECT_EQ(shown.frames.back().number, 44);
    for (const ShownFrame& frame : shown.frames) {
        const bool frozen = frame.time >= CMTime(1, 2) && frame.time < CMTime(1, 1);
        EXPECT_EQ(frame.marker, frozen ? std::optional(5) : std::nullopt) << frame;
    }
    EXPECT_TRUE(readSound(folder / "out.mp4").samples.empty());
    EXPECT_EQ(cli({"export", movieFile(numbered), "--output", folder / "out.mp4", "--quiet"}).errors, "");
}

TEST(CommandLine, DistinguishesFailureFromWrongUsageInOneLine) {
    const TemporaryFolder folder;
    const std::string movie = movieFile(numbered);
    const std::string out = folder / "out.mp4";
    const auto expect = [](const std::vector<std::string>& arguments, int code, const std::string& part) {
        const ProcessResult result = cli(arguments);
        EXPECT_EQ(result.exitCode, code) << result.errors;
        EXPECT_NE(result.errors.find(part), std::string::npos) << result.errors;
        EXPECT_EQ(result.output, "");
        if (code == 1) {
            EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        }
    };
    expect({"probe", "/nowhere.mp4"}, 1, "file not found: /nowhere.mp4");
    expect({"frame", movie, "--at", "9", "--output", out}, 1, "");
    expect({"export", movie, "--output", movie}, 1, "");
    expect({"export", movie, "--output", out, "--annotations", movie}, 1, "no JSON");
    expect({}, 2, "");
    expect({"probe"}, 2, "movie");
    expect({"frame", movie, "--at", "x", "--output", out}, 2, "invalid timestamp: x");
    expect({"frame", movie, "--at", "", "--output", out}, 2, "invalid timestamp: ");
    expect({"export", movie, "--output", out, "--from", ""}, 2, "invalid timestamp: ");
    expect({"export", movie, "--output", out, "--to", ""}, 2, "invalid timestamp: ");
    expect({"export", movie, "--output", out, "--from", "2", "--to", "1"}, 2,
           "the range ends before it starts");
    expect({"export", movie, "--output", out, "--highlight", "kind=circle"}, 2, "at=T");
    EXPECT_TRUE(folder.names().empty());
    EXPECT_EQ(cli({"--help"}).exitCode, 0);
}

TEST(CommandLine, NamesWhatAnExportLeavesOut) {
    const TemporaryFolder folder;
    std::ofstream(folder / "notes.json") << R"({"clips": [{"start": 0, "end": 0.5}]})";
    const ProcessResult result =
        cli({"export", movieFile(numbered), "--quiet", "--output", folder / "out.mp4", "--from", "0.5",
             "--to", "1", "--highlight", "at=0.75", "--highlight", "at=1.25", "--highlight", "at=900",
             "--annotations", folder / "notes.json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "The file '" + (folder / "notes.json").string() +
                                 "' marks only clips, which the command 'clips' exports.\n"
                                 "The highlight at 1.25 s is outside the exported range.\n"
                                 "The highlight at 900 s is outside the exported range.\n");
}

TEST(CommandLine, NeverWritesOverWhatItReadsNorIntoPipesAndFolders) {
    const TemporaryFolder folder;
    const std::filesystem::path game = folder / "game.mp4";
    std::filesystem::copy_file(movieFile(numbered), game);
    std::filesystem::create_symlink(game, folder / "link.mp4");
    std::filesystem::create_hard_link(game, folder / "twin.mp4");
    const std::filesystem::path notes = folder / "notes.json";
    std::ofstream(notes) << R"({"highlights": [{"at": 1}]})";
    std::filesystem::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const std::vector<std::string> names = folder.names();

    const auto expectRefusal = [&](const std::string& output, const std::string& part) {
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"frame", game, "--at", "0"},
              std::vector<std::string>{"export", game, "--quiet", "--annotations", notes},
              std::vector<std::string>{"export", game, "--quiet"}}) {
            if (output == "notes.json" && command.size() != 5) {
                continue; // not read by this one
            }
            std::vector<std::string> arguments = command;
            arguments.insert(arguments.end(), {"--output", folder / output});
            const ProcessResult result = cli(arguments);
            EXPECT_EQ(result.exitCode, 1) << command[0] << ' ' << output;
            EXPECT_NE(result.errors.find(part), std::string::npos) << result.errors;
            EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        }
    };
    for (const char* source : {"game.mp4", "link.mp4", "twin.mp4"}) {
        expectRefusal(source, "the output would replace the source movie: ");
    }
    expectRefusal("notes.json", "the output would replace the annotations: ");
    expectRefusal("folder", "': Is a directory");
    expectRefusal("pipe", "': it is no regular file");
    EXPECT_EQ(readBytes(game), readBytes(movieFile(numbered)));
    EXPECT_EQ(folder.names(), names);
}

TEST(CommandLine, ExportsEachMarkedClipAsTheApplicationDoes) {
    const TemporaryFolder folder;
    const std::filesystem::path game = folder / "game.mp4";
    std::filesystem::copy_file(movieFile(numbered), game);
    const auto clips = [&](const std::string& annotations, std::vector<std::string> more) {
        std::ofstream(folder / "notes.json") << annotations;
        std::vector<std::string> arguments{"clips", game, "--annotations", folder / "notes.json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return cli(arguments);
    };
    const std::string two = R"({"clips": [{"start": 0, "end": 0.5},
        {"start": 1, "end": "45/30", "highlights": [{"at": 1.2, "duration": 0.5}]}], "includeAudio": false})";
    const ProcessResult result = clips(two, {"--folder", folder / "out"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const std::filesystem::path second = folder / "out" / "game_clip_02_highlighted.mp4";
    EXPECT_EQ(result.output,
              (folder / "out" / "game_clip_01_highlighted.mp4").string() + "\n" + second.string() + "\n");
    EXPECT_NEAR(std::stod(probe(second, {"-show_format"})["format"]["duration"].get<std::string>()), 1, 0.01);
    EXPECT_EQ(probe(second, {"-show_streams"})["streams"].size(), 1U);

    std::filesystem::create_directories(folder / "mine" / "game_clip_02_highlighted.mp4");
    const ProcessResult failed = clips(two, {"--subfolder", "mine", "--quiet"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(failed.errors.starts_with("Clip 2 failed: ")) << failed.errors;
    EXPECT_TRUE(std::filesystem::is_regular_file(folder / "mine" / "game_clip_01_highlighted.mp4"));
    for (const char* bad : {R"({"clips": [{"start": 1, "end": 1}]})", R"({"clips": [{"start": 1}]})", "{}"}) {
        EXPECT_NE(clips(bad, {}).exitCode, 0) << bad;
    }
}

TEST(CommandLine, PrintsWhatTheApplicationKeepsOfAMovie) {
    const TemporaryFolder folder;
    setenv("ZELVRA_STATE", (folder / "state").c_str(), 1);
    const std::filesystem::path game = folder / "game.mp4";
    std::filesystem::copy_file(movieFile(numbered), game);
    const ProcessResult nothing = cli({"annotations", game});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_EQ(nothing.errors, "no annotations of '" + game.string() + "' are known\n");
    EXPECT_EQ(cli({"annotations", "/nowhere.mp4"}).errors, "file not found: /nowhere.mp4\n");
    EXPECT_EQ(folder.names(), std::vector<std::string>{"game.mp4"}) << "asking leaves no trace";

    ClipWork work;
    work.annotations.highlights = {markerHighlight(5, CMTime(1, 1), CMTime(1, 2), {320, 180})};
    work.annotations.trimRange = CMTimeRange{CMTime(1, 2), CMTime(1, 1)};
    Journal(folder / "state").write(media::identifyMovie(game), game, work);
    std::filesystem::rename(game, folder / "renamed.mp4");
    const ProcessResult known = cli({"annotations", folder / "renamed.mp4"});
    ASSERT_EQ(known.exitCode, 0) << known.errors;
    EXPECT_TRUE(identical(parseAnnotations(known.output).work, work));

    std::ofstream(folder / "notes.json") << known.output;
    const ProcessResult result = cli({"export", folder / "renamed.mp4", "--output", folder / "out.mp4",
                                      "--annotations", folder / "notes.json"});
    unsetenv("ZELVRA_STATE");
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const ShownMovie shown = showMovie(folder / "out.mp4");
    EXPECT_EQ(shown.frames.front().number, 15);
    EXPECT_EQ(shown.frames.back().number, 44);
    EXPECT_TRUE(std::ranges::any_of(shown.frames, [](const ShownFrame& frame) { return frame.marker == 5; }));
}

TEST(CommandLine, HasEveryOptionInItsCompletionAndManualPage) {
    const std::string packaging = ZELVRA_PACKAGING;
    const ProcessResult manual =
        runProcess({"groff", "-man", "-Tutf8", "-P-cbou", "-ww", packaging + "/man/zelvra-cli.1"});
    EXPECT_EQ(manual.errors, "") << "groff finds fault with the manual page";
    for (const std::string command : {"probe", "frame", "export", "clips", "annotations"}) {
        const std::string help = cli({command, "--help"}).output;
        const std::string complete = "source \"$0\"; COMP_WORDS=(zelvra-cli \"$1\" --); COMP_CWORD=2; "
                                     "_zelvra_cli; echo \"${COMPREPLY[*]} \"";
        const ProcessResult completed =
            runProcess({"bash", "-c", complete, packaging + "/completions/zelvra-cli.bash", command});
        const std::regex option("--[a-z-]+");
        for (std::sregex_iterator found(help.begin(), help.end(), option), end; found != end; ++found) {
            EXPECT_NE(completed.output.find(found->str() + " "), std::string::npos)
                << command << found->str();
            EXPECT_NE(manual.output.find(found->str()), std::string::npos) << command << found->str();
        }
    }
}

/// Runs the program in the background and interrupts it as soon as there is a freeze clip, and the output
/// that must be `finished` by then. Job control lets SIGINT reach a background job.
ProcessResult interrupted(const TemporaryFolder& folder, const std::string& arguments,
                          const std::string& finished = "") {
    const std::string command = "TMPDIR=" + folder.path().string() + " " + ZELVRA_CLI + " " + arguments;
    const std::string underWay = "ls " + folder.path().string() + " | grep -q zv_freeze_ && [ -e " +
                                 (folder / finished).string() + " ]";
    return runProcess(
        {"bash", "-c",
         "set -m; " + command + " & until " + underWay + "; do sleep 0.02; done; kill -INT $!; wait $!"});
}

const NumberedMovie large{.width = 1280, .height = 720, .frames = 30};

TEST(CommandLine, LeavesNoFilesWhenInterrupted) {
    const TemporaryFolder folder;
    std::string arguments =
        "export " + movieFile(large).string() + " --output " + (folder / "out.mp4").string();
    for (int i = 0; i < 40; ++i) { // enough work to be still running when the signal arrives
        arguments += " --highlight at=0.5,duration=0.1";
    }
    const ProcessResult result = interrupted(folder, arguments);
    EXPECT_EQ(result.exitCode, 1) << result.errors;
    EXPECT_TRUE(folder.names().empty());
}

TEST(CommandLine, LeavesNoFilesBeyondTheLimitOfTheirSize) {
    const TemporaryFolder folder;
    for (const std::string highlights : {"", "--highlight at=0.5"}) {
        const std::string command = "ulimit -f 16; TMPDIR=" + folder.path().string() + " " + ZELVRA_CLI +
                                    " export " + movieFile(numbered).string() + " --quiet --output " +
                                    (folder / "out.mp4").string() + " " + highlights;
        const ProcessResult result = runProcess({"bash", "-c", command});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_NE(result.errors.find("File too large"), std::string::npos) << result.errors;
        EXPECT_TRUE(folder.names().empty());
    }
}

TEST(CommandLine, GoesOnIfSignalsAreIgnoredAndCleansUpAfterManySignals) {
    const auto run = [](const TemporaryFolder& folder, const std::string& before, const std::string& kills) {
        std::string command = before + "; TMPDIR=" + folder.path().string() + " " + ZELVRA_CLI + " export " +
                              movieFile(large).string() + " --quiet --output " +
                              (folder / "out.mp4").string();
        for (int i = 0; i < 20; ++i) {
            command += " --highlight at=0.5,duration=0.1";
        }
        return runProcess({"bash", "-c",
                           "set -m; (" + command + ") & until ls " + folder.path().string() +
                               " | grep -q zv_freeze_; do sleep 0.02; done; " + kills + " wait $!"});
    };
    const TemporaryFolder ignored;
    EXPECT_EQ(run(ignored, "trap '' HUP", "kill -HUP -$!;").exitCode, 0);
    EXPECT_EQ(ignored.names(), std::vector<std::string>{"out.mp4"});
    const TemporaryFolder repeated;
    EXPECT_EQ(run(repeated, "trap : TERM", "for i in {1..30}; do kill -TERM -$!; done 2>/dev/null;").exitCode,
              1);
    EXPECT_TRUE(repeated.names().empty());
}

TEST(CommandLine, KeepsFinishedClipsOnlyWhenInterrupted) {
    const TemporaryFolder folder;
    const TemporaryFolder notes;
    nlohmann::json busy = {{"start", 0.2}, {"end", 0.8}};
    for (int i = 0; i < 40; ++i) {
        busy["highlights"].push_back({{"at", 0.5}, {"duration", 0.1}});
    }
    const nlohmann::json quick = {{"start", 0}, {"end", 0.5}};
    std::ofstream(notes / "notes.json") << nlohmann::json{{"clips", {quick, busy, quick}}};
    const std::filesystem::path movie = movieFile(large);
    const std::string first = movie.stem().string() + "_clip_01_highlighted" + movie.extension().string();
    const ProcessResult result =
        interrupted(folder,
                    "clips " + movie.string() + " --quiet --annotations " + (notes / "notes.json").string() +
                        " --folder " + folder.path().string(),
                    first);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errors.starts_with("cancelled\n")) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(folder.names(), std::vector<std::string>{first});
}

} // namespace
} // namespace zelvra::test
