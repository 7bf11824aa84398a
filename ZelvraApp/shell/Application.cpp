#include "ZelvraApp/shell/Application.h"

#include "ZelvraApp/session/Background.h"
#include "ZelvraApp/shell/Graphics.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QVariant>

#include <clocale>

namespace zelvra {

void Application::prepare() {
    QQuickStyle::setStyle(QStringLiteral("Basic"));
    QCoreApplication::setApplicationName(QStringLiteral("zelvra"));
    QGuiApplication::setDesktopFileName(QStringLiteral("zelvra"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Zelvra"));
}

Application::Application(const Options& options)
    : preferences_(options.preferences),
      state_(std::make_unique<AppState>(preferences_, options.services)),
      session_(std::make_unique<Session>(*state_)),
      engine_(std::make_unique<QQmlApplicationEngine>()) {
    const bool openGL = chooseGraphics();
    std::setlocale(LC_NUMERIC, "C"); // what the player's core insists on
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    engine_->addImportPath(QStringLiteral("qrc:/qml"));
    engine_->setInitialProperties({{QStringLiteral("session"), QVariant::fromValue(session_.get())}});
    engine_->load(QUrl(QStringLiteral("qrc:/qml/Zelvra/Shell/MainWindow.qml")));
    if (openGL) {
        drawWithOpenGL(mainWindow(), state_->player());
    }
}

Application::~Application() {
    engine_.reset();
    session_.reset();
    state_.reset();
    finishWorkers();
}

QQuickWindow& Application::mainWindow() const {
    return *qobject_cast<QQuickWindow*>(engine_->rootObjects().constFirst());
}

} // namespace zelvra
