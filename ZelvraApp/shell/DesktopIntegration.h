// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/desktop/DesktopSettings.h"
#include "ZelvraApp/desktop/Inhibitor.h"
#include "ZelvraApp/desktop/SingleInstance.h"

#include <QDBusConnection>
#include <QObject>

namespace zelvra {

class Application;

/// Connects the program with the desktop that it runs on: it follows light and dark, keeps the screen on
/// while it plays and the machine awake while it exports, and handles the desktop's calls. Without a bus it
/// does nothing.
///
/// Made before the application, so that the desktop's appearance is known when the first picture is drawn.
/// Main thread.
class DesktopIntegration : public QObject {
    Q_OBJECT

public:
    DesktopIntegration(const QDBusConnection& session, const QDBusConnection& system);

    void connectTo(Application& application, SingleInstance& instance);

private:
    DesktopSettings settings_;
    IdleInhibitor idle_;
    SleepInhibitor sleep_;
};

} // namespace zelvra
