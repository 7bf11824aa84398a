// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QQuickWindow;

namespace zelvra {

class Player;

/// Decides what windows are drawn with: OpenGL if there is a graphics processor, else software, which is
/// faster than an OpenGL that the processor imitates, starts sooner and needs less memory. Keeps the user's
/// own choice in QT_QUICK_BACKEND or QSG_RHI_BACKEND. Called after the QGuiApplication is made and before a
/// window is. Returns true for OpenGL.
bool chooseGraphics();

/// Lets a window that is drawn with OpenGL draw the player's pictures with it too. Called before the player's
/// first movie and the window's first frame. The player outlives the window.
void drawWithOpenGL(QQuickWindow& window, Player& player);

} // namespace zelvra
