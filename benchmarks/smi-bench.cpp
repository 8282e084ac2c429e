// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the text of an SMI document to its buffers, beside what libxml2 and uchardet take alone on
// the same bytes. Each bad document has the size of the ordinary one.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <list>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <gst/gst.h>
#include <libxml/HTMLparser.h>
#include <uchardet/uchardet.h>

#include "foundation/path.h"

#include "subtitles/smi-loader.h"
#include "subtitles/smi-subtitle-loader.h"

#include "tests/support/encode.h"
#include "tests/support/temporary-folder.h"

namespace {

constexpr std::size_t limit = 8388608;

/// A document with one English and one Korean paragraph a block, and an end mark behind each.
std::string document(std::size_t size) {
    std::string text =
        "<SAMI>\n<HEAD>\n<STYLE TYPE=\"text/css\">\n<!--\nP { margin-left:8pt; color:white; }\n"
        ".ENCC { Name:English; lang:en-US; SAMIType:CC; }\n"
        ".KRCC { Name:Korean; lang:ko-KR; SAMIType:CC; }\n-->\n</STYLE>\n</HEAD>\n<BODY>\n";
    for (int time = 1000; text.size() < size; time += 3000) {
        text += "<SYNC Start=" + std::to_string(time) +
                "><P Class=ENCC>The ferry leaves at <b>seven</b>,<br>if it leaves at all.\n" +
                "<P Class=KRCC>\xEB\xB0\xB0\xEB\x8A\x94 \xEC\x9D\xBC\xEA\xB3\xB1 "
                "\xEC\x8B\x9C\xEC\x97\x90 \xEB\x96\xA0\xEB\x82\xA9\xEB\x8B\x88\xEB\x8B\xA4.\n" +
                "<SYNC Start=" + std::to_string(time + 2000) +
                "><P Class=ENCC>&nbsp;\n<P Class=KRCC>&nbsp;\n";
    }
    return text + "</BODY>\n</SAMI>\n";
}

std::string repeated(const std::string& head, const std::string& piece, const std::string& tail) {
    std::string text = head;
    while (text.size() + piece.size() + tail.size() <= limit) {
        text += piece;
    }
    return text + tail;
}

void setBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

/// What a loader is asked for.
struct Task {
    bool styleSheets;
    bool languagesOnly;
    const char* wantedClass;
};

void read(benchmark::State& state, const std::string& text, const Task& task) {
    std::size_t cues = 0;
    for (auto _ : state) {
        auto loader = std::make_unique<subtitles::SMILoader>();
        loader->parseStyleSheets = task.styleSheets;
        loader->languagesOnly = task.languagesOnly;
        loader->wantedClass = task.wantedClass;
        loader->parseText(text);
        cues = loader->buffers.size();
        state.PauseTiming();
        loader.reset();
        state.ResumeTiming();
    }
    setBytes(state, text);
    state.counters["cues"] = static_cast<double>(cues);
}

void load(benchmark::State& state, std::size_t size, const char* wantedClass) {
    read(state, document(size), {false, false, wantedClass});
}
BENCHMARK_CAPTURE(load, film_of_100_KB, 100000, "encc")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(load, english_of_8_MiB, limit, "encc")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, korean_of_8_MiB, limit, "krcc")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, both_of_8_MiB, limit, "")->Unit(benchmark::kMillisecond);

void analyze(benchmark::State& state) {
    read(state, document(limit), {true, true, ""});
}
BENCHMARK(analyze)->Unit(benchmark::kMillisecond);

