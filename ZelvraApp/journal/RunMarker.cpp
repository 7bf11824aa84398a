// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/journal/RunMarker.h"

#include "ZelvraCore/records/MediaError.h"
#include "ZelvraCore/records/Uuid.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zelvra {

namespace {

using std::filesystem::path;

constexpr std::string_view markerSuffix = ".run";
constexpr std::size_t longestPath = 64 << 10;

path folderIn(const path& state) {
    return state / "running";
}

/// A marker whose program has ended. While this lives, no other process takes it.
class LeftMarker {
public:
    explicit LeftMarker(const path& file)
        : file_(file), descriptor_(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)) {
        isTaken_ = descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 &&
                   ::fstat(descriptor_, &status_) == 0 && S_ISREG(status_.st_mode) && status_.st_nlink > 0;
    }
    ~LeftMarker() {
        if (isTaken_) {
            ::unlink(file_.c_str());
        }
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    LeftMarker(const LeftMarker&) = delete;
    LeftMarker& operator=(const LeftMarker&) = delete;

    bool isTaken() const { return isTaken_; }
    std::int64_t lastChange() const {
        return status_.st_mtim.tv_sec * 1'000'000'000 + status_.st_mtim.tv_nsec;
    }
    /// Up to the zero byte that ends it; a shorter path may have replaced a longer one.
    path clip() const {
        std::string bytes(longestPath, '\0');
        const ssize_t count = ::pread(descriptor_, bytes.data(), bytes.size(), 0);
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        const std::size_t end = bytes.find('\0');
        return end == std::string::npos ? path() : path(bytes.substr(0, end));
    }

private:
    path file_;
    int descriptor_;
    bool isTaken_ = false;
    struct stat status_{};
};

} // namespace

RunMarker::RunMarker(const path& state) {
    const path folder = folderIn(state);
    makePrivateFolder(folder);
    while (!create(folder)) {
    }
}

/// False if another process took the file for one that was left, before it was locked.
bool RunMarker::create(const path& folder) {
    file_ = folder / Uuid::random().text().append(markerSuffix);
    descriptor_ = ::open(file_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor_ < 0) {
        throw MediaError::cannotWrite(file_.string(), systemReason(errno));
    }
    struct stat status{};
    const bool isTaken = (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) ||
                         (::fstat(descriptor_, &status) == 0 && status.st_nlink == 0);
    if (isTaken) {
        ::close(descriptor_);
    }
    return !isTaken;
}

RunMarker::~RunMarker() {
    ::unlink(file_.c_str());
    ::close(descriptor_);
}

void RunMarker::setClip(const path& clip) {
    const std::string bytes = clip.native() + '\0';
    const ssize_t count = ::pwrite(descriptor_, bytes.data(), bytes.size(), 0);
    if (count != static_cast<ssize_t>(bytes.size())) {
        throw MediaError::cannotWrite(file_.string(), systemReason(count < 0 ? errno : ENOSPC));
    }
}

std::vector<path> RunMarker::leftBehind(const path& state) {
    std::vector<std::pair<std::int64_t, path>> left;
    std::error_code error;
    for (std::filesystem::directory_iterator item(folderIn(state), error), end; !error && item != end;
         item.increment(error)) {
        if (item->path().extension() != markerSuffix) {
            continue;
        }
        const LeftMarker marker(item->path());
        if (marker.isTaken() && !marker.clip().empty()) {
            left.emplace_back(marker.lastChange(), marker.clip());
        }
    }
    std::ranges::sort(left, std::greater());
    std::vector<path> clips;
    for (auto& [lastChange, clip] : left) {
        if (std::ranges::find(clips, clip) == clips.end()) {
            clips.push_back(std::move(clip));
        }
    }
    return clips;
}

} // namespace zelvra
