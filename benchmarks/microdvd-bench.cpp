// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the text of a MicroDVD file to its buffers. Each bad text has the size of the ordinary one,
// so that the two times can be compared.

#include <cstddef>
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "foundation/string.h"

#include "subtitles/microdvd-loader.h"
#include "subtitles/microdvd-parser.h"

#include "benchmarks/srt-texts.h"
#include "tests/support/temporary-folder.h"

namespace {

using srt_texts::limit;
using srt_texts::repeated;

/// The text of a cue with "|" for its line ends, and a code for its first tag.
fn::String entryText(const char* cue) {
    fn::String text = cue;
    text.replaceAll("\n", "|");
    if (text.find("<i>", 0) == 0) {
        text.replace(0, 3, "{y:i}");
    }
    return text;
}

/// Whole entries up to `size` bytes.
fn::String text(const srt_texts::Cues& cues, std::size_t size) {
    std::string result;
    for (std::size_t i = 0;; ++i) {
        const std::string entry = fmt::format("{{{}}}{{{}}}{}\n", i * 60, i * 60 + 48,
                                              std::string(entryText(cues[i % cues.size()])));
        if (result.size() + entry.size() > size) {
            return result;
        }
        result += entry;
    }
}

void load(benchmark::State& state, const fn::String& input) {
    std::size_t entries = 0;
    for (auto _ : state) {
        auto data = subtitles::parseMicroDVD(input, -1);
        data->sanitize();
        entries = data->buffers.size();
        // Players drop a stream long after they have loaded it.
        state.PauseTiming();
        data.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(input.size()));
    state.counters["entries"] = static_cast<double>(entries);
}

void file(benchmark::State& state, const srt_texts::Cues& cues, std::size_t size) {
    load(state, text(cues, size));
}
BENCHMARK_CAPTURE(file, plain_100_KB, srt_texts::plain, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(file, plain, srt_texts::plain, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, tagged, srt_texts::tagged, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, cyrillic, srt_texts::cyrillic, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, korean, srt_texts::korean, limit)->Unit(benchmark::kMillisecond);

/// From the path of a file to the stream that a player plays.
void loadSubtitle(benchmark::State& state, const srt_texts::Cues& cues, const char* encoding) {
    const test::TemporaryFolder folder;
    const fn::String bytes = text(cues, limit);
    subtitles::SubtitleReference reference;
    reference.type = subtitles::SubtitleReference::FILE;
    reference.mimeType = "application/x-micro-dvd-sub";
    reference.path = folder.writeFile("film.sub", bytes);
    subtitles::MicroDVDSubtitleLoader loader;
    for (auto _ : state) {
        auto data = loader.loadSubtitle(reference, encoding);
        state.PauseTiming();
        data.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
BENCHMARK_CAPTURE(loadSubtitle, plain_given_as_UTF8, srt_texts::plain, "UTF-8")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadSubtitle, tagged_given_as_UTF8, srt_texts::tagged, "UTF-8")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadSubtitle, plain_detected, srt_texts::plain, "")
    ->Unit(benchmark::kMillisecond);

void bad(benchmark::State& state, const std::string& start, const std::string& piece,
         const std::string& end) {
    load(state, start + repeated(piece, limit - start.size() - end.size()) + end);
}
BENCHMARK_CAPTURE(bad, one_bracket_over_and_over, "", "{1}", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, one_bracket_and_a_letter, "", "{1}x", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, blanks_between_the_brackets, "{1}", " ", "{2}a")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, blanks_and_no_second_bracket, "{1}", " ", "a")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, digits_in_a_bracket, "{", "1", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, open_braces, "", "{", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, open_braces_in_a_text, "{1}{2}", "{", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, codes_cut_short_in_a_text, "{1}{2}", "{y:", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, bars_in_a_text, "{1}{2}", "|", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, codes_in_a_text, "{1}{2}", "{y:i}x", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, empty_lines, "", "\n", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, tiny_entries, "", "{1}{}\n", "")->Unit(benchmark::kMillisecond);

}  // namespace
