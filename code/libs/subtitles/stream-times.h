// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The times of a finished stream: what its order is, and how long a cue stays whose file does not
// tell.

#pragma once

#include <algorithm>

#include <gst/gst.h>

namespace subtitles {

/// How long the last cue stays where its file does not tell; in frames the same number, since
/// nobody here knows how long a frame is.
inline constexpr GstClockTime lastDuration = 5 * GST_SECOND;

/// True where both have a time and the first comes earlier. One without a time is equivalent to all
/// others, so with some of these the order is none that a sort may rely on.
inline bool comesEarlier(GstClockTime a, GstClockTime b) {
    return a != GST_CLOCK_TIME_NONE && b != GST_CLOCK_TIME_NONE && a < b;
}

/// How long a cue stays that another one follows.
inline GstClockTime durationUntil(GstClockTime next, GstClockTime start, GstClockTime duration,
                                  bool inNanoseconds) {
    // A short cue is stretched to this, unless the next one begins before.
    constexpr GstClockTime shortest = GST_SECOND;
    if (inNanoseconds && duration < shortest) {
        // Unsigned and unchecked: where a time is missing it wraps, and the cue stays all the same.
        return std::min<GstClockTime>(next - start, shortest);
    }
    if (duration == GST_CLOCK_TIME_NONE && comesEarlier(start, next)) {
        return next - start - 1;
    }
    return duration;
}

}  // namespace subtitles
