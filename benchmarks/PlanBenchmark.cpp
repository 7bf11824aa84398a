// SPDX-License-Identifier: GPL-3.0-or-later

// Planning and laying out a movie of many highlights.

#include "ZelvraCore/RenderPlan.h"

#include <benchmark/benchmark.h>

namespace zelvra {
namespace {

void planAndLayOut(benchmark::State& state) {
    SourceInfo info;
    info.duration = CMTime(4 * 3600, 1);
    info.videoCodec = fourCharCode("avc1");
    std::vector<Highlight> highlights;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        highlights.push_back({Uuid::random(), CMTime(i * 7919 % (4 * 3600 * 600), 600), CMTime(3, 1), {}});
    }
    for (auto _ : state) {
        const RenderPlan plan = planRender(highlights, {}, true, info);
        const std::vector<CMTime> durations(plan.highlights.size(), CMTime(90090, 30000));
        benchmark::DoNotOptimize(layoutTimeline(plan, durations));
    }
}
BENCHMARK(planAndLayOut)->Arg(100)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace zelvra

BENCHMARK_MAIN();
