// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/shell/DesktopIntegration.h"

#include "ZelvraApp/controls/Appearance.h"
#include "ZelvraApp/shell/Application.h"

namespace zelvra {

DesktopIntegration::DesktopIntegration(const QDBusConnection& session, const QDBusConnection& system)
    : settings_(session), idle_(session), sleep_(system) {
    Appearance& appearance = Appearance::shared();
    connect(&settings_, &DesktopSettings::darkChanged, &appearance, &Appearance::followDesktop);
    connect(&settings_, &DesktopSettings::reducedMotionChanged, &appearance, &Appearance::setReducedMotion);
}

void DesktopIntegration::connectTo(Application& application, SingleInstance& instance) {
    AppState& state = application.state();
    connect(&state.player(), &Player::rateChanged, this, [this](double rate) { idle_.hold(rate != 0); });
    connect(&state, &AppState::isExportingChanged, this,
            [this, &state] { sleep_.hold(state.isExporting()); });
    connect(&instance, &SingleInstance::activated, &state,
            [&application](const QString& token) { application.present(token); });
    connect(&instance, &SingleInstance::openRequested, &state, &AppState::handleOpenedURLs);
}

} // namespace zelvra
