// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraApp/session/Background.h"

#include <QThreadPool>
#include <QtConcurrentRun>

namespace zelvra {

namespace {

/// More than there are processors: most of this work waits for a disk or a network, and a folder that does
/// not respond must not keep the next clip from opening.
constexpr int workerThreads = 8;

/// Never destroyed: its destructor would wait for threads that hang.
QThreadPool& workers() {
    static QThreadPool& pool = *[] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(workerThreads);
        return made;
    }();
    return pool;
}

QCoro::Task<> runToTheEnd(QCoro::Task<> task) {
    try {
        co_await task;
    } catch (const std::exception& error) {
        qCritical("A task of the session failed: %s", error.what());
    }
}

} // namespace

QFuture<void> onWorkerThread(std::function<void()> work) {
    return QtConcurrent::run(&workers(), std::move(work));
}

QCoro::Task<> endingWithItsOwner(QCoro::Task<> task) {
    try {
        co_await task;
    } catch (const OwnerGone&) { // that is all there is to do
    }
}

bool finishWorkers(std::chrono::milliseconds limit) {
    return workers().waitForDone(static_cast<int>(limit.count()));
}

void letRun(QCoro::Task<> task) {
    runToTheEnd(std::move(task));
}

} // namespace zelvra
