// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/Render.h"

#include "ZelvraCore/FrameGrab.h"
#include "ZelvraCore/FreezeClipEncoder.h"
#include "ZelvraCore/OverlayRasteriser.h"
#include "ZelvraCore/RenderPlan.h"
#include "ZelvraCore/SourceProbe.h"
#include "ZelvraCore/bitstream/BitstreamError.h"
#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/files/FileCopy.h"
#include "ZelvraCore/files/FolderOf.h"
#include "ZelvraCore/media/AssetIndex.h"
#include "ZelvraCore/passthrough/CannotPassThrough.h"
#include "ZelvraCore/records/Cancellation.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"
#include "ZelvraCore/render/PassthroughRender.h"
#include "ZelvraCore/render/ReencodeRender.h"
#include "ZelvraCore/render/TemporaryClips.h"

#include <algorithm>
#include <cctype>
#include <memory>

namespace zelvra {

namespace {

void refuseSourceAsOutput(const std::filesystem::path& source, const std::filesystem::path& output) {
    if (const auto line = refusalOfOutput(source, output)) {
        throw MediaError(MediaError::Cause::refused, *line);
    }
}

void refuseAbsurdRange(const RenderPlan& plan, const SourceInfo& info) {
    const bool numeric = plan.rangeStart.isNumeric() && plan.rangeEnd.isNumeric();
    const bool empty =
        plan.rangeEnd < plan.rangeStart || (plan.rangeEnd == plan.rangeStart && plan.highlights.empty());
    if (!numeric || empty || plan.rangeStart >= info.duration || plan.rangeEnd < CMTime::zero()) {
        throw MediaError(MediaError::Cause::outOfRange, "the range holds nothing of the movie");
    }
}

/// One render, from plan to file. Lives for one call.
class Rendering {
public:
    Rendering(const Asset& source, std::span<const Highlight> highlights, const std::filesystem::path& output,
              const RenderOptions& options)
        : source_(source),
          output_(output),
          options_(options),
          info_(loadSourceInfo(source)),
          plan_(planRender(highlights, options.sourceRange, options.includeAudio, info_)) {}

    void run() {
        if (plan_.copyOnly) {
            files::copyFile(media::bytesOf(source_), output_, {}, options_.stop);
            return report(1);
        }
        refuseAbsurdRange(plan_, info_);
        timeline_ = layoutTimeline(plan_, info_, source_.frames());
        files::sweepStrays(files::folderOf(output_));
        preparePassthrough();
        makeFreezeClips();
        if (!writePassthrough()) {
            reencode();
        }
        removeClips();
        report(1);
    }

private:
    void report(double fraction) const {
        if (options_.progress) {
            options_.progress(fraction);
        }
    }

    void notice(const std::string& line) const {
        if (options_.notice) {
            options_.notice(line);
        }
    }

    /// Runs a step of the passthrough. False if the source rules it out: the notice then says why the movie
    /// is re-encoded.
    template <class Step>
    bool passThrough(Step step) {
        try {
            step();
            return true;
        } catch (const passthrough::CannotPassThrough& e) {
            notice(std::string("Re-encoding the video, because ") + e.what() + ".");
        } catch (const bitstream::BitstreamError& e) {
            notice(std::string("Re-encoding the video, because its coding stands in the way: ") + e.what() +
                   ".");
        }
        passthrough_.reset();
        freezeEncoding_ = {};
        return false;
    }

    void preparePassthrough() {
        if (plan_.passthrough) {
            passThrough([&] {
                passthrough_ = std::make_unique<PassthroughRender>(source_, info_, plan_, timeline_);
                freezeEncoding_ = passthrough_->freezeEncoding();
            });
        }
    }

    void makeFreezeClips() {
        for (std::size_t i = 0; i < plan_.highlights.size(); ++i) {
            throwIfStopped(options_.stop);
            const Highlight& highlight = plan_.highlights[i];
            const Image frame = drawShape(frameAt(highlight.timestamp), highlight.shape);
            encodeFreezeClip(frame, freezeClips_.add(), info_.frameDuration, highlight.duration,
                             plan_.freezeCodec, freezeEncoding_, options_.stop);
            report(freezeProgress(i + 1, plan_.highlights.size()));
        }
        if (passthrough_) {
            const PassthroughRender::EdgeFrames edges = passthrough_->edgeFrames();
            leadInClip_ = makeEdgeClip(edges.leadIn);
            leadOutClip_ = makeEdgeClip(edges.leadOut);
            holdClip_ = makeEdgeClip(edges.hold);
        }
    }

