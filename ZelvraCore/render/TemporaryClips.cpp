// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/render/TemporaryClips.h"

#include "ZelvraCore/RenderPlan.h"

#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace zelvra {

namespace {

void sweep(const std::filesystem::path& folder) {
    std::error_code ignored; // a clip that cannot be removed does no harm
    for (std::filesystem::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        std::error_code failed;
        if (name.starts_with("zv_freeze_") && entry->is_regular_file(failed)) {
            std::filesystem::remove(entry->path(), failed);
        }
    }
}

} // namespace

TemporaryClips::TemporaryClips() : folder_(std::filesystem::temp_directory_path()) {
    lock_ = open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock_ < 0) {
        return;
    }
    if (flock(lock_, LOCK_EX | LOCK_NB) == 0) {
        sweep(folder_);
    }
    flock(lock_, LOCK_SH);
}

TemporaryClips::~TemporaryClips() {
    for (const std::filesystem::path& path : paths_) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    if (lock_ >= 0) {
        close(lock_);
    }
}

std::filesystem::path TemporaryClips::add() {
    return paths_.emplace_back(folder_ / freezeClipName());
}

} // namespace zelvra
