// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/ProgressReport.h"

#include "ZelvraApp/annotations/TimeText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace zelvra::cli {
namespace {

int percentOf(double fraction) {
    return static_cast<int>(std::floor(std::clamp(fraction, 0.0, 1.0) * 100 + 1e-9));
}

} // namespace

std::string progressBar(double fraction, double elapsed) {
    constexpr int width = 30;
    const int percent = percentOf(fraction);
    const int filled = percent * width / 100;
    std::string bar = "[" + std::string(static_cast<std::size_t>(filled), '=');
    if (filled < width) {
        bar += '>' + std::string(static_cast<std::size_t>(width - filled - 1), ' ');
    }
    char number[16];
    std::snprintf(number, sizeof number, "] %3d %%", percent);
    bar += number;
    if (elapsed >= 1 && fraction >= 0.02 && percent < 100) {
        bar += "  " + clockText(elapsed * (1 - fraction) / fraction) + " left";
    }
    return bar;
}

void ProgressReport::update(double fraction) {
    const std::lock_guard lock(mutex_);
    const int percent = percentOf(fraction);
    const int step = style_ == Style::lines ? 10 : 1;
    if (style_ == Style::quiet || percent / step <= shownPercent_ / step) {
        return;
    }
    shownPercent_ = percent;
    if (style_ == Style::lines) {
        stream_ << percent / 10 * 10 << " %" << std::endl;
    } else {
        const std::chrono::duration<double> elapsed = Clock::now() - start_;
        wipeBar();
        stream_ << progressBar(fraction, elapsed.count()) << std::flush;
        barOnScreen_ = true;
    }
}

void ProgressReport::notice(const std::string& line) {
    const std::lock_guard lock(mutex_);
    wipeBar();
    stream_ << line << std::endl;
}

ProgressReport::~ProgressReport() {
    wipeBar();
    stream_ << std::flush;
}

void ProgressReport::wipeBar() {
    if (barOnScreen_) {
        stream_ << "\r\033[K"; // clears the line
        barOnScreen_ = false;
    }
}

ProgressReport::Style progressStyle(bool quiet) {
    return quiet                          ? ProgressReport::Style::quiet
           : ::isatty(STDERR_FILENO) == 1 ? ProgressReport::Style::bar
                                          : ProgressReport::Style::lines;
}

} // namespace zelvra::cli
