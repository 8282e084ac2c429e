// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-order.h"

#include <algorithm>
#include <utility>

namespace subtitles::element {

CueOrder::CueOrder(std::vector<Span> spans) : cues(std::move(spans)) {
    // One leaf at least stays free: behind the last cue is a place too.
    while (leaves <= cues.size()) {
        leaves *= 2;
    }
    latestEnds.assign(2 * leaves, 0);
    for (std::size_t i = 0; i < cues.size(); ++i) {
        latestEnds[leaves + i] = cues[i].end;
    }
    for (std::size_t node = leaves - 1; node >= 1; --node) {
        latestEnds[node] = std::max(latestEnds[2 * node], latestEnds[2 * node + 1]);
    }
}

/// The first leaf below the node whose cue ends after `time`. There is one.
std::size_t CueOrder::leftmost(std::size_t node, GstClockTime time) const {
    while (node < leaves) {
        node *= 2;
        if (latestEnds[node] <= time) {
            ++node;
        }
    }
    return node - leaves;
}

std::size_t CueOrder::nextEndingAfter(std::size_t from, GstClockTime time) const {
    if (from >= size()) {
        return size();
    }
    // Up from the leaf, over the subtrees to its right, to the first that holds an answer.
    std::size_t node = leaves + from;
    while (latestEnds[node] <= time) {
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

/// The last leaf below the node whose cue ends after `time`. There is one.
std::size_t CueOrder::rightmost(std::size_t node, GstClockTime time) const {
    while (node < leaves) {
        node = 2 * node + 1;
        if (latestEnds[node] <= time) {
            --node;
        }
    }
    return node - leaves;
}

std::optional<std::size_t> CueOrder::lastEndingAfter(std::size_t from, GstClockTime time) const {
    // Up from the leaf, and at each right child a look into the subtree to its left.
    for (std::size_t node = leaves + std::min(from, leaves - 1); node > 1; node /= 2) {
        if (node % 2 == 1 && latestEnds[node - 1] > time) {
            return rightmost(node - 1, time);
        }
    }
    return std::nullopt;
}

GstClockTime CueOrder::latestEnd(std::size_t count) const {
    GstClockTime latest = 0;
    for (std::size_t node = leaves + std::min(count, leaves - 1); node > 1; node /= 2) {
        if (node % 2 == 1) {
            latest = std::max(latest, latestEnds[node - 1]);
        }
    }
    return latest;
}

std::size_t CueOrder::countStartingBefore(GstClockTime time) const {
    const auto first = std::partition_point(cues.begin(), cues.end(),
                                            [&](const Span& span) { return span.start < time; });
    return static_cast<std::size_t>(first - cues.begin());
}

}  // namespace subtitles::element
