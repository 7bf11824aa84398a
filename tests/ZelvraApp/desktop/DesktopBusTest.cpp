// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/desktop/DesktopSettings.h"
#include "ZelvraApp/desktop/FileManager.h"
#include "ZelvraApp/desktop/Inhibitor.h"
#include "ZelvraApp/desktop/PortalFileChooser.h"
#include "ZelvraApp/desktop/SingleInstance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace zelvra::test {
namespace {

/// The bus as seen from another program.
QDBusConnection others() {
    static const QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("others"));
    return bus;
}

QDBusConnection ours() {
    return QDBusConnection::sessionBus();
}

/// A desktop's services under one name and path.
class Service : public QObject {
public:
    Service(const QString& name, const QString& path) : name_(name), path_(path) {}
    ~Service() override {
        others().unregisterService(name_);
        others().unregisterObject(path_);
    }
    void start() {
        ASSERT_TRUE(others().registerObject(path_, this, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(others().registerService(name_));
    }

protected:
    QString name_;
    QString path_;
};

class SettingsPortal : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    SettingsPortal()
        : Service(QStringLiteral("org.freedesktop.portal.Desktop"),
                  QStringLiteral("/org/freedesktop/portal/desktop")) {
        start();
    }
    void change(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal = QDBusMessage::createSignal(
            path_, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        others().send(signal);
    }

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        Q_UNUSED(group)
        const QVariant value = key == QLatin1String("enable-animations") ? QVariant(true) : QVariant(1U);
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }
};

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

class InhibitPortal : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")

public:
    InhibitPortal()
        : Service(QStringLiteral("org.freedesktop.portal.Desktop"),
                  QStringLiteral("/org/freedesktop/portal/desktop")) {
        start();
    }
    uint flags = 0;

public Q_SLOTS:
    QDBusObjectPath Inhibit(const QString&, uint what, const QVariantMap&) {
        flags = what;
        return QDBusObjectPath(QStringLiteral("/request/1"));
    }
};

class InhibitRequest : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public:
    bool closed = false;

public Q_SLOTS:
    void Close() { closed = true; }
};

TEST(IdleInhibitor, HoldsTheScreenAwakeUntilItIsReleased) {
    InhibitPortal portal;
    InhibitRequest request;
    others().registerObject(QStringLiteral("/request/1"), &request, QDBusConnection::ExportAllSlots);
    IdleInhibitor inhibitor(ours());
    inhibitor.hold(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return portal.flags == 8; }, 20'000));
    EXPECT_FALSE(request.closed);
    inhibitor.hold(false); // perhaps before the portal's answer has come
    EXPECT_TRUE(QTest::qWaitFor([&] { return request.closed; }, 20'000));
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
    QString request;

public Q_SLOTS:
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
    const PortalFileChooser::Question question{.title = "Choose a clip",
                                               .acceptLabel = "Open",
                                               .filterName = "Movies",
                                               .globs = {"*.mov", "*.MOV"},
                                               .firstFolder = "/clips",
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
}

class Login : public Service {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    Login() : Service(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1")) {
        EXPECT_EQ(pipe2(ends_, O_CLOEXEC | O_NONBLOCK), 0);
        start();
    }
    ~Login() override { close(ends_[0]); }
    bool isHeld() const {
        char nothing = 0;
        return read(ends_[0], &nothing, 1) < 0; // ends when no process holds the other side
    }
    QString what;

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString& wanted, const QString&, const QString&, const QString&) {
        what = wanted;
        const QDBusUnixFileDescriptor lock(ends_[1]);
        close(ends_[1]);
        return lock;
    }

private:
    int ends_[2] = {-1, -1};
};

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
    const auto call = [&](const QString& method, const QVariantList& arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(SingleInstance::name(), QStringLiteral("/com/corvath/Zelvra"),
                                           QStringLiteral("org.freedesktop.Application"), method);
        message.setArguments(arguments);
        others().send(message);
    };
    call(QStringLiteral("Activate"), {QVariantMap{{QStringLiteral("activation-token"), "token-1"}}});
    call(QStringLiteral("Open"), {QStringList("file:///clips/game.mov"), QVariantMap()});
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
