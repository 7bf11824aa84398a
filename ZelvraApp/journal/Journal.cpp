// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/journal/Journal.h"

#include "ZelvraApp/annotations/AnnotationsReader.h"
#include "ZelvraApp/annotations/AnnotationsWriter.h"
#include "ZelvraCore/files/AtomicFile.h"
#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/ZVError.h"

#include <algorithm>
#include <functional>
#include <sys/stat.h>
#include <tuple>

namespace zelvra {

namespace {

using std::chrono::system_clock;
using std::filesystem::path;

constexpr std::string_view documentSuffix = ".json";
constexpr std::string_view damagedSuffix = ".json.damaged";

struct File {
    path file;
    system_clock::time_point lastChange;
};

/// Which file has a name, and since when.
struct FileStatus {
    ino_t number = 0;
    system_clock::time_point lastChange;
};

std::optional<FileStatus> statusOf(const path& file) {
    struct stat status{};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    const auto sinceEpoch =
        std::chrono::seconds(status.st_mtim.tv_sec) + std::chrono::nanoseconds(status.st_mtim.tv_nsec);
    return FileStatus{status.st_ino, system_clock::time_point(
                                         std::chrono::duration_cast<system_clock::duration>(sinceEpoch))};
}

/// The files of that kind in the folder, the one changed last first. Files of other names are not ours.
std::vector<File> filesOf(const path& folder, std::string_view suffix) {
    std::vector<File> files;
    std::error_code error;
    for (std::filesystem::directory_iterator item(folder, error), end; !error && item != end;
         item.increment(error)) {
        const std::string name = item->path().filename().string();
        if (!name.ends_with(suffix) ||
            !MovieIdentity::fromText(std::string_view(name).substr(0, name.size() - suffix.size()))) {
            continue;
        }
        if (const std::optional<FileStatus> status = statusOf(item->path())) {
            files.push_back({item->path(), status->lastChange});
        }
    }
    std::ranges::sort(files, std::greater(),
                      [](const File& file) { return std::tie(file.lastChange, file.file); });
    return files;
}

/// Removes all but `added` and those that were changed last, so that at most `count` stay. `added` counts as
/// the latest, whatever the clock says. What cannot be removed stays until the next time.
void keepNewest(const path& folder, std::string_view suffix, std::size_t count, const path& added) {
    std::vector<File> files = filesOf(folder, suffix);
    std::erase_if(files, [&](const File& file) { return file.file == added; });
    for (std::size_t index = count - 1; index < files.size(); ++index) {
        std::error_code ignored;
        std::filesystem::remove(files[index].file, ignored);
    }
}

/// Gives a damaged document the name of one, unless another process has replaced it since `status`.
void setAside(const path& file, const FileStatus& status) {
    const std::optional<FileStatus> now = statusOf(file);
    if (now && now->number == status.number) {
        const path aside = path(file).replace_extension(damagedSuffix);
        std::error_code ignored; // a document that stays is found damaged again
        std::filesystem::rename(file, aside, ignored);
        keepNewest(file.parent_path(), damagedSuffix, Journal::mostDamaged, aside);
    }
}

void removeFile(const path& file) {
    std::error_code error;
    std::filesystem::remove(file, error);
    if (error) {
        throw MediaError::cannot(MediaError::Cause::unwritable, "remove", file.string(), error.message());
    }
}

struct Document {
    AnnotationsDocument content;
    system_clock::time_point lastChange;
};

/// The document of a movie; `nullopt` if there is none that can be understood.
std::optional<Document> readDocument(const path& file, const MovieIdentity& identity) {
    const std::optional<FileStatus> status = statusOf(file);
    if (!status) {
        return std::nullopt;
    }
    try {
        AnnotationsDocument content = readAnnotations(file);
        if (content.movie && content.movie->identity == identity) {
            return Document{std::move(content), status->lastChange};
        }
    } catch (const ZVError&) { // another process has removed it just now
        return std::nullopt;
    } catch (const MediaError& error) {
        if (error.cause() != MediaError::Cause::corrupt) {
            throw;
        }
    }
    setAside(file, *status);
    return std::nullopt;
}

bool isWorthKeeping(const ClipWork& work) {
    return work.annotations.hasContent() || !work.annotations.fullViewHighlights.empty() ||
           !work.written.empty();
}

std::size_t highlightsOf(const Annotations& annotations) {
    std::size_t count = annotations.highlights.size() + annotations.fullViewHighlights.size();
    for (const MarkedClip& clip : annotations.markedClips) {
        count += clip.id == annotations.editingClipID ? 0 : clip.highlights.size();
    }
    return count;
}

} // namespace

path Journal::fileOf(const MovieIdentity& identity) const {
    return folder_ / identity.text().append(documentSuffix);
}

void Journal::write(const MovieIdentity& identity, const path& movie, const ClipWork& work) const {
    if (!isWorthKeeping(work)) {
        forget(identity);
        return;
    }
    makePrivateFolder(folder_);
    const path file = fileOf(identity);
    const bool isNew = !statusOf(file);
    AnnotationsDocument document;
    document.work = work;
    document.ofJournal = true;
    document.movie = MovieReference{movie, identity};
    writeAnnotations(file, document);
    if (isNew) {
        keepNewest(folder_, documentSuffix, mostMovies, file);
        files::sweepStrays(folder_);
    }
}

std::optional<AnnotationsDocument> Journal::document(const MovieIdentity& identity) const {
    std::optional<Document> document = readDocument(fileOf(identity), identity);
    return document ? std::optional(std::move(document->content)) : std::nullopt;
}

std::optional<Journal::Entry> Journal::read(const MovieIdentity& identity) const {
    std::optional<Document> document = readDocument(fileOf(identity), identity);
    if (!document) {
        return std::nullopt;
    }
    return Entry{std::move(document->content.movie->file), std::move(document->content.work),
                 document->lastChange};
}

void Journal::forget(const MovieIdentity& identity) const {
    removeFile(fileOf(identity));
}

void Journal::forgetAll() const {
    for (const std::string_view suffix : {documentSuffix, damagedSuffix}) {
        for (const File& file : filesOf(folder_, suffix)) {
            removeFile(file.file);
        }
    }
    files::sweepStrays(folder_);
}

std::vector<Journal::Summary> Journal::entries() const {
    files::sweepStrays(folder_);
    std::vector<Summary> summaries;
    for (const File& file : filesOf(folder_, documentSuffix)) {
        const auto identity = MovieIdentity::fromText(file.file.stem().string());
        std::optional<Document> document;
        try {
            document = readDocument(file.file, *identity);
        } catch (const MediaError&) { // unreadable now, perhaps not later; the other movies are not affected
            continue;
        }
        if (document) {
            const ClipWork& work = document->content.work;
            summaries.push_back({.identity = *identity,
                                 .movie = document->content.movie->file,
                                 .highlights = highlightsOf(work.annotations),
                                 .markedClips = work.annotations.markedClips.size(),
                                 .hasUnexportedWork = work.hasUnexportedWork(),
                                 .lastChange = document->lastChange});
        }
    }
    return summaries;
}

} // namespace zelvra
