// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/files/FileCopy.h"

#include "ZelvraCore/files/AtomicFile.h"

namespace zelvra::files {

void copyFile(const ByteSource& source, const std::filesystem::path& destination,
              const WriteProgress& progress, const std::stop_token& stop) {
    AtomicFile file(destination);
    FileAppender appender(file, source.size(), progress, stop);
    appender.append(source, 0, source.size());
    appender.finish();
    file.commit();
}

} // namespace zelvra::files
