// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFuture>

#include <qcoro/qcorofuture.h>
#include <qcoro/qcorotask.h>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

namespace zelvra {

/// The engine blocks while it works. The session runs it on worker threads and awaits the result.
///
/// One rule for everything that awaits here: what is awaited is a named local variable, never an expression
/// with closures or temporaries in it. g++ 12 destroys such temporaries twice.

/// Runs `work` on a worker thread. It must not throw.
QFuture<void> onWorkerThread(std::function<void()> work);

/// Runs `work`, which blocks and returns a value, on a worker thread. Resumes on the thread that awaits, with
/// the value or with the exception that `work` threw.
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
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    co_return std::move(*outcome->value);
}

/// Waits until all worker threads are done. Called before the program ends, after the session is destroyed.
void finishWorkers();

/// Lets a task run without a caller that awaits it. An exception that leaves the task is a bug; it is logged,
/// as there is no caller to catch it.
void letRun(QCoro::Task<> task);

} // namespace zelvra
