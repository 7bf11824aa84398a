// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support/window/WindowFixture.h"

#include <string>
#include <vector>

namespace zelvra::test {

/// The main window, with helpers for its views. Times in seconds.
class ViewsFixture : public WindowFixture {
protected:
    /// Opens a recording of ten minutes.
    void openRecording();
    /// Three clips in a folder, which is opened.
    void openQueue();

    void highlight(double seconds, double freeze = 2);
    double trimStart() { return state().trimRange()->start.seconds(); }
    double trimEnd() { return state().trimRange()->end().seconds(); }

    /// The one below `parent`.
    static QQuickItem& in(QQuickItem& parent, const QString& objectName);
    static std::string text(const QQuickItem& item) { return item.property("text").toString().toStdString(); }
    std::string text(const QString& objectName) { return text(item(objectName)); }
    bool enabled(const QString& objectName) { return item(objectName).isEnabled(); }
    /// Waits until it is shown, or no longer shown.
    bool appears(const QString& objectName);
    bool disappears(const QString& objectName);
    /// Waits until the editor has gone and the main window has the keyboard.
    bool comesToFront();
    /// Gives an answer of the question that is up.
    void answer(const QString& text) { click("answer:" + text); }
    /// The answers of the question that is up.
    std::vector<std::string> answers();
    /// Whether that tooltip appears while the pointer rests on the item.
    testing::AssertionResult showsTip(QQuickItem& item, const std::string& tip,
                                      std::optional<QPointF> at = {});
};

} // namespace zelvra::test
