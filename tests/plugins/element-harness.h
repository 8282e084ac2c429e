// SPDX-License-Identifier: LGPL-2.1-or-later
//
// `subtitlesrc` in a harness, which takes what comes out and hands it to tests as text.

#pragma once

#include <string>

#include <gst/check/gstharness.h>

#include "plugins/gstreamer/subtitles-src.h"

namespace test {

/// The element in a harness: what comes out, as text.
class Element {
public:
    explicit Element(const char* caps = nullptr) {
        element = GST_ELEMENT(g_object_new(SUBTITLES_TYPE_SRC, nullptr));
        gst_object_ref_sink(element);
        harness = gst_harness_new_with_element(element, nullptr, "src");
        if (caps != nullptr) {
            gst_harness_set_sink_caps_str(harness, caps);
        }
        bus = gst_bus_new();
        gst_element_set_bus(element, bus);
    }
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    ~Element() {
        gst_harness_teardown(harness);
        gst_element_set_bus(element, nullptr);
        gst_object_unref(bus);
        gst_object_unref(element);
    }

    template <class... Args>
    void set(const char* name, Args... args) {
        g_object_set(element, name, args..., nullptr);
    }

    void play() { gst_harness_play(harness); }

    /// The next buffer: "1000+1000 text" in milliseconds; empty at the end of the stream.
    std::string next() {
        GstBuffer* const buffer = pull();
        if (buffer == nullptr) {
            return "";
        }
        std::string text(gst_buffer_get_size(buffer), '\0');
        gst_buffer_extract(buffer, 0, text.data(), text.size());
        text = std::to_string(GST_BUFFER_PTS(buffer) / GST_MSECOND) + "+" +
               std::to_string(GST_BUFFER_DURATION(buffer) / GST_MSECOND) + " " + text;
        gst_buffer_unref(buffer);
        return text;
    }

    /// The next buffer, which the caller owns; null when the stream has ended, or after ten
    /// seconds without either.
    GstBuffer* pull() {
        for (int i = 0; i < 10000; ++i) {
            // The end is looked for first: a buffer that came before it is in the queue by then.
            collectEvents();
            if (GstBuffer* const buffer = gst_harness_try_pull(harness)) {
                return buffer;
            }
            if (ended) {
                return nullptr;
            }
            g_usleep(1000);
        }
        return nullptr;
    }

    /// The events up to now: gaps with their times in milliseconds, others by name.
    const std::string& events() {
        collectEvents();
        return eventTexts;
    }

    void collectEvents() {
        while (GstEvent* const event = gst_harness_try_pull_event(harness)) {
            eventTexts += eventTexts.empty() ? "" : " ";
            eventTexts += GST_EVENT_TYPE_NAME(event);
            if (GST_EVENT_TYPE(event) == GST_EVENT_GAP) {
                GstClockTime start = 0;
                GstClockTime duration = 0;
                gst_event_parse_gap(event, &start, &duration);
                eventTexts += "(" + std::to_string(start / GST_MSECOND) + "+" +
                              std::to_string(duration / GST_MSECOND) + ")";
            }
            // A flush takes an end back.
            ended = GST_EVENT_TYPE(event) == GST_EVENT_EOS ||
                    (ended && GST_EVENT_TYPE(event) != GST_EVENT_FLUSH_STOP);
            gst_event_unref(event);
        }
    }

    /// Everything up to the end of the stream: "1000+1000 4000+2000", the times of the cues.
    std::string times() {
        std::string all;
        for (std::string cue = next(); !cue.empty(); cue = next()) {
            all += (all.empty() ? "" : " ") + cue.substr(0, cue.find(' '));
        }
        return all;
    }

    /// A flushing seek, when all has come that was on its way.
    bool seek(double rate, GstClockTime from, GstClockTime to = GST_CLOCK_TIME_NONE) {
        times();
        eventTexts.clear();
        const auto flags = static_cast<GstSeekFlags>(static_cast<int>(GST_SEEK_FLAG_FLUSH) |
                                                     static_cast<int>(GST_SEEK_FLAG_ACCURATE));
        return gst_harness_push_upstream_event(
                   harness,
                   gst_event_new_seek(
                       rate, GST_FORMAT_TIME, flags, GST_SEEK_TYPE_SET, static_cast<gint64>(from),
                       to == GST_CLOCK_TIME_NONE ? GST_SEEK_TYPE_NONE : GST_SEEK_TYPE_SET,
                       static_cast<gint64>(to))) != FALSE;
    }

    /// The next buffer behind ends of the stream.
    std::string nextAfterEnd() {
        for (int i = 0; i < 100; ++i) {
            std::string text = next();
            if (!text.empty()) {
                return text;
            }
            ended = false;
            g_usleep(10000);
        }
        return "";
    }

    /// The text of the next error on the bus; empty where none comes within this many seconds.
    std::string error(unsigned seconds = 5) {
        GstMessage* const message =
            gst_bus_timed_pop_filtered(bus, seconds * GST_SECOND, GST_MESSAGE_ERROR);
        if (message == nullptr) {
            return "";
        }
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const std::string text = error->message;
        g_error_free(error);
        gst_message_unref(message);
        return text;
    }

    GstElement* element;
    GstHarness* harness;
    GstBus* bus;
    std::string eventTexts;
    bool ended = false;
};

/// The stream-start event that came to a pad, with its stream.
class StreamStart {
public:
    explicit StreamStart(GstPad* pad)
        : event(gst_pad_get_sticky_event(pad, GST_EVENT_STREAM_START, 0)) {
        gst_event_parse_stream(event, &stream);
    }
    StreamStart(const StreamStart&) = delete;
    StreamStart& operator=(const StreamStart&) = delete;
    ~StreamStart() {
        gst_object_unref(stream);
        gst_event_unref(event);
    }

    std::string id() const {
        const gchar* text = nullptr;
        gst_event_parse_stream_start(event, &text);
        return text;
    }
    GstStreamType type() const { return gst_stream_get_stream_type(stream); }
    GstStreamFlags flags() const {
        GstStreamFlags flags = GST_STREAM_FLAG_NONE;
        gst_event_parse_stream_flags(event, &flags);
        return flags;
    }
    /// "title=Korean" and so on, in the order of their names.
    std::string tags() const {
        std::string text;
        GstTagList* const tags = gst_stream_get_tags(stream);
        for (const char* const name : {"language-code", "language-name", "title"}) {
            gchar* value = nullptr;
            if (gst_tag_list_get_string(tags, name, &value) != FALSE) {
                text += (text.empty() ? "" : " ") + std::string(name) + "=" + value;
            }
            g_free(value);
        }
        gst_tag_list_unref(tags);
        return text;
    }

private:
    GstEvent* event;
    GstStream* stream = nullptr;
};

}  // namespace test
