// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Where the element is in its file: seeks, segments, queries.

#include <array>
#include <cstdio>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/plugins/element-harness.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::Element;

constexpr char srt[] =
    "1\n00:00:01,000 --> 00:00:02,000\n<b>One</b> & <i>two</i>\n\n"
    "2\n00:00:04,000 --> 00:00:06,000\nThree\n\n"
    "3\n00:00:05,000 --> 00:00:07,000\nFour\n\n";

class SubtitlesSrcSeek : public testing::Test {
protected:
    test::TemporaryFolder folder;
    std::string path = folder.writeFile("a.srt", srt);
};

TEST_F(SubtitlesSrcSeek, CueThatIsOnTheScreenIsSentAgain) {
    Element element;
    element.set("location", path.c_str());
    element.play();
    ASSERT_TRUE(element.seek(1, 5500 * GST_MSECOND));
    EXPECT_EQ(element.times(), "4000+2000 5000+2000");
    EXPECT_EQ(element.events(), "flush-start flush-stop segment eos");
}

TEST_F(SubtitlesSrcSeek, GapReachesToTheNextCue) {
    Element element;
    element.set("location", path.c_str());
    element.play();
    ASSERT_TRUE(element.seek(1, 2500 * GST_MSECOND));
    EXPECT_EQ(element.times(), "4000+2000 5000+2000");
    EXPECT_EQ(element.events(), "flush-start flush-stop segment gap(2500+1500) eos");
}

TEST_F(SubtitlesSrcSeek, BehindTheLastCueIsASegmentWithoutCues) {
    Element element;
    element.set("location", path.c_str());
    element.play();
    ASSERT_TRUE(element.seek(1, 100 * GST_SECOND));
    EXPECT_EQ(element.times(), "");
    EXPECT_EQ(element.events(), "flush-start flush-stop segment eos");
}

TEST_F(SubtitlesSrcSeek, SegmentHasEveryCueThatIsShownInIt) {
    Element element;
    element.set("location", path.c_str());
    element.play();
    // The first of the two that overlap lasts beyond the end.
    ASSERT_TRUE(element.seek(1, 0, 5500 * GST_MSECOND));
    EXPECT_EQ(element.times(), "1000+1000 4000+2000 5000+2000");
    ASSERT_TRUE(element.seek(1, 0, 5000 * GST_MSECOND));
    EXPECT_EQ(element.times(), "1000+1000 4000+2000");
}

TEST_F(SubtitlesSrcSeek, PlaysBackwards) {
    Element element;
    element.set("location", path.c_str());
    element.play();
    ASSERT_TRUE(element.seek(-1, 0, 7 * GST_SECOND));
    EXPECT_EQ(element.times(), "5000+2000 4000+2000 1000+1000");
    EXPECT_EQ(element.events(), "flush-start flush-stop segment gap(2000+2000) eos");
    ASSERT_TRUE(element.seek(-1, 1500 * GST_MSECOND, 3500 * GST_MSECOND));
    EXPECT_EQ(element.times(), "1000+1000");
    EXPECT_EQ(element.events(), "flush-start flush-stop segment gap(2000+1500) eos");
}

TEST_F(SubtitlesSrcSeek, BeforeTheFileIsReadItIsKept) {
    Element element;
    element.set("location", path.c_str());
    gst_element_set_state(element.element, GST_STATE_READY);
    ASSERT_NE(gst_element_seek_simple(element.element, GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH,
                                      5500 * GST_MSECOND),
              FALSE);
    element.play();
    EXPECT_EQ(element.times(), "4000+2000 5000+2000");
}

TEST_F(SubtitlesSrcSeek, AnswersWhereItIsAndWhereItCanGo) {
    Element element;
    element.set("location", path.c_str());
    element.play();
    element.times();
    gint64 position = -1;
    EXPECT_TRUE(gst_element_query_position(element.element, GST_FORMAT_TIME, &position));
    EXPECT_EQ(position, 7 * static_cast<gint64>(GST_SECOND));
    ASSERT_TRUE(element.seek(1, 0, 2 * GST_SECOND));
    element.times();
    EXPECT_TRUE(gst_element_query_position(element.element, GST_FORMAT_TIME, &position));
    EXPECT_EQ(position, 2 * static_cast<gint64>(GST_SECOND));

    GstQuery* const query = gst_query_new_seeking(GST_FORMAT_TIME);
    EXPECT_TRUE(gst_element_query(element.element, query));
    gboolean seekable = FALSE;
    gint64 end = -1;
    gst_query_parse_seeking(query, nullptr, &seekable, nullptr, &end);
    gst_query_unref(query);
    EXPECT_TRUE(seekable);
    EXPECT_EQ(end, 7 * static_cast<gint64>(GST_SECOND));
}

/// One cue a second, each of a length of its own, up to four seconds.
constexpr unsigned cueTotal = 5000;

unsigned lengthOf(unsigned cue) {
    return 1000 + cue * 7919 % 3000;
}

std::string timeText(unsigned milliseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02u:%02u:%02u,%03u", milliseconds / 3600000,
                  milliseconds / 60000 % 60, milliseconds / 1000 % 60, milliseconds % 1000);
    return text.data();
}

std::string manyCues() {
    std::string text;
    for (unsigned cue = 0; cue < cueTotal; ++cue) {
        text += std::to_string(cue + 1) + "\n" + timeText(cue * 1000) + " --> " +
                timeText(cue * 1000 + lengthOf(cue)) + "\nText\n\n";
    }
    return text;
}

TEST_F(SubtitlesSrcSeek, AThousandSeeksGiveWhatIsShownThere) {
    Element element;
    element.set("location", folder.writeFile("many.srt", manyCues()).c_str());
    element.play();
    std::mt19937 random(5);
    for (int round = 0; round < 1000; ++round) {
        const auto from = static_cast<unsigned>(random() % (cueTotal * 1000));
        const auto to = from + 1 + static_cast<unsigned>(random() % 9000);
        const bool backward = round % 2 == 1;
        ASSERT_TRUE(element.seek(backward ? -1 : 1, from * GST_MSECOND, to * GST_MSECOND));
        std::string expected;
        const unsigned first = from / 1000 < 4 ? 0 : from / 1000 - 4;
        for (unsigned cue = first; cue < cueTotal && cue * 1000 < to; ++cue) {
            if (cue * 1000 + lengthOf(cue) > from) {
                const std::string times =
                    std::to_string(cue * 1000) + "+" + std::to_string(lengthOf(cue));
                const std::string space = expected.empty() ? "" : " ";
                expected = backward ? times + space + expected : expected + space + times;
            }
        }
        ASSERT_EQ(element.times(), expected) << from << " to " << to;
    }
}

}  // namespace
