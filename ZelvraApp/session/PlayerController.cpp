// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/PlayerController.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace zelvra {

void PlayerController::beginTrim(std::function<void(bool confirmed)> completion) {
    const auto later = [completion = std::move(completion)](bool confirmed) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [completion, confirmed] { completion(confirmed); },
            Qt::QueuedConnection);
    };
    if (!playerView || !playerView->canBeginTrimming()) {
        later(false);
        return;
    }
    playerView->beginTrimming(
        [later](PlayerView::TrimResult result) { later(result == PlayerView::TrimResult::ok); });
}

} // namespace zelvra
