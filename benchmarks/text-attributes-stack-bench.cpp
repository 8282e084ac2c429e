// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Nested attributes: what an ordinary cue takes, and a million open tags beside it. Items are
// operations; their time must not depend on the depth.

#include <cstdint>

#include <benchmark/benchmark.h>

#include "subtitles/text-attributes-stack.h"

namespace subtitles {
namespace {

TextAttributes italic() {
    TextAttributes attributes;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.attributeMask = TextAttributes::FONT_STYLE;
    return attributes;
}

void unused(benchmark::State& state) {
    for (auto _ : state) {
        TextAttributesStack stack;
        benchmark::DoNotOptimize(&stack);
    }
}
BENCHMARK(unused)->Name("Unused");

void oneTag(benchmark::State& state) {
    const TextAttributes attributes = italic();
    for (auto _ : state) {
        TextAttributesStack stack;
        stack.pushAttributes(attributes);
        benchmark::DoNotOptimize(stack.cummulativeAttributes());
        stack.removeAttributes(TextAttributes::FONT_STYLE);
        benchmark::DoNotOptimize(stack.cummulativeAttributes());
    }
}
BENCHMARK(oneTag)->Name("OneTag");

void pushAndAsk(benchmark::State& state) {
    const TextAttributes attributes = italic();
    for (auto _ : state) {
        TextAttributesStack stack;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            stack.pushAttributes(attributes);
            benchmark::DoNotOptimize(stack.cummulativeAttributes());
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(pushAndAsk)->Name("PushAndAsk/deep")->Arg(100)->Arg(10000)->Arg(1000000);

void removeAnotherAndAsk(benchmark::State& state) {
    TextAttributesStack stack;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        stack.pushAttributes(italic());
    }
    for (auto _ : state) {
        stack.removeAttributes(TextAttributes::FONT_WEIGHT);
        benchmark::DoNotOptimize(stack.cummulativeAttributes());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(removeAnotherAndAsk)
    ->Name("RemoveAnotherAndAsk/deep")
    ->Arg(100)
    ->Arg(10000)
    ->Arg(1000000);

}  // namespace
}  // namespace subtitles
