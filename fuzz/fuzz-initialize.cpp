// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What libFuzzer calls before the first input: GStreamer is ready when a target runs.

#include <gst/gst.h>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    gst_init(nullptr, nullptr);
    return 0;
}
