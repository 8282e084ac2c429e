// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-order.h"

#include <algorithm>
#include <utility>

namespace subtitles::element {

CueOrder::CueOrder(std::vector<Span> spans) : _spans(std::move(spans)) {
    while (_leaves < _spans.size()) {
        _leaves *= 2;
    }
    _latestEnd.assign(2 * _leaves, 0);
    for (std::size_t i = 0; i < _spans.size(); ++i) {
        _latestEnd[_leaves + i] = _spans[i].end;
    }
    for (std::size_t node = _leaves - 1; node >= 1; --node) {
        _latestEnd[node] = std::max(_latestEnd[2 * node], _latestEnd[2 * node + 1]);
    }
}

/// The first leaf below the node whose cue ends after `time`. There is one.
std::size_t CueOrder::leftmost(std::size_t node, GstClockTime time) const {
    while (node < _leaves) {
        node *= 2;
        if (_latestEnd[node] <= time) {
            ++node;
        }
    }
    return node - _leaves;
}

std::size_t CueOrder::nextEndingAfter(std::size_t from, GstClockTime time) const {
    if (from >= size()) {
        return size();
    }
    // Up from the leaf, over the subtrees to its right, to the first that holds an answer.
    std::size_t node = _leaves + from;
    while (_latestEnd[node] <= time) {
        while (node % 2 == 1 && node != 1) {
            node /= 2;
        }
        if (node <= 1) {
            return size();
        }
        ++node;
    }
    return leftmost(node, time);
}

std::size_t CueOrder::countStartingBefore(GstClockTime time) const {
    const auto first = std::partition_point(_spans.begin(), _spans.end(),
                                            [&](const Span& span) { return span.start < time; });
    return static_cast<std::size_t>(first - _spans.begin());
}

GstClockTime CueOrder::end() const {
    return _spans.empty() ? 0 : _latestEnd[1];
}

}  // namespace subtitles::element
