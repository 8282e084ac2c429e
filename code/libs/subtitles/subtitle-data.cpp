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

#include "subtitles/stream-times.h"

namespace subtitles {
namespace {

using Buffer = fn::AutoPtr<_GstBuffer>;
using Buffers = std::list<Buffer>;

bool bufferCompare(const Buffer& a, const Buffer& b) {
    return comesEarlier(a->pts, b->pts);
}

struct TimedBuffer {
    GstClockTime time;  // Beside the pointer, so that the sort need not visit the buffers.
    Buffer* buffer;
};

// A merge sort, since that stays inside its range even where the comparison is no ordering. It
// keeps buffers with equal times in file order.
void sortByTime(Buffers& buffers) {
    if (std::is_sorted(buffers.begin(), buffers.end(), bufferCompare)) {
        return;  // As nearly every file is.
    }
    std::vector<TimedBuffer> timed;
    timed.reserve(buffers.size());
    for (Buffer& buffer : buffers) {
        timed.push_back({buffer->pts, &buffer});
    }
    std::stable_sort(timed.begin(), timed.end(), [](const TimedBuffer& a, const TimedBuffer& b) {
        return comesEarlier(a.time, b.time);
    });
    std::vector<Buffer> sorted;
    sorted.reserve(timed.size());
    for (const TimedBuffer& entry : timed) {
        sorted.push_back(std::move(*entry.buffer));
    }
    std::move(sorted.begin(), sorted.end(), buffers.begin());
}

bool cannotBeShown(const Buffer& buffer) {
    return buffer->duration == GST_CLOCK_TIME_NONE || gst_buffer_get_size(buffer.get()) == 0;
}

}  // namespace

SubtitleData::SubtitleData(const fn::String& type, const fn::AutoPtr<_GstBuffer>& streamHeader,
                           TimestampUnit unit)
    : mimeType(type), header(streamHeader), timestampUnit(unit) {}

SubtitleData::~SubtitleData() = default;

// A buffer that goes was its forerunner's successor before that, so one walk does for the repairs
// and the removal: a long stream does not fit into the processor's caches twice.
void SubtitleData::sanitize() {
    sortByTime(buffers);
    for (auto current = buffers.begin(); current != buffers.end();) {
        const auto next = std::next(current);
        if (next != buffers.end()) {
            (*current)->duration = durationUntil(
                (*next)->pts, (*current)->pts, (*current)->duration, timestampUnit == NANOSECONDS);
        } else if ((*current)->duration == GST_CLOCK_TIME_NONE) {
            (*current)->duration = lastDuration;
        }
        if (cannotBeShown(*current)) {
            buffers.erase(current);
        }
        current = next;
    }
}

}  // namespace subtitles
