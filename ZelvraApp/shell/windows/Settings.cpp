// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/Settings.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/Colors.h"
#include "ZelvraApp/session/HighlightDefaults.h"

#include <QPointer>

namespace zelvra {

namespace {

constexpr double standardClipLength = 30;

QString formatted(const char* format, double value) {
    return QString::asprintf(format, value);
}

} // namespace

Settings::Settings(PreferenceStore& store, OpenPanel* openPanel, QObject* parent)
    : QObject(parent), store_(store), openPanel_(openPanel) {
    connect(&store, &PreferenceStore::changed, this, &Settings::changed);
}

QColor Settings::color() const {
    const Color color = HighlightDefaults::loadFromUserDefaults(store_).color;
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

void Settings::setColor(const QColor& color) {
    store_.write(preferences::defaultColorHex, color.name().toUpper());
}

double Settings::radiusRatio() const {
    return HighlightDefaults::loadFromUserDefaults(store_).radiusRatio;
}

double Settings::strokeRatio() const {
    return HighlightDefaults::loadFromUserDefaults(store_).strokeWidthRatio;
}

double Settings::durationSec() const {
    return HighlightDefaults::loadFromUserDefaults(store_).durationSec;
}

double Settings::clipLengthSec() const {
    return store_.read(preferences::clipDefaultLengthSec).value_or(standardClipLength);
}

Settings::OutputMode Settings::outputMode() const {
    switch (output().mode) {
    case OutputLocationMode::sameAsSource: return SameAsSource;
    case OutputLocationMode::subfolder: return Subfolder;
    case OutputLocationMode::custom: return Custom;
    }
    return Subfolder;
}

void Settings::setOutputMode(OutputMode mode) {
    store_.write(preferences::outputMode,
                 rawValue(allOutputLocationModes.at(static_cast<std::size_t>(mode))));
}

QString Settings::radiusText() const {
    return formatted("%.1f%%", radiusRatio() * 100);
}

QString Settings::strokeText() const {
    return formatted("%.2f%%", strokeRatio() * 100);
}

QString Settings::durationText() const {
    return formatted("%.1fs", durationSec());
}

QString Settings::clipLengthText() const {
    return formatted("%.0fs", clipLengthSec());
}

QString Settings::outputFooterText(const OutputLocation& location) {
    switch (location.mode) {
    case OutputLocationMode::sameAsSource:
        return QStringLiteral("Exports land next to each source clip, as {name}_highlighted.{ext}.");
    case OutputLocationMode::subfolder: {
        const QString name = location.subfolderName.trimmed();
        return QStringLiteral(
                   "Exports go into a “%1” folder inside each source's folder. Created on first export.")
            .arg(name.isEmpty() ? QStringLiteral("highlighted") : name);
    }
    case OutputLocationMode::custom:
        return location.customFolderPath.isEmpty()
                   ? QStringLiteral("Pick a folder. Until you do, exports fall back to the source folder.")
                   : QStringLiteral("All exports go to the chosen folder, regardless of source location.");
    }
    return {};
}

void Settings::chooseCustomFolder() {
    if (openPanel_ == nullptr) {
        return;
    }
    const OpenPanelRequest request{
        .choice = OpenPanelRequest::Choice::folder,
        .prompt = QStringLiteral("Choose"),
        .message = QStringLiteral("Pick a folder to export highlighted clips into."),
    };
    openPanel_->ask(request, [self = QPointer(this)](const std::filesystem::path& folder) {
        if (self) {
            self->store_.write(preferences::outputCustomFolderPath, textOf(folder));
        }
    });
}

void Settings::resetToFactoryDefaults() {
    const OutputLocation standard;
    HighlightDefaults::factory().saveTo(store_);
    store_.write(PreferenceStore::Changes{}
                     .set(preferences::outputMode, rawValue(standard.mode))
                     .set(preferences::outputSubfolderName, standard.subfolderName)
                     .set(preferences::outputCustomFolderPath, standard.customFolderPath)
                     .set(preferences::outputIncludeAudio, standard.includeAudio)
                     .set(preferences::clipDefaultLengthSec, standardClipLength));
}

} // namespace zelvra
