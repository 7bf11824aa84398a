// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/DesktopIntegration.h"

#include "ZelvraApp/controls/Appearance.h"
#include "tests/ZelvraApp/desktop/BusServices.h"
#include "tests/support/window/WindowFixture.h"

#include <QGuiApplication>

namespace zelvra::test {
namespace {

/// The program, connected with the simulated desktop as main() does it. The tests' bus is both the session's
/// and the system's.
class OnTheDesktop : public WindowFixture {
protected:
    OnTheDesktop() {
        EXPECT_TRUE(instance_.claim({}));
        integration_.connectTo(*application_, instance_);
    }

    SingleInstance instance_{ours()};
    DesktopIntegration integration_{ours(), ours()};
};

TEST_F(OnTheDesktop, TheScreenStaysOnWhileTheMoviePlays) {
    InhibitPortal portal;
    open(clip("game.mov", {.frames = 300}));
    EXPECT_EQ(portal.flags, 0U);
    state().play();
    EXPECT_TRUE(comesTrue([&] { return portal.flags != 0; }));
    EXPECT_FALSE(portal.request.closed);
    state().pause();
    EXPECT_TRUE(comesTrue([&] { return portal.request.closed; }));
}

TEST_F(OnTheDesktop, TheMachineStaysAwakeWhileAnExportRuns) {
    Login login;
    // Every picture has to be encoded anew, so that the export takes a while.
    open(clip("game.mov", {.width = 1280, .height = 720, .frames = 45, .codec = MovieCodec::mpeg4}));
    mark(0, 1.5);
    EXPECT_EQ(login.what, "");
    const QCoro::Task<> exporting = state().exportMovies();
    EXPECT_TRUE(comesTrue([&] { return !login.what.isEmpty(); }));
    EXPECT_TRUE(login.isHeld() || !state().isExporting());
    EXPECT_TRUE(comesTrue([&] { return !state().isExporting(); }));
    EXPECT_TRUE(comesTrue([&] { return !login.isHeld(); }));
}

TEST_F(OnTheDesktop, AClipThatTheUserOpensThereIsShownInFront) {
    const std::filesystem::path game = clip("game.mov");
    QQuickWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(comesTrue([&] { return QGuiApplication::focusWindow() == &other; }));
    callProgram(QStringLiteral("Open"), {QStringList(urlOf(game).toString()), QVariantMap()});
    EXPECT_TRUE(comesTrue([&] { return state().videoFile() == game; }));
    EXPECT_TRUE(comesTrue([&] { return QGuiApplication::focusWindow() == &window(); }));

    window().showMinimized();
    ASSERT_EQ(window().visibility(), QWindow::Minimized);
    callProgram(QStringLiteral("Activate"), {QVariantMap()});
    EXPECT_TRUE(comesTrue([&] { return window().visibility() == QWindow::Windowed; }));
}

TEST_F(OnTheDesktop, ColoursAndMotionAreTheDesktops) {
    SettingsPortal portal;
    const Appearance& appearance = Appearance::shared();
    const auto follows = [&](const char* group, const char* key, const QVariant& value,
                             bool (Appearance::*property)() const, bool expected) {
        portal.change(QLatin1String(group), QLatin1String(key), value);
        return comesTrue([&] { return (appearance.*property)() == expected; });
    };
    for (const bool on : {true, false}) {
        EXPECT_TRUE(
            follows("org.freedesktop.appearance", "color-scheme", on ? 1U : 2U, &Appearance::isDark, on));
        EXPECT_TRUE(
            follows("org.gnome.desktop.interface", "enable-animations", !on, &Appearance::reducedMotion, on));
    }
}

} // namespace
} // namespace zelvra::test
