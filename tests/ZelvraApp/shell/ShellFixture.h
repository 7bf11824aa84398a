// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/session/SessionTime.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/NumberedPicture.h"
#include "tests/support/window/WindowFixture.h"

#include <QGuiApplication>

#include <string>

namespace zelvra::test {

/// The application's window, with short ways to a clip that has been worked on.
class ShellFixture : public WindowFixture {
protected:
    /// A copy of that movie in the test's folder, in which exports land.
    std::filesystem::path clip(const std::string& name, const NumberedMovie& movie = {}) const {
        std::filesystem::copy_file(movieFile(movie), folder_ / name);
        return folder_ / name;
    }
    void openClip(const std::string& name = "game.mov") { open(clip(name)); }

    HighlightDraft draftAt(double seconds) {
        auto raster =
            std::make_shared<const Image::Raster>(Image::Raster{1, 1, std::vector<std::uint8_t>(4)});
        const Size display = state().sourceInfo()->displaySize;
        const Highlight highlight = markerHighlight(0, sessionTime(seconds), sessionTime(1), display);
        return HighlightDraft::editing(highlight, Image(std::move(raster), {}), display);
    }
    void addHighlight(double seconds) {
        HighlightDraft draft = draftAt(seconds);
        draft.isEditing = false;
        state().setDraft(draft);
        state().commitDraft();
        state().setShowDefaultsScopePrompt(false);
        window().requestActivate(); // as a window manager does when the editor goes
        EXPECT_TRUE(isFront("Zelvra"));
    }
    void mark(double start, double end) {
        state().setTrim(CMTimeRange{sessionTime(start), sessionTime(end - start)});
        state().markCurrentClip();
    }

    /// An item of a menu, which is left open.
    QQuickItem& menuItem(const QString& menu, const QString& objectName) {
        if (isShown(objectName)) {
            return item(objectName);
        }
        closeMenus();
        // Where another menu was open, moving there opens it, and the click closes it again.
        for (int attempt = 0; attempt < 5 && !isShown(objectName); ++attempt) {
            click("menu:" + menu);
            letPass(50);
        }
        return item(objectName);
    }
    void choose(const QString& menu, const QString& objectName) { click(menuItem(menu, objectName)); }
    void closeMenus() {
        key(Qt::Key_Escape);
        key(Qt::Key_Escape);
    }

    /// A second window, in front once it is shown.
    bool isFront(const QString& title) {
        return comesTrue([&] {
            const QWindow* front = QGuiApplication::focusWindow();
            return front != nullptr && front->title() == title;
        });
    }
};

} // namespace zelvra::test
