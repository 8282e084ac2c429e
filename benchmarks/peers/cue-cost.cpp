// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Reads one film's file once, for a profiler: what is inside of readOnce is the cost of the cues.
//
//   cue-cost FORMAT BYTES [floor|libxml2]

#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include <fmt/format.h>
#include <gst/gst.h>

#include "benchmarks/peers/reader.h"

namespace {

peers::Format formatNamed(const std::string& name) {
    for (const peers::Format format : peers::allFormats) {
        if (name == peers::nameOf(format)) {
            return format;
        }
    }
    throw std::invalid_argument("No format is named " + name);
}

std::unique_ptr<peers::Reader> readerNamed(const std::string& name, peers::Format format) {
    if (name == "floor") {
        return peers::makeFloor(format);
    }
    return name == "libxml2" ? peers::makeLibxml2() : peers::makeSubtitles(format, "UTF-8");
}

}  // namespace

// By this name tools/cue-cost tells the profiler when to count.
extern "C" __attribute__((noinline)) std::size_t readOnce(peers::Reader& reader,
                                                          const std::string& file) {
    return reader.read(file);
}

int main(int argc, char** argv) {
    gst_init(nullptr, nullptr);
    try {
        if (argc < 3) {
            throw std::invalid_argument("usage: cue-cost FORMAT BYTES [floor|libxml2]");
        }
        const peers::Format format = formatNamed(argv[1]);
        const std::string file = peers::filmFile(format, std::stoul(argv[2]));
        const auto reader = readerNamed(argc > 3 ? argv[3] : "", format);
        // What is done once in a process is no cost of a cue.
        reader->prepare(file);
        reader->read(file);
        reader->release();
        fmt::print("{} {}\n", file.size(), readOnce(*reader, file));
    } catch (const std::exception& exception) {
        fmt::print(stderr, "{}\n", exception.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
