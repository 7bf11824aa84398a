// SPDX-License-Identifier: GPL-3.0-or-later

#include "ZelvraCore/bitstream/h264/Levels.h"

#include <array>

namespace zelvra::h264 {

namespace {

struct Row {
    int levelIdc;
    LevelLimits limits;
};

constexpr int level1b = 9;
constexpr LevelLimits highest{696320, 800000};
constexpr std::array rows{
    Row{10, {396, 175}},       Row{level1b, {396, 350}},  Row{11, {900, 500}},
    Row{12, {2376, 1000}},     Row{13, {2376, 2000}},     Row{20, {2376, 2000}},
    Row{21, {4752, 4000}},     Row{22, {8100, 4000}},     Row{30, {8100, 10000}},
    Row{31, {18000, 14000}},   Row{32, {20480, 20000}},   Row{40, {32768, 25000}},
    Row{41, {32768, 62500}},   Row{42, {34816, 62500}},   Row{50, {110400, 135000}},
    Row{51, {184320, 240000}}, Row{52, {184320, 240000}}, Row{60, {696320, 240000}},
    Row{61, {696320, 480000}}, Row{62, highest},
};

} // namespace

LevelLimits levelLimits(const Sps& sps) {
    const int level = sps.isLevel1b() ? level1b : sps.levelIdc;
    for (const Row& row : rows) {
        if (row.levelIdc == level) {
            return row.limits;
        }
    }
    return highest;
}

} // namespace zelvra::h264
