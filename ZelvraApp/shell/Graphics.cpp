// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/Graphics.h"

#include "ZelvraApp/player/OpenGLPicture.h"
#include "ZelvraApp/player/Player.h"

#include <QDir>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace zelvra {

namespace {

/// Checked first, because to ask an imitated OpenGL for its name takes a tenth of a second.
bool hasGraphicsProcessor() {
    return !QDir(QStringLiteral("/dev/dri")).entryList({QStringLiteral("renderD*")}, QDir::System).isEmpty();
}

bool isImitated(const QByteArray& renderer) {
    return renderer.contains("llvmpipe") || renderer.contains("softpipe") || renderer.contains("swrast");
}

bool hasRealOpenGL() {
    if (QGuiApplication::platformName() == QLatin1String("offscreen") || !hasGraphicsProcessor()) {
        return false;
    }
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface)) {
        return false;
    }
    const auto* name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    return !isImitated(QByteArray(name));
}

} // namespace

bool chooseGraphics() {
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
        return false;
    }
    const bool openGL = qEnvironmentVariableIsSet("QSG_RHI_BACKEND") || hasRealOpenGL();
    QQuickWindow::setGraphicsApi(openGL ? QSGRendererInterface::OpenGL : QSGRendererInterface::Software);
    return openGL;
}

void drawWithOpenGL(QQuickWindow& window, Player& player) {
    OpenGLPicture& picture = player.drawWithOpenGL();
    // These run on the thread that draws the window, with its context current.
    QObject::connect(
        &window, &QQuickWindow::sceneGraphInitialized, &picture, [&picture] { picture.start(); },
        Qt::DirectConnection);
    QObject::connect(
        &window, &QQuickWindow::sceneGraphInvalidated, &picture, [&picture] { picture.stop(); },
        Qt::DirectConnection);
}

} // namespace zelvra
