// SPDX-License-Identifier: LGPL-2.1-or-later
//
// GStreamer's own book of what is alive: buffers, caps, events and pads that a leak checker takes
// for used, as some list still has them.

#include <cstdlib>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "tests/plugins/element-harness.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::Element;

// It has to be told before GStreamer is ready, so before `main`.
const bool isTold = setenv("GST_TRACERS", "leaks", 1) == 0;

/// GStreamer's book; null where this GStreamer has none.
GstTracer* findBook() {
    GList* const tracers = gst_tracing_get_active_tracers();
    GstTracer* const book =
        tracers == nullptr ? nullptr : GST_TRACER(gst_object_ref(tracers->data));
    g_list_free_full(tracers, gst_object_unref);
    return book;
}

/// How many objects of each type were made and not given back in a time.
class Balance {
public:
    explicit Balance(GstTracer* book) : ledger(book) {
        g_signal_emit_by_name(ledger, "activity-start-tracking");
    }
    Balance(const Balance&) = delete;
    Balance& operator=(const Balance&) = delete;
    ~Balance() { g_signal_emit_by_name(ledger, "activity-stop-tracking"); }

    /// Up to now: "GstBuffer 1 GstCaps -2"; empty where all is even. The book begins anew.
    std::string close() {
        GstStructure* checkpoint = nullptr;
        g_signal_emit_by_name(ledger, "activity-get-checkpoint", &checkpoint);
        std::map<std::string, int> counts;
        add(counts, gst_structure_get_value(checkpoint, "objects-created-list"), 1);
        add(counts, gst_structure_get_value(checkpoint, "objects-removed-list"), -1);
        gst_structure_free(checkpoint);
        std::string text;
        for (const auto& [type, count] : counts) {
            if (count != 0) {
                text += (text.empty() ? "" : " ") + type + " " + std::to_string(count);
            }
        }
        return text;
    }

private:
    static void add(std::map<std::string, int>& counts, const GValue* list, int sign) {
        for (guint i = 0; i < gst_value_list_get_size(list); ++i) {
            const GstStructure* const object =
                gst_value_get_structure(gst_value_list_get_value(list, i));
            counts[gst_structure_get_string(object, "type-name")] += sign;
        }
    }

    GstTracer* ledger;
};

class Leaks : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(isTold);
        book = findBook();
        if (book == nullptr) {
            GTEST_SKIP() << "GStreamer has no leaks tracer";
        }
    }
    void TearDown() override { gst_clear_object(&book); }

    /// Does it once for what is made once and kept, and then all has to be given back.
    template <class Action>
    void expectNoneLeft(Action action) {
        // A streaming thread gives its task back a moment after the element is gone.
        action();
        gst_task_cleanup_all();
        Balance balance(book);
        for (int i = 0; i < 3; ++i) {
            action();
        }
        gst_task_cleanup_all();
        EXPECT_EQ(balance.close(), "");
    }

    GstTracer* book = nullptr;
    test::TemporaryFolder folder;
    std::string srt = folder.writeFile("a.srt",
                                       "1\n00:00:01,000 --> 00:00:02,000\nOne\n\n"
                                       "2\n00:00:04,000 --> 00:00:06,000\nTwo\n");
};

TEST_F(Leaks, AreSeen) {
    Balance balance(book);
    GstBuffer* const buffer = gst_buffer_new();
    EXPECT_EQ(balance.close(), "GstBuffer 1");
    gst_buffer_unref(buffer);
    EXPECT_EQ(balance.close(), "GstBuffer -1");
}

TEST_F(Leaks, NotOfAFileThatIsReadToItsEnd) {
    for (const char* const caps :
         {"text/x-raw, format=pango-markup", "text/x-raw, format=utf8", "application/x-ass"}) {
        expectNoneLeft([&] {
            Element element(caps);
            element.set("location", srt.c_str());
            element.play();
            EXPECT_EQ(element.times(), "1000+1000 4000+2000");
        });
    }
}

TEST_F(Leaks, NotOfSeeks) {
    expectNoneLeft([&] {
        Element element;
        element.set("location", srt.c_str());
        element.play();
        for (const double rate : {1.0, -1.0}) {
            EXPECT_TRUE(element.seek(rate, 1500 * GST_MSECOND, 5 * GST_SECOND));
            EXPECT_TRUE(element.seek(rate, 100 * GST_SECOND, 101 * GST_SECOND));
        }
        element.times();
    });
}

TEST_F(Leaks, NotOfAStreamThatIsStopped) {
    expectNoneLeft([&] {
        Element element;
        element.set("location", srt.c_str());
        for (int i = 0; i < 20; ++i) {
            gst_element_set_state(element.element, GST_STATE_PLAYING);
            gst_element_set_state(element.element, GST_STATE_READY);
        }
    });
}

TEST_F(Leaks, NotOfErrors) {
    expectNoneLeft([&] {
        Element element;
        element.set("location", "/nowhere/a.srt");
        element.play();
        EXPECT_NE(element.error(), "");
    });
}

}  // namespace
