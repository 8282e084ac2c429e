// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <optional>

#include <gst/gst.h>

#include "plugins/gstreamer/cue-order.h"

namespace subtitles::element {

/// Walks through the cues that are shown in a segment, forwards or backwards with its rate, and
/// tells the gaps between them. Each step takes logarithmic time, the first one too: so a seek is
/// as quick in a long film as in a short one.
class CueCursor {
public:
    /// The order outlives the cursor.
    CueCursor(const CueOrder& order, const GstSegment& segment);

    /// The index of the next cue; nothing where none is left.
    std::optional<std::size_t> next();

    /// When nothing is shown between this cue and those that were told before it; empty where they
    /// touch. From now on the cue is told as well. To be called with what `next` gave, or not at
    /// all for a cue that shows nothing.
    Span tell(std::size_t index);

private:
    std::optional<std::size_t> nextForward();
    std::optional<std::size_t> nextBackward();

    const CueOrder* cues;
    GstClockTime begin;
    GstClockTime end;
    bool backward;
    std::size_t place = 0;  ///< The next cue; playing backwards, one behind it.
    GstClockTime told = 0;  ///< Cues and gaps have covered the segment so far.
};

}  // namespace subtitles::element
