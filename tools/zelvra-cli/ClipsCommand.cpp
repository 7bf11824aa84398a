// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/ClipsCommand.h"

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/BadRequest.h"
#include "ZelvraCore/Render.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/records/MediaError.h"
#include "tools/zelvra-cli/Commands.h"
#include "tools/zelvra-cli/Interrupt.h"
#include "tools/zelvra-cli/ProgressReport.h"

#include <iostream>
#include <stdexcept>
#include <vector>

namespace zelvra::cli {
namespace {

OutputFolder folderOf(const ClipsRequest& request) {
    OutputFolder folder;
    folder.mode =
        request.mode.value_or(request.folder ? OutputLocationMode::custom : OutputLocationMode::subfolder);
    folder.customFolderPath = request.folder ? std::filesystem::absolute(*request.folder).string() : "";
    folder.subfolderName = request.subfolder.value_or(folder.subfolderName);
    return folder;
}

/// Runs `step`. What is wrong there is thrown as a line that begins with `what`, except a request to stop.
template <class Step>
auto during(const std::string& what, Step step) {
    try {
        return step();
    } catch (const MediaError& error) {
        if (error.cause() == MediaError::Cause::cancelled) {
            throw;
        }
        throw std::runtime_error(what + ": " + error.what());
    } catch (const std::exception& error) {
        throw std::runtime_error(what + ": " + error.what());
    }
}

std::string clipFailed(std::size_t index) {
    return "Clip " + std::to_string(index + 1) + " failed";
}

/// The opened movie, proven to have pictures.
Asset open(const std::filesystem::path& movie) {
    Asset asset(movie);
    loadSourceInfo(asset);
    return asset;
}

/// Refuses to write over what is read, before any clip is written. Then makes the folder, which is the same
/// for all outputs.
void prepare(const std::vector<std::filesystem::path>& outputs, const ClipsRequest& request) {
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        during(clipFailed(index),
               [&] { requireOutputApart(outputs[index], request.movie, request.annotations); });
    }
    std::error_code error;
    std::filesystem::create_directories(outputs.front().parent_path(), error);
    if (error) {
        throw std::runtime_error("Couldn't create output folder: " + error.message());
    }
}

} // namespace

void clipsCommand(const ClipsRequest& request) {
    const AnnotationsDocument document = readAnnotations(request.annotations);
    const std::vector<MarkedClip>& clips = document.work.annotations.markedClips;
    if (clips.empty()) {
        throw BadRequest(request.annotations.string() + ": no clips");
    }
    const Interrupt interrupt;
    const std::filesystem::path movie = std::filesystem::absolute(request.movie);
    const Asset source = during("Failed to load", [&] { return open(movie); });
    std::vector<std::filesystem::path> outputs;
    for (std::size_t index = 0; index < clips.size(); ++index) {
        outputs.push_back(outputPath(folderOf(request), movie, static_cast<int>(index + 1)));
    }
    prepare(outputs, request);
    {
        ProgressReport report(std::cerr, progressStyle(request.quiet));
        for (std::size_t index = 0; index < clips.size(); ++index) {
            const auto overall = [&, index](double fraction) {
                report.update((static_cast<double>(index) + fraction) / static_cast<double>(clips.size()));
            };
            during(clipFailed(index), [&] {
                return renderHighlights(source, clips[index].highlights, outputs[index],
                                        {.sourceRange = clips[index].range,
                                         .includeAudio = document.includeAudio.value_or(true),
                                         .progress = overall,
                                         .notice = {},
                                         .stop = interrupt.token()});
            });
        }
    }
    for (const std::filesystem::path& output : outputs) {
        std::cout << output.string() << '\n';
    }
}

} // namespace zelvra::cli
