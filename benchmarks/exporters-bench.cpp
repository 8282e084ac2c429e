// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the runs of cues to ASS and WebVTT. Bytes are those of the runs' text.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "foundation/string.h"

#include "subtitles/ass-exporter.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/webvtt-exporter.h"

#include "benchmarks/srt-texts.h"

namespace {

using srt_texts::limit;
using srt_texts::repeated;
using subtitles::AttributedText;

std::size_t sizeOf(const AttributedText& text) {
    std::size_t size = 0;
    for (const AttributedText::Run& run : text) {
        size += run.text.size();
    }
    return size;
}

template <class Exporter>
void exportAll(benchmark::State& state, const std::vector<AttributedText>& texts) {
    std::size_t size = 0;
    for (const AttributedText& text : texts) {
        size += sizeOf(text);
    }
    const Exporter exporter;
    for (auto _ : state) {
        for (const AttributedText& text : texts) {
            benchmark::DoNotOptimize(exporter.attributedTextToString(text));
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

template <class Exporter>
void cues(benchmark::State& state, const srt_texts::Cues& markup) {
    std::vector<AttributedText> texts;
    for (const char* cue : markup) {
        texts.push_back(subtitles::parseSRTFormatting(cue));
    }
    exportAll<Exporter>(state, texts);
}

void ass(benchmark::State& state, const srt_texts::Cues& markup) {
    cues<subtitles::ASSExporter>(state, markup);
}
BENCHMARK_CAPTURE(ass, plain, srt_texts::plain);
BENCHMARK_CAPTURE(ass, tagged, srt_texts::tagged);
BENCHMARK_CAPTURE(ass, cyrillic, srt_texts::cyrillic);
BENCHMARK_CAPTURE(ass, korean, srt_texts::korean);

void webvtt(benchmark::State& state, const srt_texts::Cues& markup) {
    cues<subtitles::WebVTTExporter>(state, markup);
}
BENCHMARK_CAPTURE(webvtt, plain, srt_texts::plain);
BENCHMARK_CAPTURE(webvtt, tagged, srt_texts::tagged);
BENCHMARK_CAPTURE(webvtt, cyrillic, srt_texts::cyrillic);
BENCHMARK_CAPTURE(webvtt, korean, srt_texts::korean);

/// One text of the largest size, in one run or in many.
void assText(benchmark::State& state, const std::string& piece) {
    exportAll<subtitles::ASSExporter>(state,
                                      {subtitles::parseSRTFormatting(repeated(piece, limit))});
}
BENCHMARK_CAPTURE(assText, plain, "The train was late again.\n")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(assText, line_feeds, "\n")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(assText, a_run_for_each_letter, "<i>x</i>y")->Unit(benchmark::kMillisecond);

void webvttText(benchmark::State& state, const std::string& piece) {
    exportAll<subtitles::WebVTTExporter>(state,
                                         {subtitles::parseSRTFormatting(repeated(piece, limit))});
}
BENCHMARK_CAPTURE(webvttText, plain, "The train was late again.\n")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(webvttText, line_feeds, "\n")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(webvttText, ampersands, "&")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(webvttText, starts_of_marks, "\xE2\x80")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(webvttText, a_run_for_each_letter, "<i>x</i>y")->Unit(benchmark::kMillisecond);

}  // namespace
