// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/gst-logging.h"

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

namespace subtitles {
namespace {

using fn::logging::Category;
using fn::logging::Message;
using fn::logging::Tag;

// What GStreamer's debug log is told while one of these lives: "level category function: text".
class DebugLog {
public:
    DebugLog() {
        // In parentheses, these are functions; the macros of their names compare unlike pointers.
        (gst_debug_remove_log_function)(nullptr);
        (gst_debug_add_log_function)(&DebugLog::record, this, nullptr);
    }
    DebugLog(const DebugLog&) = delete;
    DebugLog& operator=(const DebugLog&) = delete;
    ~DebugLog() { gst_debug_remove_log_function_by_data(this); }

    std::string lines;

private:
    static void record(GstDebugCategory* category, GstDebugLevel level, const char* /*file*/,
                       const char* function, int /*line*/, GObject* /*object*/,
                       GstDebugMessage* message, void* data) {
        if (std::string(gst_debug_category_get_name(category)).rfind("subtitle", 0) == 0) {
            static_cast<DebugLog*>(data)->lines +=
                std::string(level == GST_LEVEL_ERROR ? "ERROR" : "DEBUG") + " " +
                gst_debug_category_get_name(category) + " " + function + ": " +
                gst_debug_message_get(message) + "\n";
            EXPECT_TRUE(level == GST_LEVEL_ERROR || level == GST_LEVEL_DEBUG);
        }
    }
};

int textsMade = 0;

// Counts how often its text is asked for.
class CountedMessage final : public Message {
public:
    CountedMessage(Priority importance, const char* text)
        : Message(importance, "reader.cpp", 12, "read", "void read()", nullptr, Tag()),
          content(text) {}
    fn::String text() const override {
        ++textsMade;
        return content;
    }
    CountedMessage* clone() const override { return new CountedMessage(*this); }

private:
    fn::String content;
};

// Logs one message of each priority with this threshold; gives what came out.
std::string logged(const char* name, GstDebugLevel threshold) {
    const DebugLog log;
    const Category* const category = loggingCategory(name);
    gst_debug_set_threshold_for_name(name, threshold);
    textsMade = 0;
    category->log(CountedMessage(Message::Priority::Error, "an error"));
    category->log(CountedMessage(Message::Priority::Trace, "a step"));
    gst_debug_unset_threshold_for_name(name);
    return log.lines;
}

TEST(GstLogging, PrioritiesAreLevels) {
    EXPECT_EQ(logged("subtitleReference", GST_LEVEL_DEBUG),
              "ERROR subtitleReference read: an error\n"
              "DEBUG subtitleReference read: a step\n");
    EXPECT_EQ(textsMade, 2);
}

TEST(GstLogging, NothingBelowTheThresholdIsMade) {
    EXPECT_EQ(logged("subtitle.parser", GST_LEVEL_INFO), "ERROR subtitle.parser read: an error\n");
    EXPECT_EQ(textsMade, 1);
    EXPECT_EQ(logged("subtitle.parser", GST_LEVEL_NONE), "");
    EXPECT_EQ(textsMade, 0);
}

TEST(GstLogging, PatternsReachCategories) {
    loggingCategory("subtitleReference");
    EXPECT_NE(logged("subtitle*", GST_LEVEL_DEBUG), "");
}

TEST(GstLogging, TextIsNoFormat) {
    const DebugLog log;
    const Category* const category = loggingCategory("subtitleReference");
    gst_debug_set_threshold_for_name("subtitleReference", GST_LEVEL_ERROR);
    category->log(CountedMessage(Message::Priority::Error, "100 %s %n"));
    gst_debug_unset_threshold_for_name("subtitleReference");
    EXPECT_EQ(log.lines, "ERROR subtitleReference read: 100 %s %n\n");
}

TEST(GstLogging, OneCategoryForOneName) {
    EXPECT_EQ(loggingCategory("subtitle.parser"), loggingCategory("subtitle.parser"));
    EXPECT_NE(loggingCategory("subtitle.parser"), loggingCategory("subtitleReference"));
    EXPECT_EQ(loggingCategory("subtitle.parser")->name(), "subtitle.parser");
}

TEST(GstLogging, ManyThreadsAskAndLogAtOnce) {
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 100; ++round) {
                loggingCategory("subtitle.threads")
                    ->log(CountedMessage(Message::Priority::Trace, "dropped"));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
}  // namespace subtitles
