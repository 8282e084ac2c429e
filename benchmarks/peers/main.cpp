// SPDX-License-Identifier: LGPL-2.1-or-later
//
// subtitles beside its peers, in one run.
//
//   peers [ROUNDS [FORMAT]]
//
// Prints two tables in Markdown, of all formats or one. Each round runs every reader on the file
// once, one after the other, so that whatever else the machine does meets all of them. Times are
// the processor's, the median of the rounds; a ratio is the median of the rounds' ratios, not the
// ratio of the medians.

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <vector>

#include <fmt/format.h>
#include <gst/gst.h>

#include "benchmarks/peers/reader.h"

namespace {

using peers::Format;

struct Contestant {
    const char* name;
    std::unique_ptr<peers::Reader> reader;
    std::size_t cues = 0;
    std::vector<double> times;  ///< In seconds, one for each round.
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double now() {
    std::timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// A small file is read several times, and once before the clock starts: what a reader finds in the
// heap and in the caches is what it left there itself.
double measure(Contestant& contestant, const std::string& file) {
    const std::size_t runs = std::max<std::size_t>(1, 2000000 / file.size());
    contestant.reader->prepare(file);
    contestant.reader->read(file);
    contestant.reader->release();
    double time = 0;
    for (std::size_t i = 0; i < runs; ++i) {
        const double start = now();
        contestant.cues = contestant.reader->read(file);
        time += now() - start;
        contestant.reader->release();
    }
    return time / static_cast<double>(runs);
}

void race(std::vector<Contestant>& contestants, const std::string& file, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        for (Contestant& contestant : contestants) {
            contestant.times.push_back(measure(contestant, file));
        }
    }
}

/// How many times as long as `ours` it took.
double ratio(const Contestant& contestant, const Contestant& ours) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.times.size(); ++i) {
        ratios.push_back(contestant.times[i] / ours.times[i]);
    }
    return median(ratios);
}

std::vector<Contestant> contestantsFor(Format format) {
    std::vector<Contestant> all;
    all.push_back({"subtitles", peers::makeSubtitles(format, "UTF-8"), 0, {}});
    all.push_back({"subtitles, detecting", peers::makeSubtitles(format, ""), 0, {}});
    if (format == Format::SRT || format == Format::MicroDVD) {
        all.push_back({"floor", peers::makeFloor(format), 0, {}});
    }
    all.push_back({"FFmpeg", peers::makeFFmpeg(), 0, {}});
    if (format == Format::ASS) {
        all.push_back({"libass", peers::makeLibass(), 0, {}});
    } else {
        all.push_back({"subparse", peers::makeSubparse(), 0, {}});
    }
    if (format == Format::SMI) {
        all.push_back({"libxml2 alone", peers::makeLibxml2(), 0, {}});
    }
    return all;
}

void print(const std::string& file, const std::vector<Contestant>& contestants, Format format) {
    const double megabyte = 1e6;
    for (const Contestant& contestant : contestants) {
        const double time = median(contestant.times);
        fmt::print("| {} | {:.0f} KB | {} | {} | {:.2f} | {:.1f} | {:.2f} |\n",
                   peers::nameOf(format), static_cast<double>(file.size()) / 1000, contestant.name,
                   contestant.cues, time * 1000, static_cast<double>(file.size()) / time / megabyte,
                   ratio(contestant, contestants.front()));
    }
    std::fflush(stdout);
}

void comparePeers(int rounds, const std::vector<Format>& formats) {
    fmt::print(
        "| format | file | reader | cues | ms | MB/s | times ours |\n"
        "| --- | ---: | --- | ---: | ---: | ---: | ---: |\n");
    for (const Format format : formats) {
        for (const std::size_t size : {100000U, 1000000U, 8388608U}) {
            const std::string file = peers::filmFile(format, size);
            std::vector<Contestant> contestants = contestantsFor(format);
            race(contestants, file, rounds);
            print(file, contestants, format);
        }
    }
}

// With the encoding unknown, beside what finding it takes alone.
void compareDetection(int rounds, const std::vector<Format>& formats) {
    fmt::print(
        "\n| format | encoding | file | uchardet alone: ms | our detector: ms | our share of it | "
        "the whole load: ms | uchardet's share of that |\n"
        "| --- | --- | ---: | ---: | ---: | ---: | ---: | ---: |\n");
    for (const Format format : formats) {
        for (const char* const encoding : {"windows-1250", "windows-1251", "windows-1252"}) {
            const std::string file = peers::filmFileIn(encoding, format, 2000000);
            std::vector<Contestant> all;
            all.push_back({"uchardet", peers::makeUchardet(), 0, {}});
            all.push_back({"detector", peers::makeDetector(), 0, {}});
            all.push_back({"load", peers::makeSubtitles(format, ""), 0, {}});
            race(all, file, rounds);
            fmt::print("| {} | {} | {:.0f} KB | {:.1f} | {:.1f} | {:.1f} % | {:.1f} | {:.0f} % |\n",
                       peers::nameOf(format), encoding, static_cast<double>(file.size()) / 1000,
                       median(all[0].times) * 1000, median(all[1].times) * 1000,
                       100 * (1 - ratio(all[0], all[1])), median(all[2].times) * 1000,
                       100 * ratio(all[0], all[2]));
            std::fflush(stdout);
        }
    }
}

/// The format of that name, or all.
std::vector<Format> formatsNamed(const std::string& name) {
    std::vector<Format> formats;
    for (const Format format : peers::allFormats) {
        if (name.empty() || name == peers::nameOf(format)) {
            formats.push_back(format);
        }
    }
    return formats;
}

}  // namespace

int main(int argc, char** argv) {
    gst_init(nullptr, nullptr);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 9;
    const std::vector<Format> formats = formatsNamed(argc > 2 ? argv[2] : "");
    if (rounds < 1 || formats.empty()) {
        fmt::print(stderr, "usage: peers [ROUNDS [FORMAT]]\n");
        return EXIT_FAILURE;
    }
    try {
        comparePeers(rounds, formats);
        compareDetection(rounds, formats);
    } catch (const std::exception& exception) {
        fmt::print(stderr, "{}\n", exception.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
