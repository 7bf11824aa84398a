// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/ExportPlan.h"

#include <set>
#include <string>
#include <system_error>

namespace zelvra {

namespace {

/// Gives each movie of one export a file of its own.
class FreeNames {
public:
    explicit FreeNames(const std::map<Uuid, WrittenMovie>& written) : written_(written) {}

    /// `wanted`, or the same name with the first number from 2 on that is free.
    std::filesystem::path take(const std::filesystem::path& wanted, const Uuid& clipID) {
        std::filesystem::path name = wanted;
        for (int number = 2; !isFree(name, clipID); ++number) {
            name = wanted.parent_path() /
                   (wanted.stem().string() + ' ' + std::to_string(number) + wanted.extension().string());
        }
        taken_.insert(name);
        return name;
    }

private:
    bool isFree(const std::filesystem::path& name, const Uuid& clipID) const {
        if (taken_.contains(name)) {
            return false;
        }
        std::error_code unknown;
        const auto kind = std::filesystem::symlink_status(name, unknown).type();
        return kind == std::filesystem::file_type::not_found || kind == std::filesystem::file_type::none ||
               wasWrittenFor(clipID, name);
    }

    bool wasWrittenFor(const Uuid& clipID, const std::filesystem::path& name) const {
        const auto movie = written_.find(clipID);
        if (movie == written_.end() || movie->second.file != name) {
            return false;
        }
        std::error_code unknown;
        return std::filesystem::file_size(name, unknown) == movie->second.size && !unknown;
    }

    const std::map<Uuid, WrittenMovie>& written_;
    std::set<std::filesystem::path> taken_;
};

} // namespace

std::vector<ExportJob> planExport(const std::filesystem::path& source, const ClipWork& work,
                                  const OutputLocation& location) {
    FreeNames names(work.written);
    const Annotations& annotations = work.annotations;
    if (annotations.markedClips.empty()) {
        return {{.clipID = wholeSource,
                 .highlights = annotations.highlights,
                 .range = annotations.trimRange,
                 .output = names.take(location.resolveOutputURL(source), wholeSource)}};
    }
    std::vector<ExportJob> jobs;
    for (const MarkedClip& clip : annotations.markedClips) {
        const int number = static_cast<int>(jobs.size()) + 1;
        jobs.push_back({.clipID = clip.id,
                        .highlights = clip.highlights,
                        .range = clip.range,
                        .output = names.take(location.resolveOutputURL(source, number), clip.id)});
    }
    return jobs;
}

} // namespace zelvra
