// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <mutex>
#include <ostream>
#include <string>

namespace zelvra::cli {

/// Shows the progress of an export: a bar that redraws itself on a terminal, a line for every tenth in a log,
/// nothing if quiet. `update` and `notice` may be called from any thread.
class ProgressReport {
public:
    enum class Style { bar, lines, quiet };

    ProgressReport(std::ostream& stream, Style style) : stream_(stream), style_(style) {}
    ProgressReport(const ProgressReport&) = delete;
    ProgressReport& operator=(const ProgressReport&) = delete;
    ~ProgressReport();

    void update(double fraction);
    /// Prints a line of its own, in every style.
    void notice(const std::string& line);

private:
    using Clock = std::chrono::steady_clock;

    void wipeBar();

    std::ostream& stream_;
    Style style_;
    std::mutex mutex_;
    Clock::time_point start_ = Clock::now();
    int shownPercent_ = -1;
    bool barOnScreen_ = false;
};

/// The style that suits standard error: a bar on a terminal, lines otherwise.
ProgressReport::Style progressStyle(bool quiet);

/// "[=====>    ]  52 %  0:12 left": the text of the bar after `elapsed` seconds. The time left is omitted
/// until it can be estimated.
std::string progressBar(double fraction, double elapsed);

} // namespace zelvra::cli
