// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/annotations/AnnotationsDocument.h"
#include "ZelvraApp/journal/StateFolder.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

namespace zelvra {

/// The user's work on every movie, kept on disk so that no quit, crash or full disk loses it: one document of
/// annotations per movie, named by the movie's identity. So a movie that was moved or renamed keeps its work,
/// and nothing is ever written beside it.
///
/// - Each write replaces a document as a whole and is on the disk when it returns. Other processes see the
///   old document or the new one; of two writers the last one wins. Nothing waits for another process.
/// - A document that is damaged, or of a newer version, counts as absent. It is renamed to "....damaged" and
///   kept, the newest 20 of them.
/// - The documents of 500 movies are kept; then those that were changed longest ago go.
/// - What killed writers have left is removed when a document is added, and by `entries`.
///
/// Every operation blocks on the disk and may be called from any thread. Failures throw MediaError with one
/// line that names the file.
class Journal {
public:
    static constexpr std::size_t mostMovies = 500;
    static constexpr std::size_t mostDamaged = 20;

    /// Uses the folder "journal" in `state`. It is made when something is written.
    explicit Journal(const std::filesystem::path& state = stateFolder()) : folder_(state / "journal") {}

    struct Entry {
        std::filesystem::path movie; ///< where it was at the last write
        ClipWork work;
        std::chrono::system_clock::time_point lastChange;
    };

    /// What rows of recent and queued movies show.
    struct Summary {
        MovieIdentity identity;
        std::filesystem::path movie; ///< where it was at the last write
        std::size_t highlights = 0;  ///< all of them, those in marked clips included
        std::size_t markedClips = 0;
        bool hasUnexportedWork = false;
        std::chrono::system_clock::time_point lastChange;
    };

    /// Keeps the work on a movie. Without anything drawn, cut or written it forgets the movie instead; the
    /// style alone is not worth an entry.
    void write(const MovieIdentity& identity, const std::filesystem::path& movie, const ClipWork& work) const;

    /// The whole document as it is on disk, for those that show it. `nullopt` if there is none.
    std::optional<AnnotationsDocument> document(const MovieIdentity& identity) const;
    std::optional<Entry> read(const MovieIdentity& identity) const;

    void forget(const MovieIdentity& identity) const;
    /// Removes every document, damaged ones too.
    void forgetAll() const;

    /// All movies, the one that was changed last first. Documents that cannot be read are left out. Reads
    /// every document.
    std::vector<Summary> entries() const;

private:
    std::filesystem::path fileOf(const MovieIdentity& identity) const;

    std::filesystem::path folder_;
};

} // namespace zelvra
