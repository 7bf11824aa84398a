// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/files/RecentlyUsed.h"

#include <gio/gio.h>
#include <glib.h>

#include <memory>
#include <string>

namespace zelvra {

namespace {

struct GlibRelease {
    void operator()(GBookmarkFile* list) const { g_bookmark_file_free(list); }
    void operator()(char* text) const { g_free(text); }
};
using BookmarkFile = std::unique_ptr<GBookmarkFile, GlibRelease>;
using Text = std::unique_ptr<char, GlibRelease>;

std::string mimeType(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        return "inode/directory";
    }
    const Text contentType(g_content_type_guess(path.c_str(), nullptr, 0, nullptr));
    const Text mime(g_content_type_get_mime_type(contentType.get()));
    return mime ? mime.get() : "application/octet-stream";
}

} // namespace

void noteRecentlyUsed(const std::filesystem::path& path) {
    const Text uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    const std::filesystem::path file = std::filesystem::path(g_get_user_data_dir()) / "recently-used.xbel";
    const BookmarkFile list(g_bookmark_file_new());
    // Makes no list on a desktop without one, and does not replace a damaged list.
    if (!uri || !g_bookmark_file_load_from_file(list.get(), file.c_str(), nullptr)) {
        return;
    }
    g_bookmark_file_set_mime_type(list.get(), uri.get(), mimeType(path).c_str());
    g_bookmark_file_add_application(list.get(), uri.get(), "Zelvra", "zelvra %u");
    g_bookmark_file_to_file(list.get(), file.c_str(), nullptr);
}

} // namespace zelvra
