// SPDX-License-Identifier: GPL-3.0-or-later

// zelvra-cli: the engine on a command line.

#include "ZelvraApp/annotations/HighlightText.h"
#include "ZelvraApp/annotations/TimeText.h"
#include "ZelvraCore/Version.h"
#include "ZelvraCore/records/ZVError.h"
#include "tools/zelvra-cli/ClipsCommand.h"
#include "tools/zelvra-cli/Commands.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <malloc.h>

namespace zelvra::cli {
namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

constexpr const char* examples = R"(
Examples:
  What a movie is, as JSON:
    zelvra-cli probe match.mp4
  The frame that is on screen at 1 min 15.5 s:
    zelvra-cli frame match.mp4 --at 01:15.50 --output frame.png
  Freeze for 3 s with a circle, and for 2 s with a yellow arrow:
    zelvra-cli export match.mp4 --output shown.mp4 \
        --highlight at=12.5,p1=0.42:0.55,p2=0.46:0.55 \
        --highlight "at=00:20,duration=2,kind=arrow,p1=0.3:0.4,p2=0.5:0.5,color=#FFCC00"
  A part of it, without sound, highlights from a file:
    zelvra-cli export match.mp4 --output part.mp4 --from 01:00 --to 01:30 --no-audio \
        --annotations highlights.json
)";

constexpr const char* notes = R"(
Times are seconds (12.5), minutes (01:15.50) or a fraction of ticks (900/600).
Places are fractions of the upright picture, 0:0 at its top left. More in zelvra-cli(1).
)";

constexpr const char* highlightHelp =
    "at=T[,duration=SECONDS][,kind=circle|arrow|rectangle][,p1=X:Y][,p2=X:Y][,color=#RRGGBB][,stroke=RATIO]; "
    "may be repeated";

/// Adds a required option or argument that holds a path.
void addPath(CLI::App& command, const std::string& name, std::filesystem::path& path,
             const std::string& help) {
    command.add_option(name, path, help)->required()->type_name("FILE");
}

int run(int argc, char** argv) {
    CLI::App program(
        "Freezes a movie at chosen moments, draws a shape over the frozen picture, and plays on.");
    program.set_version_flag("--version", "zelvra-cli " ZELVRA_VERSION);
    program.require_subcommand(1);

    std::filesystem::path movie, output;
    std::string at, from, to, mode;
    std::vector<std::string> highlights;
    ExportRequest request;
    bool noAudio = false;

    CLI::App& probe = *program.add_subcommand("probe", "Print what a movie is, as JSON");
    addPath(probe, "movie", movie, "The movie");

    CLI::App& frame = *program.add_subcommand("frame", "Save the frame that is on screen at a time");
    addPath(frame, "movie", movie, "The movie");
    const CLI::Option& atOption = *frame.add_option("--at", at, "The time")->required()->type_name("T");
    addPath(frame, "--output", output, "The PNG picture to write");

    CLI::App& exporting = *program.add_subcommand("export", "Write a movie with its highlights");
    addPath(exporting, "movie", movie, "The movie");
    addPath(exporting, "--output", output, "The movie to write: .mp4, .m4v or .mov");
    const CLI::Option& fromOption =
        *exporting.add_option("--from", from, "Start here, not at the beginning")->type_name("T");
    const CLI::Option& toOption =
        *exporting.add_option("--to", to, "End here, not at the end")->type_name("T");
    exporting.add_flag("--no-audio", noAudio, "Leave the sound out");
    exporting.add_option("--highlight", highlights, highlightHelp)
        ->type_name("SPEC")
        ->allow_extra_args(false);
    exporting
        .add_option("--annotations", request.annotations, "Highlights, range and sound from a JSON file")
        ->type_name("FILE");
    exporting.add_flag("--quiet", request.quiet, "No progress");

    ClipsRequest clips;
    CLI::App& marked = *program.add_subcommand("clips", "Write each marked clip as a movie of its own");
    addPath(marked, "movie", clips.movie, "The movie");
    addPath(marked, "--annotations", clips.annotations, "The clips, from a JSON file");
    marked.add_option("--mode", mode, "Where they go: sameAsSource, subfolder or custom")
        ->check(CLI::IsMember({"sameAsSource", "subfolder", "custom"}))
        ->type_name("MODE");
    marked.add_option("--folder", clips.folder, "The folder of mode custom")->type_name("PATH");
    marked.add_option("--subfolder", clips.subfolder, "The name for mode subfolder")->type_name("NAME");
    marked.add_flag("--quiet", clips.quiet, "No progress");

    CLI::App& known = *program.add_subcommand(
        "annotations", "Print what the application keeps of a movie: highlights, trim, marked clips");
    addPath(known, "movie", movie, "The movie");

    program.footer(std::string(examples) + notes);
    frame.footer(notes);
    exporting.footer(notes);

    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& request_) {
        return program.exit(request_) == 0 ? 0 : wrongUsage;
    }

    // Parse all texts first, because errors in them are wrong usage and not a failure of the engine.
    const auto timeIn = [](const CLI::Option& option, const std::string& text) {
        return option.count() == 0 ? std::nullopt : std::optional(parseTime(text));
    };
    std::optional<CMTime> moment;
    try {
        moment = timeIn(atOption, at);
        request.from = timeIn(fromOption, from);
        request.to = timeIn(toOption, to);
        for (const std::string& highlight : highlights) {
            request.highlights.push_back(parseHighlight(highlight));
        }
    } catch (const ZVError& error) {
        throw BadRequest(error.description());
    }
    request.movie = movie;
    request.output = output;
    request.includeAudio = !noAudio;

    if (probe.parsed()) {
        probeCommand(movie);
    } else if (frame.parsed()) {
        frameCommand(movie, *moment, output);
    } else if (known.parsed()) {
        annotationsCommand(movie);
    } else if (marked.parsed()) {
        clips.mode = modeOfName(mode);
        clipsCommand(clips);
    } else {
        if (!request.annotations.empty()) {
            addAnnotations(request);
        }
        exportCommand(request);
    }
    return 0;
}

} // namespace
} // namespace zelvra::cli

int main(int argc, char** argv) {
    using namespace zelvra;
    // Returns the memory of pictures and of long movies' tables to the system as soon as it is freed. By
    // default the library raises this threshold to 32 MiB with use and keeps the memory.
    constexpr int returnedAtOnce = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, returnedAtOnce);
    // A file that grows beyond its limit, or an output that nobody reads, is then an error of the write.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return cli::run(argc, argv);
    } catch (const BadRequest& error) {
        std::cerr << error.what() << '\n';
        return cli::wrongUsage;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return cli::failed;
    }
}
