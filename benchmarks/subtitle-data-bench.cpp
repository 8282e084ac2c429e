// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The clean-up pass over a finished stream. Items are buffers.

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include "subtitles/subtitle-data.h"

namespace subtitles {
namespace {

using Times = std::vector<GstClockTime>;

Times inOrder(std::int64_t count) {
    Times times;
    for (std::int64_t i = 0; i < count; ++i) {
        times.push_back(static_cast<GstClockTime>(i) * 2 * GST_SECOND);
    }
    return times;
}

Times reversed(std::int64_t count) {
    Times times = inOrder(count);
    std::reverse(times.begin(), times.end());
    return times;
}

Times shuffled(std::int64_t count) {
    Times times = inOrder(count);
    std::shuffle(times.begin(), times.end(), std::mt19937(1));
    return times;
}

Times partlyUntimed(std::int64_t count) {
    Times times = shuffled(count);
    for (std::size_t i = 0; i < times.size(); i += 3) {
        times[i] = GST_CLOCK_TIME_NONE;
    }
    return times;
}

void sanitize(benchmark::State& state, Times (*timesOf)(std::int64_t)) {
    const Times times = timesOf(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        SubtitleData data("text/plain", {}, SubtitleData::NANOSECONDS);
        for (const GstClockTime time : times) {
            fn::AutoPtr<_GstBuffer> buffer(gst_buffer_new_allocate(nullptr, 100, nullptr));
            buffer->pts = time;
            buffer->duration = GST_SECOND / 2;
            data.buffers.push_back(std::move(buffer));
        }
        state.ResumeTiming();
        data.sanitize();
        state.PauseTiming();
        data.buffers.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(sanitize, InOrder, inOrder)->Arg(1500)->Arg(100000);
BENCHMARK_CAPTURE(sanitize, Reversed, reversed)->Arg(1500)->Arg(100000);
BENCHMARK_CAPTURE(sanitize, Shuffled, shuffled)->Arg(1500)->Arg(100000);
BENCHMARK_CAPTURE(sanitize, PartlyUntimed, partlyUntimed)->Arg(1500)->Arg(100000);

}  // namespace
}  // namespace subtitles
