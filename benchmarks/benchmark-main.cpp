// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The `main` of every benchmark. GStreamer is ready before the clock starts.

#include <cstdlib>

#include <benchmark/benchmark.h>
#include <gst/gst.h>

int main(int argc, char** argv) {
    gst_init(nullptr, nullptr);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
