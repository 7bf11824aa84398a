// SPDX-License-Identifier: GPL-3.0-or-later

// Plans and lays out four hours of 30 frames a second with many highlights.

#include "ZelvraCore/RenderPlan.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <numeric>
#include <vector>

namespace zelvra {
namespace {

void planAndLayOut(benchmark::State& state) {
    SourceInfo info;
    info.duration = CMTime(4 * 3600, 1);
    info.frameDuration = CMTime(1, 30);
    info.videoCodec = fourCharCode("avc1");
    std::vector<std::int64_t> starts(4 * 3600 * 30);
    std::iota(starts.begin(), starts.end(), std::int64_t{0});
    const FrameIndex frames(std::move(starts), 4 * 3600 * 30, 30);
    std::vector<Highlight> highlights;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        highlights.push_back({Uuid::random(), CMTime(i * 7919 % (4 * 3600 * 600), 600), CMTime(3, 1), {}});
    }
    for (auto _ : state) {
        const RenderPlan plan = planRender(highlights, {}, true, info);
        benchmark::DoNotOptimize(layoutTimeline(plan, info, frames));
    }
}
BENCHMARK(planAndLayOut)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace zelvra

BENCHMARK_MAIN();
