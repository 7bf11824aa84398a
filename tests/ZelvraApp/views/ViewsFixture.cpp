// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/ZelvraApp/views/ViewsFixture.h"

#include "tests/support/app/Drafts.h"

#include <QGuiApplication>

#include <algorithm>

namespace zelvra::test {

namespace {

void collect(QQuickItem* root, const std::function<bool(const QQuickItem&)>& wanted,
             std::vector<QQuickItem*>& found) {
    if (!root->isVisible()) {
        return;
    }
    if (wanted(*root)) {
        found.push_back(root);
    }
    for (QQuickItem* child : root->childItems()) {
        collect(child, wanted, found);
    }
}

std::vector<QQuickItem*> topDown(QQuickItem* root, const std::function<bool(const QQuickItem&)>& wanted) {
    std::vector<QQuickItem*> found;
    collect(root, wanted, found);
    std::ranges::stable_sort(found, {}, [](QQuickItem* item) { return item->mapToScene({}).y(); });
    return found;
}

} // namespace

void ViewsFixture::openRecording() {
    open(clip("recording.mov", {.rate = 1, .frames = 600, .gop = 10}));
}

void ViewsFixture::openQueue() {
    for (const char* name : {"queue/one.mov", "queue/three.mov", "queue/two.mov"}) {
        clip(name);
    }
    state().handleOpenedURLs({urlOf(folder_ / "queue")});
    EXPECT_TRUE(comesTrue([&] { return state().queueLabel() == "1 of 3" && state().player().isReady(); }));
}

void ViewsFixture::highlight(double seconds, double freeze) {
    HighlightDraft draft = draftAt(seconds, freeze, 0, state().sourceInfo()->displaySize);
    draft.shape = {.id = Uuid::random(),
                   .kind = HighlightShapeKind::circle,
                   .p1 = {0.5, 0.5},
                   .p2 = {0.6, 0.5},
                   .color = {1, 0, 0, 1},
                   .strokeWidthRatio = 0.004};
    state().setDraft(draft);
    state().commitDraft();
    state().setShowDefaultsScopePrompt(false);
    // The editor and the prompt were up for a moment.
    EXPECT_TRUE(disappears("questionTitle"));
    EXPECT_TRUE(comesToFront());
}

QQuickItem& ViewsFixture::in(QQuickItem& parent, const QString& objectName) {
    const auto found =
        topDown(&parent, [&](const QQuickItem& item) { return item.objectName() == objectName; });
    if (found.size() != 1) {
        throw std::runtime_error("not one " + objectName.toStdString());
    }
    return *found.front();
}

bool ViewsFixture::comesToFront() {
    return comesTrue([&] { return QGuiApplication::focusWindow() == &window(); });
}

bool ViewsFixture::appears(const QString& objectName) {
    return comesTrue([&] { return isShown(objectName); });
}

bool ViewsFixture::disappears(const QString& objectName) {
    return comesTrue([&] { return !isShown(objectName); });
}

std::vector<std::string> ViewsFixture::answers() {
    std::vector<std::string> texts;
    for (const QQuickItem* item : topDown(window().contentItem(), [](const QQuickItem& candidate) {
             return candidate.objectName().startsWith("answer:");
         })) {
        texts.push_back(text(*item));
    }
    return texts;
}

testing::AssertionResult ViewsFixture::showsTip(QQuickItem& item, const std::string& tip,
                                                std::optional<QPointF> at) {
    std::string seen;
    const bool shown = comesTrue([&] {
        hover(item, at); // repeatedly, as the item may still be moving to its place
        seen = isShown("tipText") ? text("tipText") : "";
        return seen == tip;
    });
    return shown ? testing::AssertionSuccess() : testing::AssertionFailure() << "it shows: " << seen;
}

} // namespace zelvra::test
