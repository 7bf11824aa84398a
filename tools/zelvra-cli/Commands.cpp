// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/Commands.h"

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraApp/annotations/BadRequest.h"
#include "ZelvraApp/journal/Journal.h"
#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/Render.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/media/IdentifyMovie.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "tools/zelvra-cli/Interrupt.h"
#include "tools/zelvra-cli/PngFile.h"
#include "tools/zelvra-cli/ProgressReport.h"
#include "tools/zelvra-cli/SourceInfoJson.h"

#include <iostream>
#include <sstream>
#include <stdexcept>

namespace zelvra::cli {

void requireFile(const std::filesystem::path& file) {
    std::error_code unknown; // opening the file then reports the error
    if (!std::filesystem::exists(file, unknown) && !unknown) {
        throw ZVError::fileNotFound(file.string());
    }
}

void requireOutputApart(const std::filesystem::path& output, const std::filesystem::path& movie,
                        const std::filesystem::path& annotations) {
    if (const auto line = refusalOfOutput(movie, output)) {
        throw MediaError(MediaError::Cause::refused, *line);
    }
    if (refusalOfOutput(annotations, output)) {
        throw MediaError(MediaError::Cause::refused,
                         "the output would replace the annotations: " + output.string());
    }
}

namespace {

std::optional<CMTimeRange> rangeOf(const ExportRequest& request, const Asset& asset) {
    if (!request.from && !request.to) {
        return std::nullopt;
    }
    const CMTime from = request.from.value_or(CMTime::zero());
    const CMTime to = request.to ? *request.to : loadSourceInfo(asset).duration;
    if (request.to && to <= from) {
        throw BadRequest("the range ends before it starts");
    }
    return CMTimeRange::fromStartToEnd(from, to);
}

/// Names the highlights that the export leaves out.
void noticeHighlightsOutside(const ExportRequest& request, const CMTimeRange& range, ProgressReport& report) {
    for (const Highlight& highlight : request.highlights) {
        const CMTime& time = highlight.timestamp;
        if (time < range.start || time > range.end()) {
            std::ostringstream line;
            line << "The highlight at " << time.seconds() << " s is outside the exported range.";
            report.notice(line.str());
        }
    }
}

} // namespace

void probeCommand(const std::filesystem::path& movie) {
    requireFile(movie);
    std::cout << sourceInfoJson(loadSourceInfo(movie)) << '\n';
}

void frameCommand(const std::filesystem::path& movie, CMTime at, const std::filesystem::path& output) {
    requireFile(movie);
    requireOutputApart(output, movie);
    writePng(extractFrame(movie, at), output);
    std::cout << output.string() << '\n';
}

void annotationsCommand(const std::filesystem::path& movie) {
    requireFile(movie);
    const std::optional<AnnotationsDocument> document = Journal().document(media::identifyMovie(movie));
    if (!document) {
        throw std::runtime_error("no annotations of '" + movie.string() + "' are known");
    }
    std::cout << annotationsText(*document);
}

void addAnnotations(ExportRequest& request) {
    const AnnotationsDocument document = readAnnotations(request.annotations);
    const Annotations& annotations = document.work.annotations;
    if (annotations.highlights.empty() && !annotations.markedClips.empty()) {
        request.notices.push_back("The file '" + request.annotations.string() +
                                  "' marks only clips, which the command 'clips' exports.");
    }
    request.highlights.insert(request.highlights.end(), annotations.highlights.begin(),
                              annotations.highlights.end());
    const std::optional<CMTimeRange>& range = annotations.trimRange;
    const std::optional<CMTime> from = range ? range->start : document.from;
    const std::optional<CMTime> to = range ? range->end() : document.to;
    request.from = request.from ? request.from : from;
    request.to = request.to ? request.to : to;
    request.includeAudio = request.includeAudio && document.includeAudio.value_or(true);
}

void exportCommand(const ExportRequest& request) {
    const Interrupt interrupt;
    requireFile(request.movie);
    requireOutputApart(request.output, request.movie, request.annotations);
    const Asset asset(request.movie);
    RenderResult result;
    {
        ProgressReport report(std::cerr, progressStyle(request.quiet));
        for (const std::string& line : request.notices) {
            report.notice(line);
        }
        const std::optional<CMTimeRange> range = rangeOf(request, asset);
        if (!request.highlights.empty()) {
            const CMTimeRange whole{CMTime::zero(), loadSourceInfo(asset).duration};
            noticeHighlightsOutside(request, range.value_or(whole), report);
        }
        result = renderHighlights(asset, request.highlights, request.output,
                                  {.sourceRange = range,
                                   .includeAudio = request.includeAudio,
                                   .progress = [&](double fraction) { report.update(fraction); },
                                   .notice = [&](const std::string& line) { report.notice(line); },
                                   .stop = interrupt.token()});
    }
    std::cout << result.outputURL.string() << '\n';
}

} // namespace zelvra::cli
