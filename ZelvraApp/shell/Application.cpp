// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/Application.h"

#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/shell/Graphics.h"

#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QVariant>

#include <clocale>

namespace zelvra {

namespace {

template <class Service>
Service* orElse(Service* given, Service& desktops) {
    return given != nullptr ? given : &desktops;
}

} // namespace

void Application::prepare() {
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QCoreApplication::setApplicationName(QStringLiteral("zelvra"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.corvath.Zelvra"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

Application::Application(const Options& options)
    : translations_(options.languages),
      windowState_(options.state / "window.json"),
      preferences_(options.preferences) {
    OpenPanel* const openPanel = orElse<OpenPanel>(options.services.openPanel, panels_);
    state_ = std::make_unique<AppState>(
        preferences_,
        ShellServices{.openPanel = openPanel,
                      .fileViewer = orElse<FileViewer>(options.services.fileViewer, desktop_),
                      .terminator = &askFirst_,
                      .recentDocuments = orElse<RecentDocuments>(options.services.recentDocuments, desktop_),
                      .savePanel = orElse<SavePanel>(options.services.savePanel, panels_)},
        options.state);
    session_ = std::make_unique<Session>(*state_);
    dialogs_ = std::make_unique<Dialogs>(*session_);
    settings_ = std::make_unique<Settings>(preferences_, openPanel);
    leaving_ = std::make_unique<Leaving>(*state_, *orElse<Terminator>(options.services.terminator, desktop_));
    menu_ = std::make_unique<MenuState>(*session_, *dialogs_, *leaving_);
    askFirst_.leaving = leaving_.get();
    shell_.dialogs = dialogs_.get();
    shell_.menu = menu_.get();
    shell_.settings = settings_.get();
    shell_.leaving = leaving_.get();
    shell_.panels = &panels_;
    shell_.windowState = &windowState_;

    const bool openGL = chooseGraphics();
    std::setlocale(LC_NUMERIC, "C"); // the player's core needs it
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/qml/Zelvra/Shell/AppIcon.svg")));
    engine_ = std::make_unique<QQmlApplicationEngine>();
    engine_->addImportPath(QStringLiteral("qrc:/qml"));
    engine_->setInitialProperties({{QStringLiteral("session"), QVariant::fromValue(session_.get())},
                                   {QStringLiteral("shell"), QVariant::fromValue(&shell_)}});
    engine_->load(QUrl(QStringLiteral("qrc:/qml/Zelvra/Shell/MainWindow.qml")));
    if (openGL) {
        drawWithOpenGL(mainWindow(), state_->player());
    }
}

Application::~Application() {
    engine_.reset();
    menu_.reset();
    leaving_.reset();
    settings_.reset();
    dialogs_.reset();
    session_.reset();
    state_.reset();
    constexpr std::chrono::seconds patience(3);
    finishWorkers(patience);
}

QQuickWindow& Application::mainWindow() const {
    return *qobject_cast<QQuickWindow*>(engine_->rootObjects().constFirst());
}

void Application::present(const QString& activationToken) {
    if (!activationToken.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8()); // the toolkit reads it there
    }
    QQuickWindow& window = mainWindow();
    if (window.visibility() == QWindow::Minimized) {
        window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    }
    window.raise();
    window.requestActivate();
}

} // namespace zelvra
