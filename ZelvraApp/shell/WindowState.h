// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSize>
#include <qqml.h>

#include <filesystem>

namespace zelvra {

/// How the main window was left: its size, whether it was maximised, and how wide the sidebar was. Kept in a
/// file of its own beside the preferences, which is read when this is made and written when it is destroyed.
/// Without a file, or with a damaged one, the window has its standard size. A failure to write is ignored.
class WindowState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The shell has one.")
    /// Of the window when it is neither maximised nor full screen, in logical pixels.
    Q_PROPERTY(int width MEMBER width_ NOTIFY changed)
    Q_PROPERTY(int height MEMBER height_ NOTIFY changed)
    Q_PROPERTY(bool maximized MEMBER maximized_ NOTIFY changed)
    Q_PROPERTY(double sidebarWidth MEMBER sidebarWidth_ NOTIFY changed)

public:
    explicit WindowState(std::filesystem::path file, QObject* parent = nullptr);
    ~WindowState() override;

Q_SIGNALS:
    void changed();

private:
    std::filesystem::path file_;
    int width_ = 1280;
    int height_ = 800;
    bool maximized_ = false;
    double sidebarWidth_ = 300;
};

} // namespace zelvra
