// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <qqml.h>

class QJSEngine;
class QQmlEngine;

namespace zelvra {

/// Light or dark, and whether motion is wanted: the desktop's settings, live. Theme.qml chooses its colours
/// by it. ZELVRA_APPEARANCE=light or =dark in the environment overrules the desktop.
///
/// One for the program; main thread.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)

public:
    static Appearance& shared();
    static Appearance* create(QQmlEngine* engine, QJSEngine* scripts);

    bool isDark() const { return dark_; }
    void setDark(bool dark);
    /// Sets the desktop's preference, unless the environment overrules it.
    void followDesktop(bool dark);
    bool reducedMotion() const { return reducedMotion_; }
    void setReducedMotion(bool reduced);

Q_SIGNALS:
    void changed();

private:
    Appearance();

    bool overruled_ = false;
    bool dark_ = false;
    bool reducedMotion_ = false;
};

} // namespace zelvra
