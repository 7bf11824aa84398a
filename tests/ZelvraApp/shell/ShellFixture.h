// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/app/Drafts.h"
#include "tests/support/window/WindowFixture.h"

#include <QGuiApplication>

#include <string>

namespace zelvra::test {

/// The main window, with helpers for its menus and other windows.
class ShellFixture : public WindowFixture {
protected:
    using WindowFixture::WindowFixture;

    void openClip(const std::string& name = "game.mov") { open(clip(name)); }

    void addHighlight(double seconds) {
        state().setDraft(draftAt(seconds, 1, 0, state().sourceInfo()->displaySize));
        state().commitDraft();
        state().setShowDefaultsScopePrompt(false);
        window().requestActivate(); // as a window manager does when the editor closes
        EXPECT_TRUE(isFront("Zelvra"));
    }

    /// An item of a menu, which is left open.
    QQuickItem& menuItem(const QString& menu, const QString& objectName) {
        if (isShown(objectName)) {
            return item(objectName);
        }
        closeMenus();
        // If another menu was open, moving the pointer there opens this one, and the click closes it again.
        for (int attempt = 0; attempt < 5 && !isShown(objectName); ++attempt) {
            click("menu:" + menu);
            wait(50);
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
