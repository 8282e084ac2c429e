// SPDX-License-Identifier: LGPL-2.1-or-later

#include "overlay-input.h"

#include <chrono>

namespace tool {

namespace {

/// So long a frame waits for a text source that is in trouble, and that has told so by then.
constexpr std::chrono::seconds patience{10};

void addProbe(GstElement* element, const char* name, GstPadProbeType type,
              GstPadProbeCallback callback, gpointer data) {
    GstPad* const pad = gst_element_get_static_pad(element, name);
    gst_pad_add_probe(pad, type, callback, data, nullptr);
    gst_object_unref(pad);
}

GstBuffer* cutToSegment(GstBuffer* buffer, const GstSegment& segment) {
    const GstClockTime begin = GST_BUFFER_PTS(buffer);
    const GstClockTime duration = GST_BUFFER_DURATION(buffer);
    // A frame without times, or one that is over by then, is left as it is.
    if (begin >= segment.start || duration == GST_CLOCK_TIME_NONE ||
        segment.start - begin >= duration) {
        return buffer;
    }
    GstBuffer* const cut = gst_buffer_make_writable(buffer);
    GST_BUFFER_PTS(cut) = segment.start;
    GST_BUFFER_DURATION(cut) = duration - (segment.start - begin);
    return cut;
}

}  // namespace

void OverlayInput::watch(GstElement* overlay) {
    addProbe(overlay, "video_sink", GST_PAD_PROBE_TYPE_BUFFER, _onFrame, this);
    addProbe(overlay, "text_sink", GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, _onTextEvent, this);
}

void OverlayInput::holdFrames() {
    const std::lock_guard<std::mutex> lock(mutex);
    hasText = false;
}

void OverlayInput::waitForText() {
    std::unique_lock<std::mutex> lock(mutex);
    textFollowed.wait_for(lock, patience, [this] { return hasText; });
}

GstPadProbeReturn OverlayInput::_onFrame(GstPad* pad, GstPadProbeInfo* info, gpointer self) {
    static_cast<OverlayInput*>(self)->waitForText();
    GstEvent* const event = gst_pad_get_sticky_event(pad, GST_EVENT_SEGMENT, 0);
    if (event != nullptr) {
        const GstSegment* segment = nullptr;
        gst_event_parse_segment(event, &segment);
        info->data = cutToSegment(static_cast<GstBuffer*>(info->data), *segment);
        gst_event_unref(event);
    }
    return GST_PAD_PROBE_OK;
}

// The new segment comes behind the flush, which has thrown the old text away.
GstPadProbeReturn OverlayInput::_onTextEvent(GstPad*, GstPadProbeInfo* info, gpointer self) {
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_SEGMENT) {
        auto& input = *static_cast<OverlayInput*>(self);
        const std::lock_guard<std::mutex> lock(input.mutex);
        input.hasText = true;
        input.textFollowed.notify_all();
    }
    return GST_PAD_PROBE_OK;
}

}  // namespace tool