/// The parser with a handler that does nothing.
int parseWithLibxml2(const std::string& text) {
    static htmlSAXHandler handler = [] {
        htmlSAXHandler events = {};
        events.startElement = [](void*, const xmlChar*, const xmlChar**) {};
        events.endElement = [](void*, const xmlChar*) {};
        events.characters = [](void*, const xmlChar*, int) {};
        events.initialized = 1;
        return events;
    }();
    htmlParserCtxtPtr parser =
        htmlCreatePushParserCtxt(&handler, nullptr, "", 0, nullptr, XML_CHAR_ENCODING_UTF8);
    htmlCtxtUseOptions(parser, HTML_PARSE_RECOVER | HTML_PARSE_IGNORE_ENC | HTML_PARSE_NOERROR |
                                   HTML_PARSE_NOWARNING);
    const int errors = htmlParseChunk(parser, text.data(), static_cast<int>(text.size()), 1);
    htmlFreeParserCtxt(parser);
    return errors;
}

std::string detectWithUchardet(const std::string& text) {
    const uchardet_t detector = uchardet_new();
    uchardet_handle_data(detector, text.data(), text.size());
    uchardet_data_end(detector);
    std::string charset = uchardet_get_charset(detector);
    uchardet_delete(detector);
    return charset;
}

/// Runs a stage, adds its milliseconds to the counter and gives them. They are the processor's:
/// other programs may want it too. What the stage made is dropped behind that, as a player drops a
/// stream when the film ends.
template <class Stage>
double timed(benchmark::Counter& milliseconds, const Stage& stage) {
    const std::clock_t start = std::clock();
    [[maybe_unused]] const auto made = stage();
    const double result = static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
    milliseconds += result;
    return result;
}

/// The whole road from a file, and beside it what libxml2 and uchardet take for the same bytes:
/// `ours` is the rest of the whole, `share` that rest in parts of theirs.
template <class Road>
void share(benchmark::State& state, const std::string& encoding, bool detects, const Road& road) {
    const std::string text = document(limit - limit / 4);
    const std::string bytes = test::encode(text, encoding);
    const test::TemporaryFolder folder;
    const std::string path = folder.writeFile("film.smi", bytes);
    benchmark::Counter whole(0, benchmark::Counter::kAvgIterations);
    benchmark::Counter libxml2 = whole, uchardet = whole, ours = whole;
    double theirs = 0;
    for (auto _ : state) {
        const double all = timed(whole, [&] { return road(path); });
        const double parser = timed(libxml2, [&] { return parseWithLibxml2(text); });
        const double detector =
            detects ? timed(uchardet, [&] { return detectWithUchardet(bytes); }) : 0;
        ours += all - parser - detector;
        theirs += parser + detector;
    }
    state.counters = {{"1:whole", whole},
                      {"2:libxml2", libxml2},
                      {"3:uchardet", uchardet},
                      {"4:ours", ours},
                      {"5:share", ours.value / theirs}};
}

void shareOfAnalysis(benchmark::State& state, const char* encoding) {
    share(state, encoding, true, [](const std::string& path) {
        subtitles::SMISubtitleLoader loader;
        return loader.analyzeFile(fn::Path::parsePath(path));
    });
}
BENCHMARK_CAPTURE(shareOfAnalysis, UTF8, "UTF-8")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(shareOfAnalysis, CP949, "CP949")->Unit(benchmark::kMillisecond);

