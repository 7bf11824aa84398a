// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>

namespace zelvra::media {

/// Hands values from one thread to another in order, a few at a time: whoever is ahead waits. Closing it from
/// either side ends both.
template <class Value>
class BoundedQueue {
public:
    explicit BoundedQueue(std::size_t capacity) : capacity_(capacity) {}

    /// Waits for room. False when the queue was closed, and the value is gone.
    bool push(Value value) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return closed_ || values_.size() < capacity_; });
        if (closed_) {
            return false;
        }
        values_.push_back(std::move(value));
        changed_.notify_all();
        return true;
    }

    /// Waits for a value. `nullopt` if the queue was closed and is empty.
    std::optional<Value> pop() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return closed_ || !values_.empty(); });
        if (values_.empty()) {
            return std::nullopt;
        }
        std::optional<Value> value(std::move(values_.front()));
        values_.pop_front();
        changed_.notify_all();
        return value;
    }

    void close() {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        changed_.notify_all();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Value> values_;
    std::size_t capacity_;
    bool closed_ = false;
};

} // namespace zelvra::media