    /// A range may reach beyond the movie, and highlights with it.
    Image frameAt(const CMTime& time) const {
        return extractFrameOnScreen(source_, minimum(maximum(time, CMTime::zero()), info_.duration));
    }

    std::optional<std::filesystem::path> makeEdgeClip(const std::optional<CMTime>& time) {
        if (!time) {
            return std::nullopt;
        }
        const std::filesystem::path clip = edgeClips_.add();
        encodeFreezeClip(frameAt(*time), clip, info_.frameDuration, info_.frameDuration, plan_.freezeCodec,
                         freezeEncoding_, options_.stop);
        return clip;
    }

    /// Failures after this point are failures of the export itself and are reported as such.
    template <class Step>
    static void exporting(Step step) {
        try {
            step();
        } catch (const bitstream::BitstreamError&) {
            throw;
        } catch (const MediaError& e) {
            if (e.cause() == MediaError::Cause::cancelled) {
                throw;
            }
            throw ZVError::exportFailed(e.what());
        }
    }

    bool writePassthrough() {
        return passthrough_ && passThrough([&] { exporting([&] { writePassedThrough(); }); });
    }

    void writePassedThrough() {
        passthrough_->write({.freezeClips = freezeClips_.paths(),
                             .leadInClip = leadInClip_,
                             .leadOutClip = leadOutClip_,
                             .holdClip = holdClip_,
                             .output = output_,
                             .container = containerFor(output_),
                             .includeAudio = options_.includeAudio,
                             .progress = [this](double fraction) { report(exportProgress(fraction)); },
                             .notice = [this](const std::string& line) { notice(line); },
                             .stop = options_.stop});
    }

    void reencode() {
        exportReencoded(source_, {.timeline = timeline_,
                                  .frameDuration = info_.frameDuration,
                                  .freezeClips = freezeClips_.paths(),
                                  .codec = plan_.freezeCodec,
                                  .includeAudio = options_.includeAudio,
                                  .output = output_,
                                  .container = containerFor(output_),
                                  .progress = [this](double fraction) { report(exportProgress(fraction)); },
                                  .stop = options_.stop});
    }

    void removeClips() {
        for (TemporaryClips* clips : {&freezeClips_, &edgeClips_}) {
            for (const std::filesystem::path& path : clips->remove()) {
                notice("A temporary file could not be removed: " + path.string() + ".");
            }
        }
    }

    const Asset& source_;
    const std::filesystem::path& output_;
    const RenderOptions& options_;
    SourceInfo info_;
    RenderPlan plan_;
    Timeline timeline_;
    TemporaryClips freezeClips_;
    TemporaryClips edgeClips_; ///< those of lead-in and lead-out
    std::optional<std::filesystem::path> leadInClip_;
    std::optional<std::filesystem::path> leadOutClip_;
    std::optional<std::filesystem::path> holdClip_;
    std::unique_ptr<PassthroughRender> passthrough_;
    FreezeEncoding freezeEncoding_; ///< what the freeze clips must match
};

} // namespace

MovieContainer containerFor(const std::filesystem::path& output) {
    std::string extension = output.extension().string();
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    return extension == ".mp4"   ? MovieContainer::mpeg4
           : extension == ".m4v" ? MovieContainer::appleM4v
                                 : MovieContainer::quickTime;
}

std::optional<std::string> refusalOfOutput(const std::filesystem::path& source,
                                           const std::filesystem::path& output) {
    std::error_code unknown; // a file that is not there is not the source
    if (!std::filesystem::equivalent(source, output, unknown)) {
        return std::nullopt;
    }
    return "the output would replace the source movie: " + output.string();
}

RenderResult renderHighlights(const std::filesystem::path& source, std::span<const Highlight> highlights,
                              const std::filesystem::path& output, const RenderOptions& options) {
    return renderHighlights(Asset(source), highlights, output, options);
}

RenderResult renderHighlights(const Asset& source, std::span<const Highlight> highlights,
                              const std::filesystem::path& output, const RenderOptions& options) {
    refuseSourceAsOutput(source.path(), output);
    files::requireReplaceable(output);
    Rendering(source, highlights, output, options).run();
    return {output};
}

} // namespace zelvra
