// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cue-selection.h"

#include <algorithm>

namespace tool {

namespace {

constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t longestOpenCue = 5000000000;  // nanoseconds

/// The end of every cue, made up where the file has none.
std::vector<std::uint64_t> endsOf(const std::vector<Cue>& cues) {
    std::vector<std::uint64_t> ends(cues.size());
    // From the back, since the next later start is known there; cues may start together.
    std::uint64_t later = most;
    std::uint64_t start = most;
    for (std::size_t i = cues.size(); i-- > 0;) {
        if (cues[i].start < start) {
            later = start;
            start = cues[i].start;
        }
        const std::uint64_t limit = start > most - longestOpenCue ? most : start + longestOpenCue;
        ends[i] = cues[i].end.value_or(std::min(later, limit));
    }
    return ends;
}

bool isInside(const TimedCue& cue, const Window& window) {
    return cue.start < window.to && (cue.end > window.from || cue.start >= window.from);
}

/// Stops at the film's start and at the largest time.
std::uint64_t shifted(std::uint64_t time, std::int64_t shift) {
    if (shift >= 0) {
        const auto forward = static_cast<std::uint64_t>(shift);
        return time > most - forward ? most : time + forward;
    }
    const std::uint64_t back = ~static_cast<std::uint64_t>(shift) + 1;
    return time > back ? time - back : 0;
}

std::uint64_t rounded(std::uint64_t time, std::uint64_t step) {
    const std::uint64_t down = time - time % step;
    return time % step >= step - step / 2 && down <= most - step ? down + step : down;
}

}  // namespace

std::vector<TimedCue> selectCues(const CueList& list, const Window& window, std::uint64_t step) {
    const std::vector<Cue>& cues = list.cues();
    const std::vector<std::uint64_t> ends = endsOf(cues);
    std::vector<TimedCue> result;
    result.reserve(cues.size());
    for (std::size_t i = 0; i < cues.size(); ++i) {
        TimedCue cue{&cues[i], cues[i].start, ends[i]};
        const bool staysInTheFilm = window.shift >= 0 || shifted(cue.end, window.shift) > 0;
        if (!isInside(cue, window) || !staysInTheFilm) {
            continue;
        }
        cue.start = std::min(rounded(shifted(cue.start, window.shift), step), most - step);
        cue.end = std::max(rounded(shifted(cue.end, window.shift), step), cue.start + step);
        result.push_back(cue);
    }
    return result;
}

}  // namespace tool
