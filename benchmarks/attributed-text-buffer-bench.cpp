// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A stream has a buffer for each cue. `EmptyGstBuffer` is what GStreamer takes for an allocated
// buffer alone; the difference is ours.

#include <cstddef>
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>
#include <gst/gst.h>

#include "subtitles/attributed-text-buffer.h"

namespace subtitles {
namespace {

AttributedText cue(std::int64_t runs) {
    AttributedText text;
    for (std::int64_t i = 0; i < runs; ++i) {
        AttributedText::Run run;
        run.text = "I was told that you would come, ";
        run.attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
        run.attributes.attributeMask = i % 2 == 0 ? 0 : std::uint32_t{TextAttributes::FONT_STYLE};
        text.push_back(std::move(run));
    }
    return text;
}

void countBytes(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void emptyGstBuffer(benchmark::State& state) {
    const std::size_t size = gst_buffer_get_size(attributedTextToBuffer(cue(1)).get());
    for (auto _ : state) {
        const fn::AutoPtr<_GstBuffer> buffer(gst_buffer_new_allocate(nullptr, size, nullptr));
        benchmark::DoNotOptimize(buffer.get());
    }
}
BENCHMARK(emptyGstBuffer)->Name("EmptyGstBuffer");

void write(benchmark::State& state) {
    const AttributedText text = cue(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(attributedTextToBuffer(text));
    }
    countBytes(state, gst_buffer_get_size(attributedTextToBuffer(text).get()));
}
BENCHMARK(write)->Name("Write/runs")->Arg(1)->Arg(3)->Arg(1000)->Arg(100000);

void read(benchmark::State& state) {
    const fn::AutoPtr<_GstBuffer> buffer = attributedTextToBuffer(cue(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(attributedTextFromBuffer(buffer.get()));
    }
    countBytes(state, gst_buffer_get_size(buffer.get()));
}
BENCHMARK(read)->Name("Read/runs")->Arg(1)->Arg(3)->Arg(1000)->Arg(100000);

// One run, and a count that claims two thousand million: as fast as one run.
void readHugeCount(benchmark::State& state) {
    const fn::AutoPtr<_GstBuffer> buffer = attributedTextToBuffer(cue(1));
    const std::uint8_t count[] = {0xFF, 0xFF, 0xFF, 0x7F};
    gst_buffer_fill(buffer.get(), 0, count, sizeof count);
    for (auto _ : state) {
        benchmark::DoNotOptimize(attributedTextFromBuffer(buffer.get()));
    }
}
BENCHMARK(readHugeCount)->Name("Read/hugeCount");

// All runs but the last are whole: as fast as reading as many.
void readTruncated(benchmark::State& state) {
    const fn::AutoPtr<_GstBuffer> buffer = attributedTextToBuffer(cue(state.range(0)));
    const gsize size = gst_buffer_get_size(buffer.get()) - 1;
    gst_buffer_resize(buffer.get(), 0, static_cast<gssize>(size));
    for (auto _ : state) {
        benchmark::DoNotOptimize(attributedTextFromBuffer(buffer.get()));
    }
    countBytes(state, size);
}
BENCHMARK(readTruncated)->Name("Read/truncated")->Arg(1)->Arg(100000);

}  // namespace
}  // namespace subtitles
