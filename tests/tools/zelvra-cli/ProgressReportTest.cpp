// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/zelvra-cli/ProgressReport.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zelvra::cli {
namespace {

TEST(ProgressBar, ShowsShareAndTimeLeft) {
    EXPECT_EQ(progressBar(0, 0), "[>                             ]   0 %");
    EXPECT_EQ(progressBar(0.5, 30), "[===============>              ]  50 %  0:30 left");
    EXPECT_EQ(progressBar(0.25, 0.4), "[=======>                      ]  25 %") << "too early to tell";
    EXPECT_EQ(progressBar(1, 30), "[==============================] 100 %");
}

std::string reported(ProgressReport::Style style) {
    std::ostringstream stream;
    {
        ProgressReport report(stream, style);
        for (const double fraction : {0.0, 0.05, 0.1, 0.101, 0.39, 1.0, 1.0}) {
            report.update(fraction);
        }
        report.notice("note");
    }
    return stream.str();
}

TEST(ProgressReport, WritesALineForEachTenthInALog) {
    EXPECT_EQ(reported(ProgressReport::Style::lines), "10 %\n30 %\n100 %\nnote\n");
}

TEST(ProgressReport, PrintsOnlyNoticesWhenQuiet) {
    EXPECT_EQ(reported(ProgressReport::Style::quiet), "note\n");
}

TEST(ProgressReport, ClearsItsBarOnATerminal) {
    const std::string text = reported(ProgressReport::Style::bar);
    EXPECT_NE(text.find("] 100 %"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\r\033[Knote\n"));
}

} // namespace
} // namespace zelvra::cli
