// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The inputs that are meant to be slow, beside an ordinary file of their size.
//
//   worst-cases [BYTES [WORDS]]    all inputs, or those whose names hold the words
//   SUBTITLES_NO_JIT=1 worst-cases [BYTES [WORDS]]     as where no program may make code: without
//   PCRE2's JIT
//
// Prints a table in Markdown: for each input the time for half the size and for the whole, both
// beside an ordinary file of the whole size and beside each other, and the most memory that loading
// took. What libxml2 takes alone on the same document is shown, and is not counted. Each load runs
// in a process of its own.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <vector>

#include <dlfcn.h>
#include <fmt/format.h>
#include <gst/gst.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/exception.h"

#include "benchmarks/peers/reader.h"

/// Stands before PCRE2's own, which the expressions ask while the libraries are loaded.
extern "C" __attribute__((visibility("default"))) int pcre2_jit_compile_8(void* code,
                                                                          std::uint32_t options) {
    using Compile = int (*)(void*, std::uint32_t);
    static const auto compile = reinterpret_cast<Compile>(dlsym(RTLD_NEXT, "pcre2_jit_compile_8"));
    constexpr int noMemory = -48;
    return std::getenv("SUBTITLES_NO_JIT") != nullptr ? noMemory : compile(code, options);
}

