// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/desktop/DesktopSettings.h"
#include "ZelvraApp/desktop/Inhibitor.h"
#include "ZelvraApp/desktop/SingleInstance.h"

#include <QDBusConnection>
#include <QObject>

namespace zelvra {

class Application;

/// The program's place on the desktop that it runs on: it takes on light and dark, keeps the screen awake
/// while it plays and the machine while it exports, and answers when the desktop calls it. Where there is no
/// bus, nothing of this happens.
///
/// Made before the application, so that the desktop's looks are known when its first picture is drawn. Main
/// thread.
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
