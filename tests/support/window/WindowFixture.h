// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/shell/Application.h"
#include "tests/support/Files.h"
#include "tests/support/NumberedMovie.h"
#include "tests/support/app/Desktop.h"

#include <QImage>
#include <QPointF>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QUrl>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zelvra::test {

/// The application in its real window on the offscreen platform, with its own preferences and folder,
/// controlled like a user would. Items are found by their objectName, also those of a dialog or a second
/// window. Positions are in an item's own coordinates; the default is its middle.
class WindowFixture : public testing::Test {
protected:
    explicit WindowFixture(const QStringList& languages = {QStringLiteral("en")});
    ~WindowFixture() override;

    AppState& state() { return application_->state(); }
    QQuickWindow& window() { return application_->mainWindow(); }

    Application::Options options(const QStringList& languages = {QStringLiteral("en")});

    /// A copy of that movie in the test's folder.
    std::filesystem::path clip(const std::string& name, const NumberedMovie& movie = {}) const;
    static QUrl urlOf(const std::filesystem::path& file);
    /// Opens that movie and waits for its first picture.
    void open(const std::filesystem::path& clip);
    /// Sets the trim, and makes a marked clip of it; seconds of the source.
    void trim(double start, double end);
    void mark(double start, double end);
    /// Runs the event loop until the condition holds; false after 20 s.
    static bool comesTrue(const std::function<bool()>& condition);
    /// Runs the event loop, and so animations, for that time.
    static void wait(int milliseconds);

    /// The topmost visible item of that name; null if there is none.
    QQuickItem* find(const QString& objectName);
    /// The same, but waits for it and fails the test if it does not appear.
    QQuickItem& item(const QString& objectName);
    /// All visible items of that name in the main window, from top to bottom.
    std::vector<QQuickItem*> items(const QString& objectName);
    bool isShown(const QString& objectName) { return find(objectName) != nullptr; }
    /// A property of an item, for example its "text".
    QString textOf(const QString& objectName) { return item(objectName).property("text").toString(); }

    void click(QQuickItem& item, std::optional<QPointF> at = {});
    /// Does not click and returns false if the item disappears before it stops moving, as a row of a list
    /// may.
    bool clickIfItStays(QQuickItem& item, std::optional<QPointF> at = {});
    void click(const QString& objectName) { click(item(objectName)); }
    void hover(QQuickItem& item, std::optional<QPointF> at = {});
    /// Presses, moves in `steps` and releases.
    void drag(QQuickItem& item, QPointF from, QPointF to, int steps = 8);
    void press(QQuickItem& item, QPointF at);
    void move(QQuickItem& item, QPointF to);
    void release(QQuickItem& item, QPointF at);
    /// Sends the key to the active window.
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& text);
    /// Drags the URLs over the item and drops them there. True if the drop was accepted.
    bool drop(QQuickItem& item, const QList<QUrl>& urls);
    /// The window's current contents.
    QImage picture() { return window().grabWindow(); }

    TemporaryFolder folder_;
    Desktop desktop_;
    std::unique_ptr<Application> application_;

private:
    static QQuickWindow& frontWindow(QQuickWindow& fallback);
};

} // namespace zelvra::test