namespace {

using peers::Format;

struct Input {
    Format format;
    const char* name;
    std::string head;
    std::string piece;  ///< Over and over. A "%" is another number each time, in no order.
    std::string tail;
    const char* encoding = "UTF-8";
};

const std::string srtTimes = "0:0:1,0 --> 0:0:2,0\n";
const std::string assColumns = "[Events]\nFormat: Start,Text\n";
const std::string smiText = "<sync start=1><p>";

std::vector<Input> inputs() {
    using F = Format;
    return {
        {F::SRT, "one line of digits", "", "1", ""},
        {F::SRT, "one line of digits and an arrow", "", "1", "-->"},
        {F::SRT, "one line of times and arrows", "", "1:1:1 --> ", ""},
        {F::SRT, "lines that are arrows", "", "-->\n", ""},
        {F::SRT, "empty lines", "", "\n", ""},
        {F::SRT, "malformed lines in a cue", srtTimes, "\xFF\n", ""},
        {F::SRT, "short lines in a cue", srtTimes, "x\n", ""},
        {F::SRT, "the smallest cues", "", "0:0:1,0-->0:0:2,0\n\n", ""},
        {F::SRT, "open tags and letters", srtTimes, "<i>x", ""},
        {F::SRT, "tags of every kind", srtTimes, "<b>x</b><i>y", ""},
        {F::SRT, "open brackets", srtTimes, "<", ""},
        {F::SRT, "cues in no order", "", "0:0:0,%-->9:9:9,0\n\n", ""},
        {F::SRT, "colours", srtTimes, "<font color=\"#%\">x", ""},
        {F::SRT, "bytes that do not decode", "", "\x81", "", "windows-1252"},
        {F::MicroDVD, "one bracket over and over", "", "{1}", ""},
        {F::MicroDVD, "open braces", "", "{", ""},
        {F::MicroDVD, "open braces in a text", "{1}{2}", "{", ""},
        {F::MicroDVD, "codes in a text", "{1}{2}", "{y:i}x", ""},
        {F::MicroDVD, "digits in a bracket", "{", "1", ""},
        {F::MicroDVD, "blanks and no second bracket", "{1}", " ", "a"},
        {F::MicroDVD, "the smallest entries", "", "{1}{}\n", ""},
        {F::MicroDVD, "the smallest entries, in another encoding", "", "{1}{}\n", "", "UTF-7"},
        {F::MicroDVD, "entries of a letter", "", "{1}{}x\n", ""},
        {F::MicroDVD, "entries of a tag and a letter", "", "{1}{}<i>x\n", ""},
        {F::MicroDVD, "entries in no order", "", "{%}{}\n", ""},
        {F::MicroDVD, "entries that do not decode", "", "{1}{}\xFF\n", "", "GB18030"},
        {F::ASS, "columns alone", "[Events]\nFormat:", "a,", "Start\n"},
        {F::ASS, "a line of commas", assColumns + "Dialogue:", ",", ""},
        {F::ASS, "digits in a time", assColumns + "Dialogue:", "1", ""},
        {F::ASS, "digits and colons in a time", assColumns + "Dialogue:", "1:2;", ""},
        {F::ASS, "nearly the events line", "", "[Events]x\n", ""},
        {F::ASS, "letters outside ASCII", assColumns, "\xC3\x84\n", ""},
        {F::ASS, "empty lines", assColumns, "\n", ""},
        {F::ASS, "the smallest events", assColumns, "Dialogue:0:0:1.0\n", ""},
        {F::ASS, "events in no order", assColumns, "Dialogue:0:0:%.0\n", ""},
        {F::ASS, "bytes that do not decode", assColumns, "\xFF\n", "", "GB18030"},
        {F::SMI, "syncs without text", "", "<sync start=1>", ""},
        {F::SMI, "end marks", "", "<sync start=1><p>&nbsp;", ""},
        {F::SMI, "the smallest cues", "", "<sync start=1><p>x", ""},
        {F::SMI, "cues in no order", "", "<sync start=%><p>x", ""},
        {F::SMI, "classes", "", "<p class=x>", ""},
        {F::SMI, "classes that differ", smiText, "<p class=%>x", ""},
        {F::SMI, "paragraphs of a cue", smiText, "<p>x", ""},
        {F::SMI, "paragraphs with a tag", smiText, "<p><b>x", ""},
        {F::SMI, "inline tags", smiText, "<b>x</b>", ""},
        {F::SMI, "tags inside each other", smiText, "<b>x", ""},
        {F::SMI, "tags that cross", smiText, "<b>x<i>y</b>z</i>", ""},
        {F::SMI, "ampersands", smiText, "&", ""},
        {F::SMI, "bytes that do not decode", smiText, "\xFF", "", "GB18030"},
        {F::SMI, "one text", smiText, "x", ""},
        {F::SMI, "line ends", smiText, "\n", ""},
        {F::SMI, "style elements", "", "<style></style>", ""},
        {F::SMI, "rules in a style element", "<style>", ".x{a:b}", "</style>"},
        {F::SMI, "rules that differ", "<style>", ".a%{lang:en}", "</style>"},
        {F::SMI, "declarations in a rule", "<style>.a{", "lang:en;", "}</style>"},
        {F::SMI, "declarations of nothing", "<style>.a{", "x:y;", "}</style>"},
        {F::SMI, "declarations of no language", "<style>.a{", "lang:q;", "}</style>"},
        {F::SMI, "declarations of many languages", "<style>.a{", "lang:%;", "}</style>"},
        {F::SMI, "declarations outside of rules", "<style>", "a:b;", "</style>"},
        {F::SMI, "style sheets", "", "<style>.a{name:x}</style>", ""},
        {F::SMI, "a chain of names", "<style>", "a ", "{x:1}</style>"},
        {F::SMI, "open attributes in a style", "<style>", "a[;", "</style>"},
    };
}

/// Numbers of six digits in which nothing is sorted. The step has no factor in common with them.
unsigned shuffled(unsigned number) {
    constexpr unsigned long long step = 618033;
    constexpr unsigned count = 900000;
    return 100000 + static_cast<unsigned>(number * step % count);
}

/// The pieces with their numbers, as many as have room.
std::string repeated(const std::string& piece, std::size_t size) {
    const std::size_t place = piece.find('%');
    std::string text;
    text.reserve(size);
    for (unsigned i = 0;; ++i) {
        std::string next = piece;
        if (place != std::string::npos) {
            next.replace(place, 1, std::to_string(shuffled(i)));
        }
        if (text.size() + next.size() > size) {
            return text;
        }
        text += next;
    }
}

std::string textOf(const Input& input, std::size_t size) {
    const std::size_t around = input.head.size() + input.tail.size();
    return input.head + repeated(input.piece, size - around) + input.tail;
}

struct Cost {
    double milliseconds = 0;
    double megabytes = 0;  ///< The most that was resident, the file itself among it.
};

double processorTime() {
    std::timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

Cost readHere(peers::Reader& reader, const std::string& text) {
    reader.prepare(text);
    const double start = processorTime();
    try {
        reader.read(text);
    } catch (const fn::Exception&) {
        // A refusal is an answer, too.
    }
    const double time = processorTime() - start;
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return {time, static_cast<double>(usage.ru_maxrss) / 1024};
}

/// In a process of its own, so that neither heap nor peak are another's.
Cost readApart(peers::Reader& reader, const std::string& text) {
    int ends[2] = {};
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const Cost cost = readHere(reader, text);
        const bool isTold = write(ends[1], &cost, sizeof cost) == sizeof cost;
        _exit(isTold ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    Cost cost;
    close(ends[1]);
    const bool isTold = read(ends[0], &cost, sizeof cost) == sizeof cost;
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (child < 0 || !isTold || status != 0) {
        throw std::runtime_error("A load did not come to its end");
    }
    return cost;
}

/// The quickest of three: what else the machine does makes a load slower, never faster.
Cost costOf(peers::Reader& reader, const std::string& text) {
    Cost best = readApart(reader, text);
    for (int i = 0; i < 2; ++i) {
        const Cost cost = readApart(reader, text);
        best.milliseconds = std::min(best.milliseconds, cost.milliseconds);
    }
    return best;
}

/// Ours, without what libxml2 takes of it.
struct OwnCost {
    Cost whole;
    Cost libxml2;

    double own() const { return std::max(whole.milliseconds - libxml2.milliseconds, 0.0); }
};

OwnCost ownCostOf(Format format, const std::string& text, const char* encoding = "UTF-8") {
    const auto ours = peers::makeSubtitles(format, encoding, true);
    OwnCost cost = {costOf(*ours, text), {}};
    if (format == Format::SMI) {
        cost.libxml2 = costOf(*peers::makeLibxml2(), text);
    }
    return cost;
}

void printRow(const Input& input, std::size_t size) {
    const OwnCost ordinary = ownCostOf(input.format, peers::filmFile(input.format, size));
    const OwnCost half = ownCostOf(input.format, textOf(input, size / 2), input.encoding);
    const OwnCost whole = ownCostOf(input.format, textOf(input, size), input.encoding);
    fmt::print("| {} | {} | {:.1f} | {:.1f} | {:.2f} | {:.2f} | {:.0f} | {:.0f} | {:.0f} |\n",
               peers::nameOf(input.format), input.name, half.own(), whole.own(),
               whole.own() / ordinary.own(), whole.own() / half.own(), whole.whole.megabytes,
               whole.libxml2.milliseconds, whole.libxml2.megabytes);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    gst_init(nullptr, nullptr);
    try {
        const std::size_t size = argc > 1 ? std::stoul(argv[1]) : 8388608;
        fmt::print(
            "| format | input | half: ms | whole: ms | beside an ordinary file | beside half | "
            "MB at most | libxml2 alone: ms | MB at most |\n"
            "| --- | --- | ---: | ---: | ---: | ---: | ---: | ---: | ---: |\n");
        const std::string wanted = argc > 2 ? argv[2] : "";
        for (const Input& input : inputs()) {
            if ((std::string(peers::nameOf(input.format)) + " " + input.name).find(wanted) !=
                std::string::npos) {
                printRow(input, size);
            }
        }
    } catch (const std::exception& exception) {
        fmt::print(stderr, "{}\n", exception.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
