// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/window/WindowFixture.h"

#include "ZelvraApp/annotations/SessionTime.h"
#include "ZelvraApp/files/FilePaths.h"

#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace zelvra::test {

namespace {

/// The topmost item of that name below `root`.
QQuickItem* findBelow(QQuickItem* root, const QString& name) {
    if (!root->isVisible()) {
        return nullptr;
    }
    const QList<QQuickItem*> children = root->childItems();
    for (auto child = children.crbegin(); child != children.crend(); ++child) {
        if (QQuickItem* found = findBelow(*child, name)) {
            return found;
        }
    }
    return root->objectName() == name ? root : nullptr;
}

void collectBelow(QQuickItem* root, const QString& name, std::vector<QQuickItem*>& found) {
    if (root->isVisible() && root->objectName() == name) {
        found.push_back(root);
    }
    for (QQuickItem* child : root->childItems()) {
        collectBelow(child, name, found);
    }
}

/// Waits until the item stops moving, because a new item is laid out a moment later. False if it disappears
/// meanwhile.
bool settles(QQuickItem& item) {
    const QPointer<QQuickItem> still(&item);
    const auto isGone = [&] { return !still || still->window() == nullptr; };
    std::optional<QRectF> before;
    std::ignore = QTest::qWaitFor(
        [&] {
            if (isGone()) {
                return true;
            }
            const QRectF now = still->mapRectToScene(still->boundingRect());
            return std::exchange(before, now) == now;
        },
        20'000);
    return !isGone();
}

QPoint inWindow(QQuickItem& item, std::optional<QPointF> at) {
    return item.mapToScene(at.value_or(QPointF(item.width() / 2, item.height() / 2))).toPoint();
}

} // namespace

WindowFixture::WindowFixture(const QStringList& languages)
    : application_(std::make_unique<Application>(options(languages))) {
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window()));
}

WindowFixture::~WindowFixture() = default;

Application::Options WindowFixture::options(const QStringList& languages) {
    return {.preferences = folder_ / "preferences.json",
            .state = folder_ / "state",
            .languages = languages,
            .services = desktop_.services()};
}

std::filesystem::path WindowFixture::clip(const std::string& name, const NumberedMovie& movie) const {
    std::filesystem::create_directories((folder_ / name).parent_path());
    std::filesystem::copy_file(movieFile(movie), folder_ / name);
    return folder_ / name;
}

QUrl WindowFixture::urlOf(const std::filesystem::path& file) {
    return QUrl::fromLocalFile(zelvra::textOf(file));
}

void WindowFixture::open(const std::filesystem::path& clip) {
    state().handleOpenedURLs({urlOf(clip)});
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == clip && state().player().isReady(); }));
}

void WindowFixture::trim(double start, double end) {
    state().setTrim(CMTimeRange::fromStartToEnd(sessionTime(start), sessionTime(end)));
}

void WindowFixture::mark(double start, double end) {
    trim(start, end);
    state().markCurrentClip();
}

bool WindowFixture::comesTrue(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 20'000);
}

void WindowFixture::wait(int milliseconds) {
    QTest::qWait(milliseconds);
}

QQuickItem* WindowFixture::find(const QString& objectName) {
    const QWindowList windows = QGuiApplication::allWindows();
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        auto* quick = qobject_cast<QQuickWindow*>(*window);
        if (quick == nullptr || !quick->isVisible()) {
            continue;
        }
        if (QQuickItem* found = findBelow(quick->contentItem(), objectName)) {
            return found;
        }
    }
    return nullptr;
}

QQuickItem& WindowFixture::item(const QString& objectName) {
    QQuickItem* found = nullptr;
    if (!comesTrue([&] { return (found = find(objectName)) != nullptr; })) {
        throw std::runtime_error("no " + objectName.toStdString() + " is shown");
    }
    return *found;
}

std::vector<QQuickItem*> WindowFixture::items(const QString& objectName) {
    std::vector<QQuickItem*> found;
    collectBelow(window().contentItem(), objectName, found);
    std::ranges::sort(found, {}, [](const QQuickItem* item) { return item->mapToScene({0, 0}).y(); });
    return found;
}

bool WindowFixture::clickIfItStays(QQuickItem& item, std::optional<QPointF> at) {
    if (!settles(item)) {
        return false;
    }
    const QPointer<QQuickItem> still(&item);
    QTest::mouseMove(item.window(), inWindow(item, at));
    if (!still || still->window() == nullptr) {
        return false;
    }
    QTest::mouseClick(item.window(), Qt::LeftButton, {}, inWindow(item, at));
    return true;
}

void WindowFixture::click(QQuickItem& item, std::optional<QPointF> at) {
    EXPECT_TRUE(clickIfItStays(item, at)) << "the item to click disappeared";
}

void WindowFixture::hover(QQuickItem& item, std::optional<QPointF> at) {
    QTest::mouseMove(item.window(), inWindow(item, at));
}

void WindowFixture::drag(QQuickItem& item, QPointF from, QPointF to, int steps) {
    // The item may move with the drag, so the pointer's path is relative to the window.
    QQuickWindow* window = item.window();
    const QPointF start = item.mapToScene(from);
    const QPointF end = item.mapToScene(to);
    QTest::mouseMove(window, start.toPoint());
    QTest::mousePress(window, Qt::LeftButton, {}, start.toPoint());
    for (int step = 1; step <= steps; ++step) {
        QTest::mouseMove(window, (start + (end - start) * step / steps).toPoint());
    }
    QTest::mouseRelease(window, Qt::LeftButton, {}, end.toPoint());
}

void WindowFixture::press(QQuickItem& item, QPointF at) {
    QTest::mousePress(item.window(), Qt::LeftButton, {}, inWindow(item, at));
}

void WindowFixture::move(QQuickItem& item, QPointF to) {
    QTest::mouseMove(item.window(), inWindow(item, to));
}

void WindowFixture::release(QQuickItem& item, QPointF at) {
    QTest::mouseRelease(item.window(), Qt::LeftButton, {}, inWindow(item, at));
}

void WindowFixture::key(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&frontWindow(window()), static_cast<Qt::Key>(key), modifiers);
}

void WindowFixture::type(const QString& text) {
    for (const QChar character : text) {
        QTest::keyClick(&frontWindow(window()), character.toLatin1());
    }
}

bool WindowFixture::drop(QQuickItem& item, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    const QPoint at = inWindow(item, {});
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(item.window(), &enter);
    QDragMoveEvent over(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(item.window(), &over);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(item.window(), &drop);
    return drop.isAccepted();
}

QQuickWindow& WindowFixture::frontWindow(QQuickWindow& fallback) {
    auto* front = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
    return front != nullptr ? *front : fallback;
}

} // namespace zelvra::test
