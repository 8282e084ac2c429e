// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/subtitles-src.h"

#include <random>
#include <string>

#include <gst/check/gstharness.h>
#include <gtest/gtest.h>

#include "tests/support/temporary-folder.h"

namespace {

constexpr char srt[] =
    "1\n00:00:01,000 --> 00:00:02,000\n<b>One</b> & <i>two</i>\n\n"
    "2\n00:00:04,000 --> 00:00:06,000\nThree\n\n"
    "3\n00:00:05,000 --> 00:00:07,000\nFour\n\n";

constexpr char ass[] =
    "[Script Info]\nTitle: x\n\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,{\\i1}Hi{\\i0} there\n";

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

    bool seek(double rate, GstClockTime from, GstClockTime to = GST_CLOCK_TIME_NONE) {
        return gst_harness_push_upstream_event(
                   harness, gst_event_new_seek(
                                rate, GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, GST_SEEK_TYPE_SET,
                                static_cast<gint64>(from),
                                to == GST_CLOCK_TIME_NONE ? GST_SEEK_TYPE_NONE : GST_SEEK_TYPE_SET,
                                static_cast<gint64>(to))) != FALSE;
    }

    /// The text of the first error on the bus.
    std::string error() {
        GstMessage* const message =
            gst_bus_timed_pop_filtered(bus, 5 * GST_SECOND, GST_MESSAGE_ERROR);
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

class SubtitlesSrcTest : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& text) {
        return folder.writeFile(name, text);
    }

    test::TemporaryFolder folder;
};

TEST_F(SubtitlesSrcTest, GivesPangoMarkupByItself) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.next(),
              "1000+1000 <span weight=\"700\">One</span> &amp; <span style=\"italic\">two</span>");
    EXPECT_EQ(element.next(), "4000+2000 Three");
    EXPECT_EQ(element.next(), "5000+2000 Four");
    EXPECT_EQ(element.next(), "");
}

TEST_F(SubtitlesSrcTest, GivesPlainTextWhereThatIsWanted) {
    Element element("text/x-raw, format=utf8");
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 One & two");
}

TEST_F(SubtitlesSrcTest, GivesASSWithTheScriptsHead) {
    Element element("application/x-ass");
    element.set("location", write("a.ass", ass).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 0, 0,Default,,0,0,0,,{\\i1}Hi{\\i0} there");
    GstCaps* const caps = gst_pad_get_current_caps(element.harness->sinkpad);
    const GValue* const head =
        gst_structure_get_value(gst_caps_get_structure(caps, 0), "codec_data");
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(gst_buffer_memcmp(gst_value_get_buffer(head), 0, "[Script Info]\nTitle: x\n\n", 24),
              0);
    gst_caps_unref(caps);
}

TEST_F(SubtitlesSrcTest, GivesASSAsMarkupToo) {
    Element element("text/x-raw, format=pango-markup");
    element.set("location", write("a.ass", ass).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 <span style=\"italic\">Hi</span> there");
}

TEST_F(SubtitlesSrcTest, GivesSRTAsASSToo) {
    Element element("application/x-ass");
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 0,0,Default,,0,0,0,,{\\b900}One{\\b0} & {\\i1}two");
}

TEST_F(SubtitlesSrcTest, TellsGapsBetweenCues) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    while (!element.next().empty()) {
    }
    EXPECT_EQ(element.events(), "stream-start caps segment tag gap(0+1000) gap(2000+2000) eos");
}

TEST_F(SubtitlesSrcTest, AnswersDurationWhenItHasReadTheFile) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    element.next();
    gint64 duration = 0;
    EXPECT_TRUE(gst_element_query_duration(element.element, GST_FORMAT_TIME, &duration));
    EXPECT_EQ(duration, 7 * static_cast<gint64>(GST_SECOND));
    EXPECT_FALSE(gst_element_query_duration(element.element, GST_FORMAT_BYTES, &duration));
}

TEST_F(SubtitlesSrcTest, SeekSendsTheCueThatIsOnTheScreen) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    element.next();
    ASSERT_TRUE(element.seek(1.0, 5500 * GST_MSECOND));
    std::string cue = element.next();
    // What was in the queue ahead of the flush may still come out of the harness.
    while (cue.rfind("4000", 0) != 0) {
        ASSERT_NE(cue, "");
        cue = element.next();
    }
    EXPECT_EQ(cue, "4000+2000 Three");
    EXPECT_EQ(element.next(), "5000+2000 Four");
}

TEST_F(SubtitlesSrcTest, PlaysBackwards) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    gst_element_set_state(element.element, GST_STATE_PAUSED);
    ASSERT_TRUE(element.seek(-1.0, 0, 4500 * GST_MSECOND));
    element.play();
    std::string all;
    for (std::string cue = element.next(); !cue.empty(); cue = element.next()) {
        all += "[" + cue.substr(0, cue.find(' ')) + "]";
    }
    EXPECT_NE(all.find("[4000+2000][1000+1000]"), std::string::npos) << all;
}

TEST_F(SubtitlesSrcTest, MissingFileIsAnErrorThatNamesIt) {
    Element element;
    element.set("location", "/nowhere/a.srt");
    element.play();
    EXPECT_EQ(element.error(), "Cannot open '/nowhere/a.srt': No such file or directory");
}

TEST_F(SubtitlesSrcTest, FileWithoutSubtitlesIsAnError) {
    Element element;
    const std::string path = write("a.srt", "nothing\n");
    element.set("location", path.c_str());
    element.play();
    EXPECT_EQ(element.error(), "'" + path + "' holds no subtitles");
}

TEST_F(SubtitlesSrcTest, UnknownEncodingIsAnError) {
    Element element;
    element.set("location", write("a.srt", srt).c_str(), "subtitle-encoding", "no-such-encoding");
    element.play();
    EXPECT_NE(element.error().find("no-such-encoding"), std::string::npos);
}

TEST_F(SubtitlesSrcTest, FramesScaleWithoutDrift) {
    Element element("text/x-raw, format=utf8");
    // Three hours at 24000/1001 frames a second.
    element.set("location", write("a.sub", "{0}{24}a\n{258942}{258966}b\n").c_str(), "video-fps",
                24000, 1001);
    element.play();
    EXPECT_EQ(element.next(), "0+1001 a");
    GstBuffer* const buffer = element.pull();
    ASSERT_NE(buffer, nullptr);
    // 258942 * 1001 / 24000 seconds, cut to whole nanoseconds.
    EXPECT_EQ(GST_BUFFER_PTS(buffer), 10800039250000U);
    gst_buffer_unref(buffer);
}

TEST_F(SubtitlesSrcTest, TellsWhatItDetected) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    element.next();
    gchar* format = nullptr;
    gchar* encoding = nullptr;
    guint cues = 0;
    g_object_get(element.element, "detected-format", &format, "detected-encoding", &encoding,
                 "cue-count", &cues, nullptr);
    EXPECT_STREQ(format, "application/x-srt");
    EXPECT_STREQ(encoding, "UTF-8");
    EXPECT_EQ(cues, 3U);
    g_free(format);
    g_free(encoding);
}

TEST_F(SubtitlesSrcTest, AThousandStateChangesInARow) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    for (int i = 0; i < 1000; ++i) {
        const GstState state = i % 2 == 0 ? GST_STATE_PLAYING : GST_STATE_READY;
        ASSERT_NE(gst_element_set_state(element.element, state), GST_STATE_CHANGE_FAILURE);
    }
}

}  // namespace
