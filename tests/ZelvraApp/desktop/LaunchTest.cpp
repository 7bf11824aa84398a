// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/SingleInstance.h"
#include "ZelvraApp/shell/CommandLine.h"
#include "tests/support/Files.h"

#include <QDBusConnectionInterface>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

/// The program as a shell starts it, with a home of its own.
class Launch : public testing::Test {
protected:
    void start(const QStringList& arguments,
               QProcessEnvironment environment = QProcessEnvironment::systemEnvironment()) {
        for (const auto& [variable, name] :
             {std::pair("ZELVRA_PREFERENCES", "preferences.json"), std::pair("ZELVRA_STATE", "state")}) {
            environment.insert(QLatin1String(variable), QString::fromStdString((folder_ / name).string()));
        }
        program_.setProcessEnvironment(environment);
        program_.setWorkingDirectory(QString::fromStdString(folder_.path().string()));
        program_.start(QStringLiteral(ZELVRA), arguments);
    }
    int exitStatus() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return program_.state() == QProcess::NotRunning; }, 20'000));
        return program_.exitCode();
    }

    TemporaryFolder folder_;
    QProcess program_;
};

TEST(CommandLine, NamesFilesAndFoldersInEveryForm) {
    const CommandLine line = CommandLine::parse(
        {"game.mov", "../clips", "/movies/a b.mp4", "file:///movies/%C3%A4.mov", "--", "-odd.mov"},
        "/work/here");
    EXPECT_FALSE(line.answer);
    QStringList files;
    for (const QUrl& url : line.urls) {
        files.append(url.toLocalFile());
    }
    EXPECT_EQ(files, QStringList({"/work/here/game.mov", "/work/clips", "/movies/a b.mp4", "/movies/ä.mov",
                                  "/work/here/-odd.mov"}));
}

TEST_F(Launch, AnswersWithoutADisplay) {
    qputenv("QT_QPA_PLATFORM", "xcb");
    start({"--version"});
    EXPECT_EQ(exitStatus(), 0);
    EXPECT_TRUE(program_.readAllStandardOutput().startsWith("zelvra 0."));
    start({"--halp"});
    EXPECT_EQ(exitStatus(), 2);
    EXPECT_EQ(program_.readAllStandardError(), "zelvra: there is no option --halp; see zelvra --help\n");
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

TEST_F(Launch, HandsItsFilesToTheOneThatRuns) {
    SingleInstance first(QDBusConnection::sessionBus());
    ASSERT_TRUE(first.claim({}));
    QSignalSpy opened(&first, &SingleInstance::openRequested);
    start({"second half.mov"});
    EXPECT_EQ(exitStatus(), 0);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(
        opened.first().first().value<QList<QUrl>>(),
        QList<QUrl>{QUrl::fromLocalFile(QString::fromStdString((folder_ / "second half.mov").string()))});
}

TEST_F(Launch, TakesAFreeNameAndEndsInOrder) {
    start({});
    SingleInstance later(QDBusConnection::sessionBus());
    const auto isTaken = [] {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(SingleInstance::name()).value();
    };
    ASSERT_TRUE(QTest::qWaitFor(isTaken, 20'000));
    EXPECT_FALSE(later.claim({}));
    program_.terminate();
    EXPECT_EQ(exitStatus(), 0);
    EXPECT_EQ(program_.exitStatus(), QProcess::NormalExit);
    EXPECT_TRUE(std::filesystem::exists(folder_ / "state" / "window.json"));
}

TEST_F(Launch, DrawsItsWindowOnWayland) {
    const QString folder = QString::fromStdString(folder_.path().string());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", folder);
    environment.insert("WAYLAND_DISPLAY", "zelvra-test");
    environment.insert("WAYLAND_DEBUG", "1");
    environment.insert("QT_QPA_PLATFORM", "wayland");
    environment.insert("QT_IM_MODULE", "compose"); // Qt 6.4's default one needs a keyboard, and there is none
    QProcess weston;
    weston.setProcessEnvironment(environment);
    weston.start("weston", {"--backend=headless-backend.so", "--socket=zelvra-test", "--idle-time=0"});
    if (!weston.waitForStarted()) {
        GTEST_SKIP() << "there is no weston";
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(folder_ / "zelvra-test"); }, 20'000));
    start({}, environment);
    QByteArray protocol;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return (protocol += program_.readAllStandardError()).contains(".attach(wl_buffer"); }, 20'000));
    EXPECT_TRUE(protocol.contains("set_app_id(\"com.corvath.Zelvra\")"));
    program_.terminate();
    exitStatus();
    weston.terminate();
    weston.waitForFinished();
}

} // namespace
} // namespace zelvra::test
