// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the text of an SRT file to its buffers. Each bad text has the size of the ordinary one, so
// that the two times can be compared.

#include <cstddef>
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include "foundation/auto-ptr.h"
#include "foundation/string.h"

#include "subtitles/srt-reader.h"
#include "subtitles/srt-time-line.h"
#include "subtitles/subtitle-data.h"

#include "benchmarks/srt-texts.h"

namespace {

using srt_texts::limit;

void read(benchmark::State& state, const fn::String& text) {
    fn::AutoPtr<subtitles::SubtitleData> data;
    for (auto _ : state) {
        data = subtitles::parseSRT(text);
        // A player gives a stream back long after it has loaded it.
        state.PauseTiming();
        const std::size_t cues = data->buffers.size();
        data.reset();
        state.counters["cues"] = static_cast<double>(cues);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void file(benchmark::State& state, const srt_texts::Cues& cues, std::size_t size) {
    read(state, srt_texts::file(cues, size));
}
BENCHMARK_CAPTURE(file, plain_100_KB, srt_texts::plain, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(file, plain, srt_texts::plain, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, tagged, srt_texts::tagged, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, cyrillic, srt_texts::cyrillic, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, korean, srt_texts::korean, limit)->Unit(benchmark::kMillisecond);

void bad(benchmark::State& state, const std::string& head, const std::string& piece,
         const std::string& tail) {
    read(state, head + srt_texts::repeated(piece, limit - head.size() - tail.size()) + tail);
}
const std::string times = "0:0:1,0 --> 0:0:2,0\n";
BENCHMARK_CAPTURE(bad, one_line_of_digits, "", "1", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, one_line_of_digits_and_an_arrow, "", "1", "-->")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, one_line_of_times_and_arrows, "", "1:1:1 --> ", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, empty_lines, "", "\n", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, lines_that_are_arrows, "", "-->\n", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, malformed_lines, "", "\xFF\xFE\n", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, malformed_lines_in_a_cue, times, "\xFF\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, short_lines_in_a_cue, times, "x\n", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, cues_without_text, "", "0:0:1,0-->0:0:2,0\n\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, open_tags_and_letters, times, "<i>x", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, open_braces, times, "{", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, open_brackets, times, "<", "")->Unit(benchmark::kMillisecond);

void timeLine(benchmark::State& state, const std::string& line) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(subtitles::srt::parseTimeLine(line));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(line.size()));
}
BENCHMARK_CAPTURE(timeLine, time_line, "00:01:02,345 --> 00:01:04,567");
BENCHMARK_CAPTURE(timeLine, text, "The train was late again.");

}  // namespace
