// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/windows/Settings.h"

#include "ZelvraApp/files/FilePaths.h"
#include "ZelvraApp/session/Colors.h"
#include "ZelvraApp/session/RoughClip.h"
#include "ZelvraApp/session/SavedDefaults.h"
#include "ZelvraApp/session/StyleTexts.h"

#include <QPointer>

namespace zelvra {

Settings::Settings(PreferenceStore& store, OpenPanel* openPanel, QObject* parent)
    : QObject(parent), store_(store), openPanel_(openPanel) {
    connect(&store, &PreferenceStore::changed, this, &Settings::changed);
}

QColor Settings::color() const {
    return toQColor(loadFromUserDefaults(store_).color);
}

void Settings::setColor(const QColor& color) {
    store_.write(preferences::defaultColorHex, hexString(fromQColor(color)));
}

double Settings::radiusRatio() const {
    return loadFromUserDefaults(store_).radiusRatio;
}

double Settings::strokeRatio() const {
    return loadFromUserDefaults(store_).strokeWidthRatio;
}

double Settings::durationSec() const {
    return loadFromUserDefaults(store_).durationSec;
}

double Settings::clipLengthSec() const {
    return roughClipLengthSec(store_);
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
    return zelvra::radiusText(radiusRatio());
}

QString Settings::strokeText() const {
    return zelvra::strokeText(strokeRatio());
}

QString Settings::durationText() const {
    return zelvra::durationText(durationSec());
}

QString Settings::clipLengthText() const {
    return QString::asprintf("%.0fs", clipLengthSec());
}

QString Settings::outputFooterText(const OutputLocation& location) {
    switch (location.mode) {
    case OutputLocationMode::sameAsSource:
        return tr("Exports land next to each source clip, as {name}_highlighted.{ext}.");
    case OutputLocationMode::subfolder: {
        const QString name = location.subfolderName.trimmed();
        return tr("Exports go into a “%1” folder inside each source's folder. Created on first export.")
            .arg(name.isEmpty() ? QStringLiteral("highlighted") : name);
    }
    case OutputLocationMode::custom:
        return location.customFolderPath.isEmpty()
                   ? tr("Pick a folder. Until you do, exports fall back to the source folder.")
                   : tr("All exports go to the chosen folder, regardless of source location.");
    }
    return {};
}

void Settings::chooseCustomFolder() {
    if (openPanel_ == nullptr) {
        return;
    }
    const OpenPanelRequest request{
        .choice = OpenPanelRequest::Choice::folder,
        .prompt = tr("Choose"),
        .message = tr("Pick a folder to export highlighted clips into."),
    };
    openPanel_->ask(request, [self = QPointer(this)](const std::filesystem::path& folder) {
        if (self) {
            self->store_.write(preferences::outputCustomFolderPath, textOf(folder));
        }
    });
}

void Settings::resetToFactoryDefaults() {
    const OutputLocation standard;
    save(HighlightDefaults::factory(), store_);
    store_.write(PreferenceStore::Changes{}
                     .set(preferences::outputMode, rawValue(standard.mode))
                     .set(preferences::outputSubfolderName, standard.subfolderName)
                     .set(preferences::outputCustomFolderPath, standard.customFolderPath)
                     .set(preferences::outputIncludeAudio, standard.includeAudio)
                     .set(preferences::clipDefaultLengthSec, standardClipLengthSec));
}

} // namespace zelvra