/// Loads one class, with the encoding given or detected.
void shareOfLoad(benchmark::State& state, const char* encoding, bool detects) {
    subtitles::SubtitleReference reference;
    reference.type = subtitles::SubtitleReference::FILE;
    reference.mimeType = "application/x-smi";
    reference.loaderProperties["class"] = "krcc";
    share(state, encoding, detects, [&](const std::string& path) {
        reference.path = path;
        subtitles::SMISubtitleLoader loader;
        return loader.loadSubtitle(reference, detects ? "" : encoding);
    });
}
BENCHMARK_CAPTURE(shareOfLoad, UTF8_given, "UTF-8", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(shareOfLoad, UTF8_detected, "UTF-8", true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(shareOfLoad, CP949_given, "CP949", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(shareOfLoad, CP949_detected, "CP949", true)->Unit(benchmark::kMillisecond);

/// What GStreamer takes alone to make the buffers of such a load: a cue and its end mark, in turn.
void gstreamer(benchmark::State& state) {
    constexpr int blocks = 30660;
    constexpr std::size_t cueSize = 160;
    for (auto _ : state) {
        std::list<fn::AutoPtr<_GstBuffer>> buffers;
        for (int i = 0; i < blocks; ++i) {
            buffers.emplace_back(gst_buffer_new_allocate(nullptr, cueSize, nullptr));
            buffers.emplace_back(gst_buffer_new());
        }
        state.PauseTiming();
        buffers.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(gstreamer)->Unit(benchmark::kMillisecond);

struct Bad {
    const char* head;
    const char* piece;
    const char* tail;
};

void bad(benchmark::State& state, const Bad& text) {
    read(state, repeated(text.head, text.piece, text.tail), {true, false, ""});
}

void badLibxml2(benchmark::State& state, const Bad& text) {
    const std::string document = repeated(text.head, text.piece, text.tail);
    for (auto _ : state) {
        parseWithLibxml2(document);
    }
    setBytes(state, document);
}

// Each with what libxml2 alone takes, since that is no time of ours.
#define BENCHMARK_BAD(name, ...)                                                                  \
    BENCHMARK_CAPTURE(bad, name, Bad{__VA_ARGS__})->Unit(benchmark::kMillisecond)->Iterations(1); \
    BENCHMARK_CAPTURE(badLibxml2, name, Bad{__VA_ARGS__})                                         \
        ->Unit(benchmark::kMillisecond)                                                           \
        ->Iterations(1)

BENCHMARK_BAD(rules_in_a_style_element, "<style>", ".x{a:b}", "</style>");
BENCHMARK_BAD(chain_of_names, "<style>", "a ", "{x:1}</style>");
BENCHMARK_BAD(open_attributes, "<style>", "a[;", "</style>");
BENCHMARK_BAD(open_rules, "<style>", "a{;", "</style>");
BENCHMARK_BAD(root_properties, "<style>", "a:b;", "</style>");
BENCHMARK_BAD(style_elements, "", "<style></style>", "");
BENCHMARK_BAD(style_elements_with_a_rule, "", "<style>.x{a:b} </style>", "");
BENCHMARK_BAD(nested_inline_tags, "<sync start=1><p>", "<b>x", "");
BENCHMARK_BAD(inline_tags, "<sync start=1><p>", "<b>x</b>", "");
BENCHMARK_BAD(syncs_without_text, "", "<sync start=1>", "");
BENCHMARK_BAD(end_marks, "", "<sync start=1><p>&nbsp;", "");
BENCHMARK_BAD(classes, "", "<p class=x>", "");
BENCHMARK_BAD(one_text, "<sync start=1><p>", "x", "");
BENCHMARK_BAD(line_ends, "<sync start=1><p>", "\n", "");

/// Pieces that libxml2 looks for among all that came before: it takes the square of their number,
/// and the reader no more than that.
std::string attributes(int count) {
    std::string text = "<sync start=1><p";
    for (int i = 0; i < count; ++i) {
        text += " a" + std::to_string(i) + "=1";
    }
    return text + ">x";
}

std::string unmatchedEndTags(int count) {
    std::string text = "<sync start=1><p>";
    for (int i = 0; i < count; ++i) {
        text += "<b>";
    }
    for (int i = 0; i < count; ++i) {
        text += "</i>";
    }
    return text + "x";
}

void square(benchmark::State& state, std::string (*document)(int)) {
    const std::string text = document(static_cast<int>(state.range(0)));
    benchmark::Counter whole(0, benchmark::Counter::kAvgIterations);
    benchmark::Counter libxml2 = whole;
    for (auto _ : state) {
        timed(whole, [&] {
            subtitles::SMILoader loader;
            loader.parseText(text);
            return loader;
        });
        timed(libxml2, [&] { return parseWithLibxml2(text); });
    }
    state.counters = {{"1:whole", whole}, {"2:libxml2", libxml2}};
}
BENCHMARK_CAPTURE(square, attributes, attributes)
    ->Arg(10000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(square, unmatchedEndTags, unmatchedEndTags)
    ->Arg(10000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
