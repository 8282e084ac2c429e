// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-cursor.h"

#include <algorithm>

namespace subtitles::element {

CueCursor::CueCursor(const CueOrder& order, const GstSegment& segment)
    : cues(&order),
      begin(segment.start),
      end(segment.stop),
      backward(segment.rate < 0),
      told(segment.start) {
    // A segment without an end has the latest time of all for one.
    if (backward) {
        place = order.countStartingBefore(end);
        told = GST_CLOCK_TIME_IS_VALID(end) ? end : order.end();
    }
}

std::optional<std::size_t> CueCursor::next() {
    return backward ? nextBackward() : nextForward();
}

std::optional<std::size_t> CueCursor::nextForward() {
    const std::size_t index = cues->nextEndingAfter(place, begin);
    if (index == cues->size() || (*cues)[index].start >= end) {
        return std::nullopt;
    }
    place = index + 1;
    return index;
}

std::optional<std::size_t> CueCursor::nextBackward() {
    const std::optional<std::size_t> index = cues->lastEndingAfter(place, begin);
    if (index) {
        place = *index;
    }
    return index;
}

Span CueCursor::tell(std::size_t index) {
    const Span& cue = (*cues)[index];
    if (backward) {
        // Another one, still to come, may last longer.
        const Span gap = {std::min(cues->latestEnd(index + 1), told), told};
        told = std::min(told, cue.start);
        return gap;
    }
    const Span gap = {told, std::max(told, cue.start)};
    told = std::max(told, cue.end);
    return gap;
}

}  // namespace subtitles::element
