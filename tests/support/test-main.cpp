// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The `main` of every test program. GStreamer is ready before the first test, as a player has it
// before it loads a subtitle.

#include <gst/gst.h>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // GStreamer would take GoogleTest's options for its own, so it gets none.
    gst_init(nullptr, nullptr);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
