// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/files/AtomicFile.h"

#include "ZelvraCore/files/FolderOf.h"
#include "ZelvraCore/records/MediaError.h"

#include <cerrno>
#include <fcntl.h>
#include <random>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zelvra::files {

namespace {

constexpr std::string_view hiddenPrefix = ".zv-";
constexpr std::string_view hiddenSuffix = ".part";

/// Short, so that it fits beside a destination whose name has the greatest length.
std::string hiddenName() {
    static constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device random;
    std::uniform_int_distribution<std::size_t> letter(0, letters.size() - 1);
    std::string name(hiddenPrefix);
    for (int i = 0; i < 8; ++i) {
        name += letters[letter(random)];
    }
    return name.append(hiddenSuffix);
}

class Descriptor {
public:
    explicit Descriptor(int value) : value_(value) {}
    ~Descriptor() {
        if (value_ >= 0) {
            ::close(value_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return value_ >= 0; }
    int get() const { return value_; }
    int release() { return std::exchange(value_, -1); }

private:
    int value_;
};

/// Whether a sweeper has taken the file away between its creation and its lock.
bool isUnlinked(int descriptor) {
    struct stat status{};
    return ::fstat(descriptor, &status) == 0 && status.st_nlink == 0;
}

void removeIfUnlocked(const std::filesystem::path& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status{};
    if (file.isOpen() && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        ::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
        ::unlink(path.c_str());
    }
}

} // namespace

AtomicFile::AtomicFile(std::filesystem::path destination) : destination_(std::move(destination)) {
    requireReplaceable(destination_);
    constexpr int mostTries = 100;
    for (int tries = 0; !createHidden(); ++tries) {
        if (tries == mostTries) {
            fail(EBUSY);
        }
    }
}

AtomicFile::~AtomicFile() {
    discard();
}

bool AtomicFile::createHidden() {
    temporary_ = folderOf(destination_) / hiddenName();
    Descriptor file(::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.isOpen()) {
        if (errno == EEXIST) {
            return false;
        }
        fail(errno);
    }
    // On file systems without locks (some network file systems) no sweeper gets one either.
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::unlink(temporary_.c_str()); // as does the sweeper that holds the lock
        return false;
    }
    if (isUnlinked(file.get())) {
        return false;
    }
    descriptor_ = file.release();
    return true;
}

void AtomicFile::discard() {
    if (!committed_) {
        ::unlink(temporary_.c_str());
    }
    if (descriptor_ >= 0) {
        ::close(std::exchange(descriptor_, -1));
    }
}

void AtomicFile::write(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(descriptor_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            fail(errno);
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
    }
}

void AtomicFile::commit() {
    if (::fsync(descriptor_) != 0 || ::rename(temporary_.c_str(), destination_.c_str()) != 0) {
        fail(errno);
    }
    committed_ = true;
    // The name itself reaches the disk with the folder. A file system that cannot flush one still has
    // renamed.
    const Descriptor folder(::open(folderOf(destination_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.isOpen()) {
        ::fsync(folder.get());
    }
}

void AtomicFile::fail(int error) const {
    throw MediaError::cannotWrite(destination_.string(), systemReason(error));
}

void requireReplaceable(const std::filesystem::path& destination) {
    struct stat status{};
    if (::stat(destination.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw MediaError::cannotWrite(
            destination.string(), S_ISDIR(status.st_mode) ? systemReason(EISDIR) : "it is no regular file");
    }
}

void sweepStrays(const std::filesystem::path& folder) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(hiddenPrefix) && name.ends_with(hiddenSuffix) &&
            name.size() > hiddenPrefix.size() + hiddenSuffix.size()) {
            removeIfUnlocked(entry->path());
        }
    }
}

} // namespace zelvra::files
