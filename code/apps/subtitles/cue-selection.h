// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "cue-list.h"

namespace tool {

/// Which cues a person wants, and when. All times are nanoseconds of the file that is read.
struct Window {
    std::uint64_t from = 0;
    std::uint64_t to = std::numeric_limits<std::uint64_t>::max();
    std::int64_t shift = 0;  ///< What is added to the times of the cues that are left.
};

/// A cue with the times at which it is to be shown, in nanoseconds.
struct TimedCue {
    const Cue* cue;
    std::uint64_t start;
    std::uint64_t end;
};

/// The cues of the list, which counts nanoseconds, that are on the screen at some time of the
/// window. They keep their whole length; what a shift moves to before the film's start is cut off.
///
/// Times are rounded to whole steps of `step` nanoseconds, and every cue lasts one at least: no
/// consumer shows a cue that ends when it starts. A cue without an end lasts until a later one
/// starts, five seconds at most. The result points into the list.
std::vector<TimedCue> selectCues(const CueList& list, const Window& window, std::uint64_t step);

}  // namespace tool
