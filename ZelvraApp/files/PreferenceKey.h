// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonArray>
#include <QString>

namespace zelvra {

/// The name of one preference, together with the type of what is kept under it: QString, double, bool or
/// QJsonArray.
template <class Value>
struct PreferenceKey {
    const char* name;
};

/// Everything that outlives a run of the program. What an absent value means is documented at its reader.
namespace preferences {

inline constexpr PreferenceKey<QString> defaultColorHex{"zvDefault.colorHex"};
inline constexpr PreferenceKey<double> defaultRadiusRatio{"zvDefault.radiusRatio"};
inline constexpr PreferenceKey<double> defaultStrokeWidthRatio{"zvDefault.strokeWidthRatio"};
inline constexpr PreferenceKey<double> defaultDurationSec{"zvDefault.durationSec"};
inline constexpr PreferenceKey<double> clipDefaultLengthSec{"zvClip.defaultLengthSec"};
inline constexpr PreferenceKey<QString> outputMode{"zvOutput.mode"};
inline constexpr PreferenceKey<QString> outputSubfolderName{"zvOutput.subfolderName"};
inline constexpr PreferenceKey<QString> outputCustomFolderPath{"zvOutput.customFolderPath"};
inline constexpr PreferenceKey<bool> outputIncludeAudio{"zvOutput.includeAudio"};
inline constexpr PreferenceKey<bool> previewEnabled{"zvPreview.enabled"};
inline constexpr PreferenceKey<bool> rememberWork{"zvWork.remember"};
inline constexpr PreferenceKey<QJsonArray> recents{"zvRecents"};

} // namespace preferences
} // namespace zelvra
