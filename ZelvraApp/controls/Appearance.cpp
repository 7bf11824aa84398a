// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/controls/Appearance.h"

#include <QGuiApplication>
#include <QPalette>
#include <QtQml/QQmlEngine>

namespace zelvra {

Appearance& Appearance::shared() {
    static Appearance appearance;
    return appearance;
}

Appearance* Appearance::create(QQmlEngine* /*engine*/, QJSEngine* /*scripts*/) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

Appearance::Appearance() {
    const QString wanted = qEnvironmentVariable("ZELVRA_APPEARANCE");
    overruled_ = !wanted.isEmpty();
    dark_ = overruled_ ? wanted == QLatin1String("dark")
                       : QGuiApplication::palette().window().color().lightnessF() < 0.5F;
}

void Appearance::setDark(bool dark) {
    if (std::exchange(dark_, dark) != dark) {
        Q_EMIT changed();
    }
}

void Appearance::followDesktop(bool dark) {
    if (!overruled_) {
        setDark(dark);
    }
}

void Appearance::setReducedMotion(bool reduced) {
    if (std::exchange(reducedMotion_, reduced) != reduced) {
        Q_EMIT changed();
    }
}

} // namespace zelvra
