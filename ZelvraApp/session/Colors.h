// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ZelvraCore/records/Highlight.h"

#include <QColor>
#include <QString>

#include <optional>

namespace zelvra {

/// "#" and six upper-case hexadecimal digits. Components are cut off, not rounded, to whole 255ths; alpha is
/// left out. A colour whose components are no numbers gives a fixed blue.
QString hexString(const Color& color);

/// The opaque colour of six hexadecimal digits in either case, with or without one "#" before them; nullopt
/// for any other text.
std::optional<Color> colorFrom(const QString& hex);

/// To and from the colours of views. A view's colour is rounded to whole 255ths and loses its alpha, so that
/// the shown, the written and the saved colour are the same.
QColor toQColor(const Color& color);
Color fromQColor(const QColor& color);

} // namespace zelvra
