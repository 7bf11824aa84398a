// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QQuickWindow;

namespace zelvra {

class Player;

/// Decides what windows are drawn with: OpenGL where a graphics processor does it, else memory, which is
/// faster than an OpenGL that a processor imitates, starts sooner and takes less memory. Leaves alone what
/// the user has chosen by QT_QUICK_BACKEND or QSG_RHI_BACKEND. After the QGuiApplication is made, before a
/// window. True for OpenGL.
bool chooseGraphics();

/// Has a window that is drawn with OpenGL draw the player's pictures with it, too. Before the player's first
/// movie and the window's first frame. The player outlives the window.
void drawWithOpenGL(QQuickWindow& window, Player& player);

} // namespace zelvra
