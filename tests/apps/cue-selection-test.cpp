// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cue-selection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/attributed-text.h"
#include "subtitles/subtitle-data.h"

namespace {

using subtitles::SubtitleData;
using tool::CueList;
using tool::Window;

constexpr std::uint64_t none = GST_CLOCK_TIME_NONE;
constexpr std::uint64_t second = GST_SECOND;
constexpr std::uint64_t millisecond = GST_MSECOND;

struct Entry {
    std::uint64_t start;
    std::uint64_t duration;
    const char* text = "x";
};

fn::AutoPtr<SubtitleData> dataOf(const std::vector<Entry>& entries,
                                 SubtitleData::TimestampUnit unit) {
    fn::AutoPtr<SubtitleData> data(
        new SubtitleData("application/x-attributed-text", fn::AutoPtr<GstBuffer>(), unit));
    for (const Entry& entry : entries) {
        data->buffers.push_back(
            attributedTextToBuffer(subtitles::plainToAttributedText(entry.text)));
        GST_BUFFER_PTS(data->buffers.back().get()) = entry.start;
        GST_BUFFER_DURATION(data->buffers.back().get()) = entry.duration;
    }
    return data;
}

CueList listOf(const std::vector<Entry>& entries) {
    return CueList(dataOf(entries, SubtitleData::NANOSECONDS), std::nullopt);
}

CueList framesOf(const std::vector<Entry>& entries,
                 const std::optional<tool::FrameRate>& rate = std::nullopt) {
    return CueList(dataOf(entries, SubtitleData::FRAMES), rate);
}

/// "1000-2500 3000-4000", in milliseconds.
std::string selected(const CueList& list, const Window& window = {},
                     std::uint64_t step = millisecond) {
    std::string result;
    for (const tool::TimedCue& cue : selectCues(list, window, step)) {
        result += (result.empty() ? "" : " ") + std::to_string(cue.start / millisecond) + "-" +
                  std::to_string(cue.end / millisecond);
    }
    return result;
}

std::string described(const CueList& list) {
    std::string result = list.unit() == tool::TimeUnit::Frames ? "frames" : "nanoseconds";
    for (const tool::Cue& cue : list.cues()) {
        result += " " + std::to_string(cue.start) + "-" + (cue.end ? std::to_string(*cue.end) : "");
    }
    return result;
}

TEST(CueList, LeavesOutCuesWithoutAStart) {
    EXPECT_EQ(described(listOf({{none, second}, {second, second}})),
              "nanoseconds 1000000000-2000000000");
}

TEST(CueList, EndsAtTheLargestTime) {
    EXPECT_EQ(described(listOf({{none - 2, 100}})),
              "nanoseconds 18446744073709551613-18446744073709551615");
}

TEST(CueList, CountsFramesWhereNoRateIsKnown) {
    EXPECT_EQ(described(framesOf({{10, 10}, {30, 0}})), "frames 10-20 30-");
}

TEST(CueList, TakesTheRateOfTheFirstEntry) {
    EXPECT_EQ(described(framesOf({{1, 0, "25"}, {10, 10}})), "nanoseconds 400000000-800000000");
    EXPECT_EQ(described(framesOf({{1, 0, " 25.000\n"}, {25, 0}})), "nanoseconds 1000000000-");
}

// The loader sorts by frame, so that a cue of frame 0 comes first whatever the file's order is.
TEST(CueList, TakesTheRateBehindCuesOfFrameZero) {
    EXPECT_EQ(described(framesOf({{0, 5, "x"}, {0, 0, "y"}, {1, 0, "25"}, {10, 10}})),
              "nanoseconds 0-200000000 0- 400000000-800000000");
    EXPECT_EQ(described(framesOf({{0, 5, "25"}})), "frames 0-5");
}

TEST(CueList, LeavesTheRatesEntryOutWhereItIsToldTheRate) {
    EXPECT_EQ(described(framesOf({{1, 0, "25"}, {10, 10}}, tool::FrameRate{50, 1})),
              "nanoseconds 200000000-400000000");
    EXPECT_EQ(described(framesOf({{1, 0, "0"}, {10, 10}}, tool::FrameRate{50, 1})),
              "nanoseconds 200000000-400000000");
}

TEST(CueList, TakesNothingElseForARate) {
    for (const char* text : {"", "x", "25 fps", "-25", "+25", "1e2", "24000/1001", ".", "1.", ".5",
                             "1.2.3", "inf", "nan"}) {
        EXPECT_EQ(described(framesOf({{1, 0, text}, {10, 10}})), "frames 1- 10-20") << text;
    }
    EXPECT_EQ(described(framesOf({{0, 0, "25"}})), "frames 0-");
    EXPECT_EQ(described(framesOf({{1, 1, "25"}})), "frames 1-2");
    EXPECT_EQ(described(framesOf({{1, 0, "x"}, {1, 0, "25"}})), "frames 1- 1-");
    EXPECT_EQ(described(framesOf({})), "frames");
}

TEST(CueList, RefusesARateThatNoFilmHas) {
    for (const char* text : {"0", "0.0", "0.0009", "1001", "1000.1", "9999999999999999999999"}) {
        const CueList list = framesOf({{1, 0, text}, {10, 10}});
        EXPECT_EQ(described(list), "frames 10-20");
        EXPECT_EQ(list.refusedRate(), text);
    }
    EXPECT_EQ(framesOf({{1, 0, "1000"}}).refusedRate(), "");
    EXPECT_EQ(framesOf({{1, 0, "0.001"}}).refusedRate(), "");
}

TEST(CueList, GivesTextWithoutNulsAndCarriageReturns) {
    subtitles::AttributedText text = subtitles::plainToAttributedText("a\r\nb\rc\r");
    text.push_back({subtitles::TextAttributes(), fn::String("\0d\xFF\0", 4)});
    fn::AutoPtr<SubtitleData> data = dataOf({}, SubtitleData::NANOSECONDS);
    data->buffers.push_back(attributedTextToBuffer(text));
    GST_BUFFER_PTS(data->buffers.back().get()) = 0;
    GST_BUFFER_DURATION(data->buffers.back().get()) = second;
    const CueList list(data, std::nullopt);
    const subtitles::AttributedText cleaned = list.text(list.cues().front());
    ASSERT_EQ(cleaned.size(), 2U);
    EXPECT_EQ(cleaned[0].text, "a\nb\nc\n");
    EXPECT_EQ(cleaned[1].text, "d\uFFFD");
}

TEST(SelectCues, TakesAllWithoutAWindow) {
    EXPECT_EQ(selected(listOf({{0, second}, {second, 1500 * millisecond}})), "0-1000 1000-2500");
    EXPECT_EQ(selected(listOf({})), "");
}

TEST(SelectCues, TakesWhatIsOnTheScreenInTheWindow) {
    const CueList list = listOf({{0, second}, {second, second}, {3 * second, second}});
    EXPECT_EQ(selected(list, {second, 3 * second, 0}), "1000-2000");
    EXPECT_EQ(selected(list, {second - 1, 3 * second + 1, 0}), "0-1000 1000-2000 3000-4000");
    EXPECT_EQ(selected(list, {2 * second, 3 * second, 0}), "");
}

TEST(SelectCues, ShiftsWhatIsLeft) {
    const CueList list = listOf({{second, second}, {3 * second, second}});
    const auto shift = static_cast<std::int64_t>(second);
    EXPECT_EQ(selected(list, {0, none, shift}), "2000-3000 4000-5000");
    EXPECT_EQ(selected(list, {2 * second, none, -shift}), "2000-3000");
}

TEST(SelectCues, CutsOffWhatComesBeforeTheFilm) {
    const CueList list = listOf({{second, second}, {3 * second, second}});
    EXPECT_EQ(selected(list, {0, none, -1500000000}), "0-500 1500-2500");
    EXPECT_EQ(selected(list, {0, none, -2000000000}), "1000-2000");
    EXPECT_EQ(selected(list, {0, none, -9000000000}), "");
}

TEST(SelectCues, StopsAtTheLargestTime) {
    const CueList list = listOf({{none - 3, 2}});
    ASSERT_EQ(selectCues(list, {0, none, 9000000000}, millisecond).size(), 1U);
    const tool::TimedCue cue = selectCues(list, {0, none, 9000000000}, millisecond).front();
    EXPECT_EQ(cue.end - cue.start, millisecond);
}

TEST(SelectCues, RoundsToTheNearestStep) {
    const CueList list = listOf({{4999999, 5000000}, {second + 5000000, second}});
    EXPECT_EQ(selected(list, {}, 10 * millisecond), "0-10 1010-2010");
}

TEST(SelectCues, LetsEveryCueLastAStep) {
    EXPECT_EQ(selected(listOf({{second, 0}, {2 * second, 1}})), "1000-1001 2000-2001");
}

TEST(SelectCues, EndsAnOpenCueWithTheNextOne) {
    CueList list = framesOf({{100, 0}, {100, 0}, {150, 0}, {200, 25}, {800, 0}, {1000, 0}});
    list.convertFrames({25, 1});
    EXPECT_EQ(selected(list), "4000-6000 4000-6000 6000-8000 8000-9000 32000-37000 40000-45000");
}

}  // namespace
