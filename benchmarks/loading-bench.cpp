// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The road of one SRT file from its path to the stream that a player plays, whole and stage by
// stage, and the search in a folder.
//
// whereTheTimeGoes runs the stages one after the other, each on what the one before gives, and
// reports the milliseconds of each. Lines, mark-up and buffers are also what parsing is made of,
// next to the time lines; taken alone they are a little dearer, since each keeps all its results.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "foundation/byte-array.h"
#include "foundation/file-stream.h"
#include "foundation/stream-reader.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/charset-detector.h"
#include "subtitles/load-string.h"
#include "subtitles/srt-loader.h"
#include "subtitles/srt-reader.h"
#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-parser.h"

#include "benchmarks/srt-text.h"
#include "tests/support/temporary-folder.h"

namespace {

constexpr std::size_t largest = subtitles::loadLimit - 256;
constexpr std::size_t film = 100 * 1024;

/// A file of the temporary folder, and a reference to it.
class File {
public:
    explicit File(std::size_t size) : bytes(bench::srtText(size)) {
        reference.type = subtitles::SubtitleReference::FILE;
        reference.mimeType = "application/x-srt";
        reference.path = folder.writeFile("film.srt", bytes);
    }

    std::string bytes;
    subtitles::SubtitleReference reference;

private:
    test::TemporaryFolder folder;
};

void setBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytes));
}

void load(benchmark::State& state, std::size_t size, const char* encoding) {
    const File file(size);
    subtitles::SrtSubtitleLoader loader;
    for (auto _ : state) {
        auto data = loader.loadSubtitle(file.reference, encoding);
        // A player drops a stream when the film ends, which is no part of loading.
        state.PauseTiming();
        data.reset();
        state.ResumeTiming();
    }
    setBytes(state, file.bytes.size());
}

BENCHMARK_CAPTURE(load, largest_given_as_UTF8, largest, "UTF-8")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, largest_detected, largest, "")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, film_given_as_UTF8, film, "UTF-8")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, film_detected, film, "")->Unit(benchmark::kMillisecond);

void analyze(benchmark::State& state) {
    const File file(film);
    subtitles::SrtSubtitleLoader loader;
    const fn::Path path = fn::Path::parsePath(file.reference.path);
    for (auto _ : state) {
        benchmark::DoNotOptimize(loader.analyzeFile(path));
    }
}
BENCHMARK(analyze)->Unit(benchmark::kMillisecond);

fn::ByteArray readFile(const fn::String& path) {
    fn::FileInputStream stream(fn::FileDescriptor::read(path));
    return fn::StreamReader(&stream).readEverything(subtitles::loadLimit);
}

fn::String detect(const fn::ByteArray& bytes) {
    subtitles::CharsetDetector detector;
    detector.pushData(bytes.data(), bytes.size());
    detector.done();
    return detector.detectedCharset();
}

std::vector<fn::String> splitLines(const fn::String& text) {
    fn::MemoryInputStream stream(fn::to_string_view(text));
    fn::StreamReader reader(&stream);
    std::vector<fn::String> lines;
    while (auto line = reader.readLine()) {
        lines.push_back(std::move(*line));
    }
    return lines;
}

/// What stands between a time line and the next blank line.
std::vector<fn::String> cueTexts(const std::vector<fn::String>& lines) {
    std::vector<fn::String> texts;
    bool inCue = false;
    for (const fn::String& line : lines) {
        if (line.find("-->") != fn::String::npos) {
            texts.emplace_back();
            inCue = true;
        } else if (line.empty()) {
            inCue = false;
        } else if (inCue) {
            texts.back() += line + "\n";
        }
    }
    return texts;
}

/// Runs one stage and adds its milliseconds to the counter. They are the processor's: other
/// programs may want it too.
template <class Stage>
auto timed(benchmark::Counter& milliseconds, const Stage& stage) {
    const std::clock_t start = std::clock();
    auto result = stage();
    milliseconds += static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
    return result;
}

std::vector<subtitles::AttributedText> parseAll(const std::vector<fn::String>& texts) {
    std::vector<subtitles::AttributedText> parsed;
    parsed.reserve(texts.size());
    for (const fn::String& text : texts) {
        parsed.push_back(subtitles::parseSRTFormatting(text));
    }
    return parsed;
}

std::vector<fn::AutoPtr<_GstBuffer>> toBuffers(
    const std::vector<subtitles::AttributedText>& texts) {
    std::vector<fn::AutoPtr<_GstBuffer>> buffers;
    buffers.reserve(texts.size());
    for (const subtitles::AttributedText& text : texts) {
        buffers.push_back(subtitles::attributedTextToBuffer(text));
    }
    return buffers;
}

void whereTheTimeGoes(benchmark::State& state, std::size_t size) {
    const File file(size);
    benchmark::Counter reading(0, benchmark::Counter::kAvgIterations);
    benchmark::Counter detecting = reading, decoding = reading, lines = reading;
    benchmark::Counter markup = reading, buffers = reading;
    benchmark::Counter parsing = reading, sanitizing = reading;
    for (auto _ : state) {
        const auto bytes = timed(reading, [&] { return readFile(file.reference.path); });
        const auto encoding = timed(detecting, [&] { return detect(bytes); });
        const auto text = timed(decoding, [&] {
            return fn::String::withEncoding(bytes.data(), bytes.size(), encoding);
        });
        const auto texts = cueTexts(timed(lines, [&] { return splitLines(text); }));
        const auto parsed = timed(markup, [&] { return parseAll(texts); });
        timed(buffers, [&] { return toBuffers(parsed); });
        auto data = timed(parsing, [&] { return subtitles::parseSRT(text); });
        timed(sanitizing, [&] {
            data->sanitize();
            return data;
        });
    }
    state.counters = {{"1:reading", reading},   {"2:detecting", detecting},
                      {"3:decoding", decoding}, {"4:parsing", parsing},
                      {"4a:lines", lines},      {"4b:markup", markup},
                      {"4c:buffers", buffers},  {"5:sanitizing", sanitizing}};
}
BENCHMARK_CAPTURE(whereTheTimeGoes, largest, largest)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(whereTheTimeGoes, film, film)->Unit(benchmark::kMillisecond);

/// A search among `entries` files, of which 50 are the film's.
void find(benchmark::State& state) {
    const test::TemporaryFolder folder;
    const std::string text = bench::srtText(film);
    for (int i = 0; i < 50; ++i) {
        folder.writeFile("movie." + std::to_string(i) + ".srt", text);
    }
    for (int i = 50; i < state.range(0); ++i) {
        folder.writeFile("other " + std::to_string(i) + ".srt", "");
    }
    const fn::Path path = fn::Path::parsePath(folder.path());
    for (auto _ : state) {
        std::vector<subtitles::SubtitleReference> result;
        subtitles::SubtitleFinder::instance()->processFolder(path, "movie", ".mkv", result);
        benchmark::DoNotOptimize(result);
    }
}
BENCHMARK(find)->Arg(50)->Arg(1000)->Arg(10000)->ArgName("entries")->Unit(benchmark::kMillisecond);

}  // namespace
