// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace zelvra {

/// How the values of a style are written, in the editor as in the settings.

/// A circle's radius, given as a fraction of the picture's height: "8.9%".
QString radiusText(double radiusRatio);
/// A stroke's width, given as a fraction of the picture's height: "0.50%".
QString strokeText(double strokeWidthRatio);
/// How long a picture freezes: "3.0s".
QString durationText(double seconds);

} // namespace zelvra
