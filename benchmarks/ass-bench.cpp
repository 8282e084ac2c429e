// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the text of an ASS script to its events, and from an event to its runs. Each bad text has
// the size of the ordinary one, so that the two times can be compared.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "foundation/exception.h"
#include "foundation/string.h"

#include "subtitles/ass-loader.h"
#include "subtitles/ass-parser.h"
#include "subtitles/ass-reader.h"

#include "benchmarks/srt-texts.h"
#include "tests/support/temporary-folder.h"

namespace {

using srt_texts::limit;
using srt_texts::repeated;

constexpr const char* formatLine =
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

std::string head() {
    std::string text = "[Script Info]\nTitle: A film\nScriptType: v4.00+\nPlayResX: 640\n\n";
    text += "[V4+ Styles]\nFormat: Name, Fontname, Fontsize, PrimaryColour, Bold, Italic\n";
    for (int i = 0; i < 8; ++i) {
        text += fmt::format("Style: Style {},Arial,38,&H00FFFFFF,-1,0\n", i);
    }
    return text + "\n[Events]\n" + formatLine;
}

/// The text of a cue with the codes of ASS for tags and line ends.
fn::String eventText(const char* cue) {
    fn::String text = cue;
    const char* const rows[][2] = {{"\n", "\\N"},       {"<i>", "{\\i1}"},  {"</i>", "{\\i0}"},
                                   {"<b>", "{\\b700}"}, {"</b>", "{\\b0}"}, {"{an8}", "{\\an8}"},
                                   {"<u>", "{\\u1}"},   {"</u>", "{\\u0}"}};
    for (const auto& [tag, code] : rows) {
        text.replaceAll(tag, code);
    }
    return text;
}

std::string assTime(std::size_t centiseconds) {
    return fmt::format("{}:{:02}:{:02}.{:02}", centiseconds / 360000, centiseconds / 6000 % 60,
                       centiseconds / 100 % 60, centiseconds % 100);
}

/// Whole events, two seconds each, up to `size` bytes.
fn::String script(const srt_texts::Cues& cues, std::size_t size) {
    std::string text = head();
    for (std::size_t i = 0;; ++i) {
        const std::string event =
            fmt::format("Dialogue: 0,{},{},Default,,0000,0000,0000,,{}\n", assTime(i * 250),
                        assTime(i * 250 + 200), std::string(eventText(cues[i % cues.size()])));
        if (text.size() + event.size() > size) {
            return text;
        }
        text += event;
    }
}

void load(benchmark::State& state, const fn::String& text) {
    std::size_t events = 0;
    for (auto _ : state) {
        try {
            auto data = subtitles::parseASS(text);
            data->sanitize();
            events = data->buffers.size();
            // Players drop a stream long after they have loaded it.
            state.PauseTiming();
            data.reset();
            state.ResumeTiming();
        } catch (const fn::UTF8Exception&) {
            events = 0;
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    state.counters["events"] = static_cast<double>(events);
}

void file(benchmark::State& state, const srt_texts::Cues& cues, std::size_t size) {
    load(state, script(cues, size));
}
BENCHMARK_CAPTURE(file, plain_100_KB, srt_texts::plain, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(file, plain, srt_texts::plain, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, tagged, srt_texts::tagged, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, cyrillic, srt_texts::cyrillic, limit)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(file, korean, srt_texts::korean, limit)->Unit(benchmark::kMillisecond);

/// From the path of a file to the stream that a player plays.
void loadSubtitle(benchmark::State& state, const srt_texts::Cues& cues, const char* encoding) {
    const test::TemporaryFolder folder;
    const fn::String bytes = script(cues, limit);
    subtitles::SubtitleReference reference;
    reference.type = subtitles::SubtitleReference::FILE;
    reference.mimeType = "application/x-ass";
    reference.path = folder.writeFile("film.ass", bytes);
    subtitles::ASSSubtitleLoader loader;
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
const std::string twoColumns = "[Events]\nFormat: Start,Text\n";
const std::string manyColumns = "[Events]\nFormat:" + repeated("a,", 4000000) + "Start,Text\n";
BENCHMARK_CAPTURE(bad, columns_alone, "[Events]\nFormat:", "a,", "Start\n")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, two_million_columns, manyColumns, "Dialogue:\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, two_million_columns_and_commas, manyColumns + "Dialogue:", ",", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, a_line_of_commas, head() + "Dialogue:", ",", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, digits_in_a_time, twoColumns + "Dialogue:", "1", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, digits_and_colons_in_a_time, twoColumns + "Dialogue:", "1:2;", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, empty_lines_in_the_header, "", "\n", "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, empty_lines_before_the_format, "[Events]\n", "\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, empty_lines_among_the_events, twoColumns, "\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, nearly_the_events_line, "", "[Events]x\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, letters_outside_ascii, twoColumns, "\xC3\x84\n", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, blank_lines_of_wide_blanks, twoColumns, "\xE3\x80\x80", "")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bad, tiny_events, twoColumns, "Dialogue:0:0:1.0\n", "")
    ->Unit(benchmark::kMillisecond);

/// Events as a player reads them, one after the other.
void entries(benchmark::State& state, const srt_texts::Cues& cues) {
    std::vector<fn::String> events;
    std::size_t size = 0;
    for (const char* cue : cues) {
        events.push_back("17,0,Default,,0000,0000,0000,," + eventText(cue));
        size += events.back().size();
    }
    for (auto _ : state) {
        for (const fn::String& event : events) {
            benchmark::DoNotOptimize(subtitles::ASSParser().parseEntry(event));
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}
BENCHMARK_CAPTURE(entries, plain, srt_texts::plain);
BENCHMARK_CAPTURE(entries, tagged, srt_texts::tagged);
BENCHMARK_CAPTURE(entries, cyrillic, srt_texts::cyrillic);
BENCHMARK_CAPTURE(entries, korean, srt_texts::korean);

void entry(benchmark::State& state, const std::string& start, const std::string& piece) {
    const fn::String event = ",,,,,,,," + start + repeated(piece, limit - start.size() - 8);
    for (auto _ : state) {
        benchmark::DoNotOptimize(subtitles::ASSParser().parseEntry(event));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(event.size()));
}
BENCHMARK_CAPTURE(entry, plain, "", "The train was late again.\\N")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, tagged, "", "The {\\i1}train{\\i0} was late again.\\N")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, open_braces, "", "{")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, open_braces_and_backslashes, "", "{\\")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, codes_cut_short, "", "{\\b70")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, empty_blocks, "", "{}")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, backslashes, "", "\\")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, codes_that_stay_open, "", "{\\i1}")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, codes_around_letters, "", "{\\i1}x{\\i0}")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(entry, commas, "", ",")->Unit(benchmark::kMillisecond);

}  // namespace
