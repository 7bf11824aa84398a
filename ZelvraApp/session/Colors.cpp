// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/Colors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zelvra {

namespace {

constexpr Color systemBlue{0, 122 / 255.0, 1, 1};

std::array<double, 3> components(const Color& color) {
    return {color.red, color.green, color.blue};
}

bool isHexDigit(QChar character) {
    const char16_t c = character.toLower().unicode();
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f');
}

} // namespace

QString hexString(const Color& color) {
    const bool known = std::ranges::none_of(components(color), [](double part) { return std::isnan(part); });
    QString text = QStringLiteral("#");
    for (const double part : components(known ? color : systemBlue)) {
        const int byte = static_cast<int>(std::clamp(part, 0.0, 1.0) * 255);
        text += QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0')).toUpper();
    }
    return text;
}

std::optional<Color> colorFrom(const QString& hex) {
    const QString digits = hex.startsWith(QLatin1Char('#')) ? hex.mid(1) : hex;
    if (digits.size() != 6 || !std::ranges::all_of(digits, isHexDigit)) {
        return std::nullopt;
    }
    const unsigned packed = digits.toUInt(nullptr, 16);
    return Color{(packed >> 16 & 0xFF) / 255.0, (packed >> 8 & 0xFF) / 255.0, (packed & 0xFF) / 255.0, 1};
}

QColor toQColor(const Color& color) {
    const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(part(color.red), part(color.green), part(color.blue), part(color.alpha));
}

Color fromQColor(const QColor& color) {
    return {color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0, 1};
}

} // namespace zelvra
