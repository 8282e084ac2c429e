// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the text of an SMI document to its buffers, beside what libxml2 and uchardet take alone on
// the same bytes. Each bad document has the size of the ordinary one.

#include <cstddef>
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>
#include <libxml/HTMLparser.h>
#include <uchardet/uchardet.h>

#include "subtitles/smi-loader.h"

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

void read(benchmark::State& state, const std::string& text, bool styleSheets,
          const char* wantedClass = "") {
    std::size_t cues = 0;
    for (auto _ : state) {
        subtitles::SMILoader loader;
        loader.parseStyleSheets = styleSheets;
        loader.wantedClass = wantedClass;
        loader.parseText(text);
        cues = loader.buffers.size();
    }
    setBytes(state, text);
    state.counters["cues"] = static_cast<double>(cues);
}

void load(benchmark::State& state, std::size_t size) {
    read(state, document(size), false);
}
BENCHMARK_CAPTURE(load, film_of_100_KB, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(load, file_of_8_MiB, limit)->Unit(benchmark::kMillisecond);

void analyze(benchmark::State& state) {
    read(state, document(limit), true);
}
BENCHMARK(analyze)->Unit(benchmark::kMillisecond);

/// The parser with a handler that does nothing.
void libxml2Alone(benchmark::State& state, const std::string& text) {
    htmlSAXHandler handler = {};
    handler.startElement = [](void*, const xmlChar*, const xmlChar**) {};
    handler.endElement = [](void*, const xmlChar*) {};
    handler.characters = [](void*, const xmlChar*, int) {};
    handler.initialized = 1;
    for (auto _ : state) {
        htmlParserCtxtPtr parser =
            htmlCreatePushParserCtxt(&handler, nullptr, "", 0, nullptr, XML_CHAR_ENCODING_UTF8);
        htmlCtxtUseOptions(parser, HTML_PARSE_RECOVER | HTML_PARSE_IGNORE_ENC | HTML_PARSE_NOERROR |
                                       HTML_PARSE_NOWARNING);
        htmlParseChunk(parser, text.data(), static_cast<int>(text.size()), 1);
        htmlFreeParserCtxt(parser);
    }
    setBytes(state, text);
}

void uchardetAlone(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        const uchardet_t detector = uchardet_new();
        uchardet_handle_data(detector, text.data(), text.size());
        uchardet_data_end(detector);
        benchmark::DoNotOptimize(uchardet_get_charset(detector));
        uchardet_delete(detector);
    }
    setBytes(state, text);
}

void libxml2(benchmark::State& state) {
    libxml2Alone(state, document(limit));
}
void uchardet(benchmark::State& state) {
    uchardetAlone(state, document(limit));
}
BENCHMARK(libxml2)->Unit(benchmark::kMillisecond);
BENCHMARK(uchardet)->Unit(benchmark::kMillisecond);

struct Bad {
    const char* head;
    const char* piece;
    const char* tail;
};

void bad(benchmark::State& state, const Bad& text) {
    read(state, repeated(text.head, text.piece, text.tail), true);
}

void badLibxml2(benchmark::State& state, const Bad& text) {
    libxml2Alone(state, repeated(text.head, text.piece, text.tail));
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

}  // namespace
