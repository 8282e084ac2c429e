// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SRT's inline mark-up, from the text of a cue to its runs. Each bad text has the size of the
// ordinary ones, so that their times can be compared.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "foundation/string.h"

#include "subtitles/subtitle-parser.h"

#include "benchmarks/srt-texts.h"

namespace {

using srt_texts::limit;

/// Many cues of ordinary size.
void cues(benchmark::State& state, const srt_texts::Cues& texts) {
    const std::vector<fn::String> cueTexts(texts.begin(), texts.end());
    std::size_t size = 0;
    for (const fn::String& text : cueTexts) {
        size += text.size();
    }
    for (auto _ : state) {
        for (const fn::String& text : cueTexts) {
            benchmark::DoNotOptimize(subtitles::parseSRTFormatting(text));
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK_CAPTURE(cues, plain, srt_texts::plain);
BENCHMARK_CAPTURE(cues, tagged, srt_texts::tagged);
BENCHMARK_CAPTURE(cues, cyrillic, srt_texts::cyrillic);
BENCHMARK_CAPTURE(cues, korean, srt_texts::korean);

/// One text of the largest size.
void text(benchmark::State& state, const std::string& head, const std::string& piece) {
    const fn::String input = head + srt_texts::repeated(piece, limit - head.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(subtitles::parseSRTFormatting(input));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(input.size()));
}
BENCHMARK_CAPTURE(text, plain, "", "The train was late again.\n")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, tagged, "", "The <i>train</i> was <b>late</b> again.\n")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, tags_that_close, "", "<i>x</i>")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, tags_that_stay_open, "", "<i>x")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, a_million_open_tags_then_ends_of_another,
                  srt_texts::repeated("<i>", 3000000), "</b>x")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, a_million_open_tags_then_their_ends, srt_texts::repeated("<b>", 3000000),
                  "</b>x<b>y")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, colors_that_stay_open, "", "<font color=\"red\">x")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, a_color_with_tags_in_its_value, "<font color=\"", "a><i>b</i>")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, position_codes, "", "{an8}")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, unknown_tags, "", "<br>")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, open_braces, "", "{")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(text, open_brackets, "", "<")->Unit(benchmark::kMillisecond);

}  // namespace
