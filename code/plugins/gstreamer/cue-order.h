// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <gst/gst.h>

namespace subtitles::element {

/// When one cue is shown: from `start` up to, and without, `end`, in nanoseconds.
struct Span {
    GstClockTime start;
    GstClockTime end;
};

/// Finds cues by time. Cues may overlap, and one may outlast many that follow it.
class CueOrder {
public:
    CueOrder() = default;
    /// The spans are in ascending order of their starts.
    explicit CueOrder(std::vector<Span> spans);

    std::size_t size() const { return cues.size(); }
    const Span& operator[](std::size_t index) const { return cues[index]; }

    /// The first cue at or behind `from` that ends after `time`; `size()` where none does. Takes
    /// logarithmic time.
    std::size_t nextEndingAfter(std::size_t from, GstClockTime time) const;

    /// The last cue in front of `from` that ends after `time`; nothing where none does. Takes
    /// logarithmic time.
    std::optional<std::size_t> lastEndingAfter(std::size_t from, GstClockTime time) const;

    /// When the last of the first `count` cues ends; 0 without cues. Takes logarithmic time.
    GstClockTime latestEnd(std::size_t count) const;

    /// How many cues start before `time`. Takes logarithmic time.
    std::size_t countStartingBefore(GstClockTime time) const;

    /// When the last cue ends; 0 without cues.
    GstClockTime end() const { return latestEnd(size()); }

private:
    std::size_t leftmost(std::size_t node, GstClockTime time) const;
    std::size_t rightmost(std::size_t node, GstClockTime time) const;

    std::vector<Span> cues;
    /// The latest end below each node of a complete binary tree, the root at 1, node n's children
    /// at 2n and 2n + 1, the cues at its leaves.
    std::vector<GstClockTime> latestEnds;
    std::size_t leaves = 1;
};

}  // namespace subtitles::element
