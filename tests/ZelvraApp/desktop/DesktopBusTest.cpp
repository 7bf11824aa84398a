// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/DesktopSettings.h"
#include "ZelvraApp/desktop/FileManager.h"
#include "ZelvraApp/desktop/Inhibitor.h"
#include "ZelvraApp/desktop/PortalFileChooser.h"
#include "ZelvraApp/desktop/SingleInstance.h"
#include "tests/ZelvraApp/desktop/BusServices.h"

#include <QDBusArgument>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace zelvra::test {
namespace {

TEST(DesktopSettings, AreReadAndFollowed) {
    SettingsPortal portal;
    DesktopSettings settings(ours());
    QSignalSpy dark(&settings, &DesktopSettings::darkChanged);
    QSignalSpy motion(&settings, &DesktopSettings::reducedMotionChanged);
    ASSERT_TRUE(QTest::qWaitFor([&] { return motion.size() == 2; }, 20'000));
    EXPECT_EQ(dark.last().first(), true);
    EXPECT_EQ(motion.first().first(), false);
    EXPECT_EQ(motion.last().first(), true);
    portal.change(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"), 2U);
    portal.change(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"), true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return motion.size() == 3; }, 20'000));
    EXPECT_EQ(dark.last().first(), false);
    EXPECT_EQ(motion.last().first(), false);
}

TEST(IdleInhibitor, HoldsTheScreenAwakeUntilItIsReleased) {
    InhibitPortal portal;
    IdleInhibitor inhibitor(ours());
    inhibitor.hold(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.flags == 8; }, 20'000));
    EXPECT_FALSE(portal.request.closed);
    inhibitor.hold(false); // perhaps before the portal's answer has come
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal.request.closed; }, 20'000));
}

class FileChooserPortal : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")

public:
    FileChooserPortal()
        : Service(QStringLiteral("org.freedesktop.portal.Desktop"),
                  QStringLiteral("/org/freedesktop/portal/desktop")) {
        start();
    }
    void answer(uint response, const QStringList& uris) {
        QDBusMessage signal = QDBusMessage::createSignal(
            request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << response << QVariantMap{{QStringLiteral("uris"), uris}};
        others().send(signal);
    }
    QString title;
    QVariantMap options;
    QString filters; ///< their signature on the bus
    QString savesAs; ///< of a file to save
    QString request;

public Q_SLOTS:
    QDBusObjectPath SaveFile(const QString& window, const QString& asked, const QVariantMap& with,
                             const QDBusMessage& call) {
        savesAs = with[QStringLiteral("current_name")].toString();
        return OpenFile(window, asked, with, call);
    }
    QDBusObjectPath OpenFile(const QString&, const QString& asked, const QVariantMap& with,
                             const QDBusMessage& call) {
        title = asked;
        options = with;
        filters = with[QStringLiteral("filters")].value<QDBusArgument>().currentSignature();
        const QString sender = call.service().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
        request = path_ + QStringLiteral("/request/%1/").arg(sender) +
                  with[QStringLiteral("handle_token")].toString();
        return QDBusObjectPath(request);
    }
};

TEST(PortalFileChooser, AsksTheDesktopAndPassesItsAnswerOn) {
    PortalFileChooser chooser(ours());
    QSignalSpy chosen(&chooser, &PortalFileChooser::chosen);
    QSignalSpy unavailable(&chooser, &PortalFileChooser::unavailable);
    PortalFileChooser::Question question{.title = "Choose a clip",
                                         .acceptLabel = "Open",
                                         .filterName = "Movies",
                                         .globs = {"*.mov", "*.MOV"},
                                         .firstFolder = "/clips",
                                         .newName = {},
                                         .parentWindow = {}};
    chooser.ask(question);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !unavailable.isEmpty(); }, 20'000));

    FileChooserPortal portal;
    chooser.ask(question);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !portal.request.isEmpty(); }, 20'000));
    EXPECT_EQ(portal.title, "Choose a clip");
    EXPECT_EQ(portal.options["accept_label"], "Open");
    EXPECT_EQ(portal.options["current_folder"], QByteArray("/clips").append('\0'));
    EXPECT_EQ(portal.filters, "a(sa(us))");
    portal.answer(1, {"file:///cancelled.mov"});
    chooser.ask(question);
    const QString before = portal.request;
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.request != before; }, 20'000));
    portal.answer(0, {"file:///clips/game%201.mov"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !chosen.isEmpty(); }, 20'000));
    EXPECT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen.first().first().toUrl().toLocalFile(), "/clips/game 1.mov");

    EXPECT_EQ(portal.savesAs, "");
    question.newName = "game.json";
    chooser.ask(question);
    EXPECT_TRUE(QTest::qWaitFor([&] { return portal.savesAs == QLatin1String("game.json"); }, 20'000));
}

TEST(SleepInhibitor, HoldsTheMachineAwakeUntilItIsReleased) {
    Login login;
    SleepInhibitor inhibitor(ours());
    inhibitor.hold(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return login.what == QLatin1String("sleep"); }, 20'000));
    EXPECT_TRUE(login.isHeld());
    inhibitor.hold(false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !login.isHeld(); }, 20'000));
}

class FileManagerService : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    FileManagerService()
        : Service(QStringLiteral("org.freedesktop.FileManager1"),
                  QStringLiteral("/org/freedesktop/FileManager1")) {
        start();
    }
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList& uris, const QString&) { shown = uris; }
};

TEST(FileManager, IsAskedToSelectTheFile) {
    FileManagerService manager;
    showInFileManager("/clips/ä b.mov");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }, 20'000));
    EXPECT_EQ(manager.shown, QStringList("file:///clips/%C3%A4%20b.mov"));
}

TEST(SingleInstance, PassesTheDesktopsCallsOn) {
    SingleInstance instance(ours());
    ASSERT_TRUE(instance.claim({}));
    QSignalSpy activated(&instance, &SingleInstance::activated);
    QSignalSpy opened(&instance, &SingleInstance::openRequested);
    callProgram(QStringLiteral("Activate"), {QVariantMap{{QStringLiteral("activation-token"), "token-1"}}});
    callProgram(QStringLiteral("Open"), {QStringList("file:///clips/game.mov"), QVariantMap()});
    ASSERT_TRUE(QTest::qWaitFor([&] { return !opened.isEmpty(); }, 20'000));
    EXPECT_EQ(activated.size(), 2);
    EXPECT_EQ(activated.first().first(), "token-1");
    EXPECT_EQ(opened.first().first().value<QList<QUrl>>().first().toLocalFile(), "/clips/game.mov");
}

TEST(SingleInstance, IsTheOnlyOneWithoutABus) {
    SingleInstance instance(QDBusConnection(QStringLiteral("there is none")));
    EXPECT_TRUE(instance.claim({}));
}

} // namespace
} // namespace zelvra::test

#include "DesktopBusTest.moc"
