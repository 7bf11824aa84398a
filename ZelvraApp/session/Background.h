// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QFuture>
#include <QMetaObject>
#include <QPointer>

#include <qcoro/qcorofuture.h>
#include <qcoro/qcorotask.h>

#include <chrono>
#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace zelvra {

/// The engine blocks while it works. The session runs it on worker threads and awaits the result. Everything
/// here is for the main thread.
///
/// One rule for everything that awaits here: what is awaited is a named local variable, never an expression
/// with closures or temporaries in it. g++ 12 destroys such temporaries twice.

/// Runs `work` on a worker thread. It must not throw.
QFuture<void> onWorkerThread(std::function<void()> work);

/// Resumes from the event loop, never at once. Results that are there early then still arrive in the order in
/// which the loop takes them, and never within the call that asked for them.
struct EventLoopTurn {
    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> task) const {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [task] { task.resume(); }, Qt::QueuedConnection);
    }
    void await_resume() const noexcept {}
};

/// Runs `work`, which blocks and returns a value, on a worker thread. Resumes from the event loop, with the
/// value or with the exception that `work` threw.
template <class Work>
QCoro::Task<std::invoke_result_t<Work>> inBackground(Work work) {
    struct Outcome {
        std::optional<std::invoke_result_t<Work>> value;
        std::exception_ptr error;
    };
    const auto outcome = std::make_shared<Outcome>();
    std::function<void()> run = [outcome, work = std::move(work)] {
        try {
            outcome->value = work();
        } catch (...) {
            outcome->error = std::current_exception();
        }
    };
    QFuture<void> finished = onWorkerThread(std::move(run));
    co_await finished;
    const EventLoopTurn turn;
    co_await turn;
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    co_return std::move(*outcome->value);
}

/// Thrown where a task would resume in an object that was destroyed meanwhile. No std::exception, so that
/// nothing on the way reports it as a failure.
struct OwnerGone {};

/// Awaits `task` on behalf of `owner`. Throws OwnerGone, whatever the task's outcome, if the owner no longer
/// exists by then.
template <class Result>
QCoro::Task<Result> onBehalfOf(const QObject* owner, QCoro::Task<Result> task) {
    const QPointer<const QObject> alive(owner);
    std::optional<Result> result;
    std::exception_ptr error;
    try {
        Result value = co_await task;
        result = std::move(value);
    } catch (...) {
        error = std::current_exception();
    }
    if (!alive) {
        throw OwnerGone();
    }
    if (error) {
        std::rethrow_exception(error);
    }
    co_return std::move(*result);
}

/// As inBackground, on behalf of `owner`.
template <class Work>
QCoro::Task<std::invoke_result_t<Work>> inBackgroundFor(const QObject* owner, Work work) {
    return onBehalfOf(owner, inBackground(std::move(work)));
}

/// As a task that resumes from the event loop. The future must not fail.
template <class Result>
QCoro::Task<Result> taskOf(QFuture<Result> future) {
    Result result = co_await future;
    const EventLoopTurn turn;
    co_await turn;
    co_return result;
}

/// Ends the task without a word if the object that it works for is destroyed.
QCoro::Task<> endingWithItsOwner(QCoro::Task<> task);

/// Waits until all worker threads are done, but not longer than `limit`: a thread may hang in a call to a
/// file system that does not respond. Returns whether all are done. Called before the program ends, after the
/// session is destroyed.
bool finishWorkers(std::chrono::milliseconds limit);

/// Lets a task run without a caller that awaits it. An exception that leaves the task is a bug; it is logged,
/// as there is no caller to catch it.
void letRun(QCoro::Task<> task);

} // namespace zelvra
