// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/PlayerController.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace zelvra {

void PlayerController::beginTrim(std::function<void(std::optional<CMTimeRange>)> completion) {
    const auto later = [completion = std::move(completion)](const std::optional<CMTimeRange>& range) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [completion, range] { completion(range); }, Qt::QueuedConnection);
    };
    if (!playerView || !playerView->canBeginTrimming()) {
        later(std::nullopt);
        return;
    }
    playerView->beginTrimming(later);
}

} // namespace zelvra
