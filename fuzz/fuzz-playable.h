// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <gst/gst.h>

#include "subtitles/subtitle-data.h"

#include "fuzz/fuzz-require.h"

/// What a player relies on in every stream that was loaded: bytes and both times in each buffer,
/// and none that begins before its forerunner.
inline void requirePlayable(const subtitles::SubtitleData& data) {
    GstClockTime last = 0;
    for (const auto& buffer : data.buffers) {
        FUZZ_REQUIRE(gst_buffer_get_size(buffer.get()) > 0);
        FUZZ_REQUIRE(GST_BUFFER_DURATION_IS_VALID(buffer.get()));
        FUZZ_REQUIRE(GST_BUFFER_PTS_IS_VALID(buffer.get()));
        FUZZ_REQUIRE(GST_BUFFER_PTS(buffer.get()) >= last);
        last = GST_BUFFER_PTS(buffer.get());
    }
}
