// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Style sheets of 8 MiB, read as the SMI reader reads them: those of every day, and those that a
// careless reader would read again and again. Sheets of such a size do not occur; what counts is
// that none takes much longer than the others.

#include <cstddef>
#include <cstdint>

#include <benchmark/benchmark.h>

#include "foundation/string.h"

#include "subtitles/style-sheet-parser.h"
#include "subtitles/style-sheet.h"

#include "tests/support/style-sheets.h"

namespace subtitles {
namespace {

constexpr std::size_t largest = 8388608;

void parse(benchmark::State& state, const test::StyleSheetKind& kind) {
    const fn::String text = kind.text(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        StyleSheet sheet;
        parseStyleSheetGuarded(sheet, text);
        benchmark::DoNotOptimize(sheet);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void print(benchmark::State& state) {
    StyleSheet sheet;
    sheet.parse(test::styleSheetKinds[0].text(65536));
    std::size_t size = 0;
    for (auto _ : state) {
        size = sheet.toString().size();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK(print)->Name("Print");

const bool registered = [] {
    for (const test::StyleSheetKind& kind : test::styleSheetKinds) {
        benchmark::RegisterBenchmark((fn::String("Parse/") + kind.name).c_str(),
                                     [&kind](benchmark::State& state) { parse(state, kind); })
            ->Arg(1000)
            ->Arg(largest)
            ->Unit(benchmark::kMillisecond);
    }
    return true;
}();

}  // namespace
}  // namespace subtitles
