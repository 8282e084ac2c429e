// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The element's inside, for the sources that make it up.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include <foundation/string.h>

#include "plugins/gstreamer/cue-cursor.h"
#include "plugins/gstreamer/cue-track.h"
#include "plugins/gstreamer/subtitles-src.h"

namespace subtitles::element {

enum class Payload { PangoMarkup, PlainText, ASS };

/// All that the element knows. Up to `track`, which is set once and then only read, the object's
/// lock guards the fields: properties, caps and duration are asked for from any thread. All else
/// belongs to the streaming thread.
struct State {
    TrackRequest request;
    fn::String detectedFormat;
    fn::String detectedEncoding;
    unsigned cueCount = 0;
    GstClockTime duration = GST_CLOCK_TIME_NONE;
    guint32 seqnum = GST_SEQNUM_INVALID;  ///< Of the last seek.

    std::shared_ptr<const CueTrack> track;

    Payload payload = Payload::PangoMarkup;
    std::optional<CueCursor> cursor;  ///< In the segment; nothing when that is new.
    Span gap = {0, 0};                ///< To be told in front of the next buffer.
    bool tagsPending = false;
    bool segmentPending = true;
    bool hasFailed = false;  ///< The error is on the bus by then.
};

}  // namespace subtitles::element

struct _SubtitlesSrc {
    GstBaseSrc parent;
    subtitles::element::State* state;
};

namespace subtitles::element {

inline SubtitlesSrc* self(gpointer object) {
    return SUBTITLES_SRC(object);
}

class ObjectLock {
public:
    explicit ObjectLock(SubtitlesSrc* source) : locked(GST_OBJECT(source)) {
        GST_OBJECT_LOCK(locked);
    }
    ObjectLock(const ObjectLock&) = delete;
    ObjectLock& operator=(const ObjectLock&) = delete;
    ~ObjectLock() { GST_OBJECT_UNLOCK(locked); }

private:
    GstObject* locked;
};

/// Gives the class of the element its properties.
void installProperties(GObjectClass* objectClass);

/// Tells whoever watches the properties what was detected.
void notifyDetected(SubtitlesSrc* source);

/// Nothing is known of a file any more.
void forgetDetected(SubtitlesSrc* source);

}  // namespace subtitles::element
