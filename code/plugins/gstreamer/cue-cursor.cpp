// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-cursor.h"

#include <algorithm>

namespace subtitles::element {

CueCursor::CueCursor(const CueOrder& order, const GstSegment& segment)
    : _order(&order),
      _start(segment.start),
      _stop(segment.stop),
      _backward(segment.rate < 0),
      _told(segment.start) {
    // A segment without an end has the latest time of all for one.
    if (_backward) {
        _position = order.countStartingBefore(_stop);
        _told = GST_CLOCK_TIME_IS_VALID(_stop) ? _stop : order.end();
    }
}

std::optional<std::size_t> CueCursor::next() {
    return _backward ? nextBackward() : nextForward();
}

std::optional<std::size_t> CueCursor::nextForward() {
    const std::size_t index = _order->nextEndingAfter(_position, _start);
    if (index == _order->size() || (*_order)[index].start >= _stop) {
        return std::nullopt;
    }
    _position = index + 1;
    return index;
}

std::optional<std::size_t> CueCursor::nextBackward() {
    const std::optional<std::size_t> index = _order->lastEndingAfter(_position, _start);
    if (index) {
        _position = *index;
    }
    return index;
}

Span CueCursor::tell(std::size_t index) {
    const Span& cue = (*_order)[index];
    if (_backward) {
        // Another one, still to come, may last longer.
        const Span gap = {std::min(_order->latestEnd(index + 1), _told), _told};
        _told = std::min(_told, cue.start);
        return gap;
    }
    const Span gap = {_told, std::max(_told, cue.start)};
    _told = std::max(_told, cue.end);
    return gap;
}

}  // namespace subtitles::element
