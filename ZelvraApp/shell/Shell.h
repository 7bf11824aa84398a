// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraApp/shell/Leaving.h"
#include "ZelvraApp/shell/MenuState.h"
#include "ZelvraApp/shell/WindowState.h"
#include "ZelvraApp/shell/panels/FilePanels.h"
#include "ZelvraApp/shell/windows/Settings.h"
#include "ZelvraApp/views/Dialogs.h"

#include <QObject>
#include <qqml.h>

namespace zelvra {

/// What the program's windows share besides the session. Owns nothing.
class Shell : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one.")
    Q_PROPERTY(zelvra::Dialogs* dialogs MEMBER dialogs CONSTANT)
    Q_PROPERTY(zelvra::MenuState* menu MEMBER menu CONSTANT)
    Q_PROPERTY(zelvra::Settings* settings MEMBER settings CONSTANT)
    Q_PROPERTY(zelvra::Leaving* leaving MEMBER leaving CONSTANT)
    Q_PROPERTY(zelvra::FilePanels* panels MEMBER panels CONSTANT)
    Q_PROPERTY(zelvra::WindowState* windowState MEMBER windowState CONSTANT)

public:
    Dialogs* dialogs = nullptr;
    MenuState* menu = nullptr;
    Settings* settings = nullptr;
    Leaving* leaving = nullptr;
    FilePanels* panels = nullptr;
    WindowState* windowState = nullptr;
};

} // namespace zelvra
