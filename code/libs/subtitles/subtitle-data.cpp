// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The clean-up pass over a finished stream: sort, repair durations, drop what cannot be shown.
//
// Readers append buffers in file order and leave durations open where the file does not tell them.
// Everything that needs the next buffer's time happens here, once, after the whole file is read.

#include "subtitles/subtitle-data.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include <gst/gst.h>

namespace subtitles {
namespace {

using Buffer = fn::AutoPtr<_GstBuffer>;
using Buffers = std::list<Buffer>;

// A short cue is stretched to this, unless the next one begins before.
constexpr GstClockTime shortestDuration = GST_SECOND;
// How long the last cue stays where its file does not tell; in frames the same number, since
// nobody here knows how long a frame is.
constexpr GstClockTime lastDuration = 5 * GST_SECOND;

// True where both have a time and the first comes earlier. One without a time is equivalent to all
// others, so with some of these the order is none that a sort may rely on.
bool comesEarlier(GstClockTime a, GstClockTime b) {
    return a != GST_CLOCK_TIME_NONE && b != GST_CLOCK_TIME_NONE && a < b;
}

struct TimedBuffer {
    GstClockTime time;  // Beside the pointer, so that the sort need not visit the buffers.
    Buffer* buffer;
};

std::vector<TimedBuffer> timesOf(Buffers& buffers) {
    std::vector<TimedBuffer> result;
    result.reserve(buffers.size());
    for (Buffer& buffer : buffers) {
        result.push_back({buffer->pts, &buffer});
    }
    return result;
}

// A merge sort, since that stays inside its range even where the comparison is no ordering. It
// keeps buffers with equal times in file order.
void sortByTime(Buffers& buffers) {
    const auto earlier = [](const TimedBuffer& a, const TimedBuffer& b) {
        return comesEarlier(a.time, b.time);
    };
    std::vector<TimedBuffer> timed = timesOf(buffers);
    if (std::is_sorted(timed.begin(), timed.end(), earlier)) {
        return;  // As nearly every file is.
    }
    std::stable_sort(timed.begin(), timed.end(), earlier);
    std::vector<Buffer> sorted;
    sorted.reserve(timed.size());
    for (const TimedBuffer& entry : timed) {
        sorted.push_back(std::move(*entry.buffer));
    }
    std::move(sorted.begin(), sorted.end(), buffers.begin());
}

void repairDuration(GstBuffer& current, const GstBuffer& next, bool inNanoseconds) {
    if (inNanoseconds && current.duration < shortestDuration) {
        // Unsigned and unchecked: where a time is missing, this is some number below or at a
        // second, and the cue stays.
        current.duration = std::min<GstClockTime>(next.pts - current.pts, shortestDuration);
    } else if (current.duration == GST_CLOCK_TIME_NONE && comesEarlier(current.pts, next.pts)) {
        current.duration = next.pts - current.pts - 1;
    }
}

void repairDurations(Buffers& buffers, bool inNanoseconds) {
    for (auto next = std::next(buffers.begin()); next != buffers.end(); ++next) {
        repairDuration(**std::prev(next), **next, inNanoseconds);
    }
    if (buffers.back()->duration == GST_CLOCK_TIME_NONE) {
        buffers.back()->duration = lastDuration;
    }
}

bool cannotBeShown(const Buffer& buffer) {
    return buffer->duration == GST_CLOCK_TIME_NONE || gst_buffer_get_size(buffer.get()) == 0;
}

}  // namespace

SubtitleData::SubtitleData(const fn::String& type, const fn::AutoPtr<_GstBuffer>& streamHeader,
                           TimestampUnit unit)
    : mimeType(type), header(streamHeader), timestampUnit(unit) {}

SubtitleData::~SubtitleData() = default;

void SubtitleData::sanitize() {
    sortByTime(buffers);
    if (buffers.empty()) {
        return;
    }
    repairDurations(buffers, timestampUnit == NANOSECONDS);
    buffers.remove_if(cannotBeShown);
}

}  // namespace subtitles
