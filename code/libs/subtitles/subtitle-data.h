// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <list>

#include "foundation/auto-ptr.h"
#include "foundation/ref-counted.h"
#include "foundation/string.h"

#include "subtitles/export.h"
#include "subtitles/gst-buffer-ptr.h"

namespace subtitles {

/// One loaded subtitle stream: buffers with times. Held through `fn::AutoPtr`; used by one thread
/// at a time.
class SUBTITLES_EXPORT SubtitleData : public fn::RefCountedObject {
public:
    /// What the PTS and the duration of the buffers count. The library knows no frame rate: a
    /// player converts frames itself.
    enum TimestampUnit {
        FRAMES = 0,
        NANOSECONDS = 1,
    };

    /// Starts without buffers; takes a reference to the header, which may be null.
    SubtitleData(const fn::String& type, const fn::AutoPtr<_GstBuffer>& streamHeader,
                 TimestampUnit unit);
    ~SubtitleData() override;

    /// Readies a finished stream for playing; the loaders call it once.
    ///
    /// Sorts by PTS, buffers with equal times staying in their order. Then repairs durations: in
    /// nanoseconds, one below a second becomes the time to the next buffer, a second at most; a
    /// missing one ends one unit before the next buffer, or, at the end of the stream, is
    /// 5000000000 in either unit. At last removes empty buffers and those whose duration is still
    /// missing. Where some buffers have no PTS, the order is none in particular. Raises
    /// `fn::NullPointerException`, before anything is changed, where the list holds a null pointer.
    void sanitize();

    /// What the buffers hold: "application/x-attributed-text" (see `attributedTextFromBuffer`) or
    /// "application/x-ass" (see `ASSParser`).
    fn::String mimeType;
    /// The lines of an ASS script before its events; null for all other formats.
    fn::AutoPtr<_GstBuffer> header;
    std::list<fn::AutoPtr<_GstBuffer>> buffers;  ///< A missing time is GST_CLOCK_TIME_NONE.
    TimestampUnit timestampUnit;
};

}  // namespace subtitles
