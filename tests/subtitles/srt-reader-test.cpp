// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/srt-reader.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "foundation/auto-ptr.h"
#include "foundation/exception.h"
#include "foundation/stream-reader.h"
#include "foundation/stream.h"
#include "foundation/string.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/byte-machine.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/srt-time-line.h"
#include "subtitles/subtitle-data.h"
#include "subtitles/subtitle-parser-table.h"
#include "subtitles/subtitle-parser.h"

#include "tests/support/describe.h"
#include "tests/support/encode.h"

namespace {

using subtitles::describe;
using subtitles::parseSRT;
using subtitles::SubtitleData;

const std::string head = "application/x-attributed-text ns";

struct Case {
    const char* name;
    const char* text;
    const char* expected;  // Each cue as start+duration [runs], in nanoseconds.
};

constexpr Case cases[] = {
    {"OneCue", "1\n00:00:01,000 --> 00:00:02,000\nHello\n\n",
     R"( | 1000000000+1000000000 [Hello\0])"},
    {"EmptyFile", "", ""},
    {"FileWithoutCues", "Hello\n\nWorld\n1\n2\n", ""},
    {"EndEqualToStart", "1\n00:00:02,000 --> 00:00:02,000\nlost\nlost, too\n\n", ""},
    {"EndBeforeStart", "1\n00:00:03,000 --> 00:00:02,000\nlost\n\n", ""},
    {"ACueBehindADroppedOne", "0:0:3,0 --> 0:0:2,0\nlost\n0:0:4,0 --> 0:0:5,0\nkept\n",
     R"( | 4000000000+1000000000 [kept\0])"},
    {"FractionsAreMilliseconds", "00:00:01.5 --> 00:00:02,50\nx\n",
     R"( | 1005000000+1045000000 [x\0])"},
    {"TimeLineThenABlankLine", "0:0:1,0 --> 0:0:2,0\n\nno text\n",
     R"( | 1000000000+1000000000 [\0])"},
    {"TimeLineAtTheEnd", "0:0:1,0 --> 0:0:2,0", R"( | 1000000000+1000000000 [\0])"},
    {"LastCueWithoutABlankLine", "0:0:1,0 --> 0:0:2,0\none\ntwo",
     R"( | 1000000000+1000000000 [one\ntwo\0])"},
    {"LinesAreTrimmed", "0:0:1,0 --> 0:0:2,0\n \tone \r\n\xE3\x80\x80two\xE2\x80\x83\n",
     R"( | 1000000000+1000000000 [one\ntwo\0])"},
    {"ALineOfWhiteSpaceEndsTheCue", "0:0:1,0 --> 0:0:2,0\none\n \t\xE3\x80\x80\ntwo\n",
     R"( | 1000000000+1000000000 [one\0])"},
    {"ANoBreakSpaceIsALine", "0:0:1,0 --> 0:0:2,0\none\n\xC2\xA0\ntwo\n",
     " | 1000000000+1000000000 [one\\n\xC2\xA0\\ntwo\\0]"},
    {"CarriageReturnsGoWithTheLine", "1\r\n0:0:1,0 --> 0:0:2,0\r\none\r\ntwo\r\n\r\nlost\r\n",
     R"( | 1000000000+1000000000 [one\ntwo\0])"},
    {"ATimeLineInsideACueIsText", "0:0:1,0 --> 0:0:2,0\none\n2\n0:0:3,0 --> 0:0:4,0\ntwo\n",
     R"( | 1000000000+1000000000 [one\n2\n0:0:3,0 --> 0:0:4,0\ntwo\0])"},
    {"ByteOrderMarkBeforeTheCounter",
     "\xEF\xBB\xBF"
     "1\n0:0:1,0 --> 0:0:2,0\nx\n",
     R"( | 1000000000+1000000000 [x\0])"},
    {"ByteOrderMarkBeforeTheTimes",
     "\xEF\xBB\xBF"
     "0:0:1,0 --> 0:0:2,0\nx\n",
     R"( | 1000000000+1000000000 [x\0])"},
    {"PositionsBehindTheTimes", "0:0:1,0 --> 0:0:2,0  X1:40 X2:600 Y1:20\nx\n",
     R"( | 1000000000+1000000000 [x\0])"},
    {"FileOrderIsKept", "0:0:5,0 --> 0:0:6,0\nlate\n\n0:0:1,0 --> 0:0:2,0\nearly\n",
     R"( | 5000000000+1000000000 [late\0] | 1000000000+1000000000 [early\0])"},
    {"MarkupGoesOverLines", "0:0:1,0 --> 0:0:2,0\n<i>one\ntwo</i> three\n",
     R"( | 1000000000+1000000000 [style=2: one\ntwo][ three\0])"},
    {"StylesEndWithTheirCue", "0:0:1,0 --> 0:0:2,0\n<i>one\n\n0:0:3,0 --> 0:0:4,0\ntwo\n",
     R"( | 1000000000+1000000000 [style=2: one\0] | 3000000000+1000000000 [two\0])"},
    {"ACueWithoutRunsIsDropped",
     "0:0:1,0 --> 0:0:2,0\n{x\n\n0:0:3,0 --> 0:0:4,0\n<\nx>y\n\n0:0:5,0 --> 0:0:6,0\nkept\n",
     R"( | 5000000000+1000000000 [kept\0])"},
    {"AMalformedLineShowsAGreater", "0:0:1,0 --> 0:0:2,0\n\xFF\xFE\n",
     R"( | 1000000000+1000000000 [>\0])"},
    {"AMalformedLineAmongOthers", "0:0:1,0 --> 0:0:2,0\none\n caf\xE9 \ntwo\n",
     R"( | 1000000000+1000000000 [one\n>\ntwo\0])"},
    {"AMalformedBlankIsNoBlankLine", "0:0:1,0 --> 0:0:2,0\none\n \xC2 \ntwo\n",
     R"( | 1000000000+1000000000 [one\n>\ntwo\0])"},
    {"AMalformedTimeLineInsideACueIsALine", "0:0:1,0 --> 0:0:2,0\n0:0:3,0 --> \xFF\n",
     R"( | 1000000000+1000000000 [>\0])"},
    {"MalformedRubbishBetweenCues", "\xFF\xFE\n\n0:0:1,0 --> 0:0:2,0\nx\n\n\x80 0:0:3,0\n",
     R"( | 1000000000+1000000000 [x\0])"},
};

class Srt : public testing::TestWithParam<Case> {};

TEST_P(Srt, IsRead) {
    EXPECT_EQ(describe(*parseSRT(GetParam().text)), head + GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Srt, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(SrtData, IsAStreamOfAttributedTextInNanoseconds) {
    const fn::AutoPtr<SubtitleData> data = parseSRT("");
    ASSERT_TRUE(data);
    EXPECT_EQ(data->mimeType, "application/x-attributed-text");
    EXPECT_FALSE(data->header);
    EXPECT_EQ(data->timestampUnit, SubtitleData::NANOSECONDS);
    EXPECT_TRUE(data->buffers.empty());
}

TEST(SrtData, BuffersHaveNoOtherTimes) {
    const fn::AutoPtr<SubtitleData> data = parseSRT("0:0:1,0 --> 0:0:2,0\nx\n");
    GstBuffer* const buffer = data->buffers.front().get();
    EXPECT_EQ(GST_BUFFER_DTS(buffer), GST_CLOCK_TIME_NONE);
    EXPECT_EQ(GST_BUFFER_OFFSET(buffer), GST_BUFFER_OFFSET_NONE);
    EXPECT_EQ(GST_BUFFER_OFFSET_END(buffer), GST_BUFFER_OFFSET_NONE);
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(buffer), 1);
}

TEST(SrtData, AnEmbeddedNulEndsACuesTextAlone) {
    const char text[] = "0:0:1,0 --> 0:0:2,0\none\0two\nthree\n\n0:0:3,0 --> 0:0:4,0\nfour\n";
    EXPECT_EQ(describe(*parseSRT(fn::String(text, sizeof text - 1))),
              head + R"( | 1000000000+1000000000 [one\0] | 3000000000+1000000000 [four\0])");
}

/// What the mark-up machine makes of a text in one of its states: where it ends, and what it does.
std::string readInState(subtitles::byte_machine::State state, const std::string& text) {
    using subtitles::srt::Action;
    using subtitles::srt::markupMachine;
    std::string result;
    for (const char byte : text) {
        const auto& cell = markupMachine.cell(state, byte);
        for (const auto number : markupMachine.lists[cell.list]) {
            const auto action = static_cast<Action>(number);
            result += action == Action::AppendByte ? std::string(1, byte) : std::to_string(number);
        }
        state = cell.next;
        if (state == subtitles::byte_machine::error) {
            break;
        }
    }
    return result + " in state " + std::to_string(state);
}

TEST(SrtErrors, FurtherNoticesOfACueAreReadAsTheFirst) {
    const std::string notice =
        "<< Invalid Encoding - Please change subtitle encoding in Velquin Settings >>";
    for (subtitles::byte_machine::State state = 1; state <= 112; ++state) {
        EXPECT_EQ(readInState(state, "<<>>"), readInState(state, notice)) << "state " << state;
    }
}

TEST(SrtErrors, EachMalformedLineOfACueIsShown) {
    EXPECT_EQ(describe(*parseSRT("0:0:1,0 --> 0:0:2,0\n\xFF\n<i>\n\xFF\nx\n\xFF\n\n"
                                 "0:0:3,0 --> 0:0:4,0\n\xFF\n\xFF\n")),
              head + R"( | 1000000000+1000000000 [>\n][style=2: \n>\nx\n>\0])" +
                  R"( | 3000000000+1000000000 [>\n>\0])");
}

TEST(SrtErrors, AMalformedTimeLineRaises) {
    EXPECT_THROW(parseSRT("0:0:1,0 --> 0:0:2,0 \xFF\nx\n"), fn::UTF8Exception);
    EXPECT_THROW(parseSRT("0:0:1,0 --> 0:0:2,0\nx\n\n\xFF -->\n"), fn::UTF8Exception);
}

/// The reader as its rules are told: line by line, with the expression and strings.
fn::AutoPtr<SubtitleData> slowSRT(const fn::String& text) {
    fn::AutoPtr<SubtitleData> data(new SubtitleData(
        "application/x-attributed-text", fn::AutoPtr<GstBuffer>(), SubtitleData::NANOSECONDS));
    fn::MemoryInputStream stream(fn::to_string_view(text));
    fn::StreamReader reader(&stream);
    while (const auto line = reader.readLine()) {
        std::vector<fn::RegularExpression::Match> matches;
        if (line->find("-->") == fn::String::npos ||
            subtitles::srt::time.match(*line, 0, matches) == 0) {
            continue;
        }
        const GstClockTime start = subtitles::srt::parseNumber(*line, matches.cbegin() + 1);
        const GstClockTime end = subtitles::srt::parseNumber(*line, matches.cbegin() + 5);
        if (end <= start) {
            continue;
        }
        fn::String cue;
        while (auto cueLine = reader.readLine()) {
            try {
                cueLine = cueLine->trim(true);
            } catch (const fn::UTF8Exception&) {
                cueLine = fn::String(
                    "<< Invalid Encoding - Please change subtitle encoding in "
                    "Velquin Settings >>");
            }
            if (cueLine->empty()) {
                break;
            }
            cue += (cue.empty() ? "" : "\n") + *cueLine;
        }
        const subtitles::AttributedText runs = subtitles::parseSRTFormatting(cue);
        if (!runs.empty()) {
            data->buffers.push_back(attributedTextToBuffer(runs));
            GST_BUFFER_PTS(data->buffers.back().get()) = start;
            GST_BUFFER_DURATION(data->buffers.back().get()) = end - start;
        }
    }
    return data;
}

std::string read(fn::AutoPtr<SubtitleData> (*parse)(const fn::String&), const fn::String& text) {
    try {
        return describe(*parse(text));
    } catch (const fn::UTF8Exception& exception) {
        return exception.what();
    }
}

TEST(SrtOfRandomText, IsReadAsTheRulesSay) {
    constexpr const char* pieces[] = {"\n",
                                      "\n",
                                      "\r\n",
                                      "\n\n",
                                      "1",
                                      " ",
                                      "\t",
                                      "\xC2\xA0",
                                      "\xE3\x80\x80",
                                      "x",
                                      "{an8}",
                                      "{",
                                      "<font color=\"",
                                      "\">",
                                      "<i>",
                                      "</i>",
                                      "\xFF",
                                      "0:0:1,0 --> 0:0:2,5\n",
                                      "0:0:3,0 --> 0:0:2,5\n",
                                      "-->",
                                      "0:0:1,0 --> 0:0:2,5 y\r\n",
                                      "\xC3\xA9",
                                      "\r"};
    std::mt19937 random(3);
    for (int i = 0; i < 10000; ++i) {
        std::string text;
        for (std::size_t count = random() % 24; count > 0; --count) {
            text += pieces[random() % std::size(pieces)];
        }
        ASSERT_EQ(read(parseSRT, text), read(slowSRT, text)) << subtitles::escaped(text);
    }
}

constexpr const char* sample =
    "\xEF\xBB\xBF"
    "1\r\n00:00:01,000 --> 00:00:02,500\r\n<i>One</i> {an8}\r\n\r\n"
    "2\n00:00:03.5 --> 00:00:04,000 X1:4\n- <font color=\"#ff0000\">Two</font>\n- \xC3\xA9\n \n"
    "3\n00:00:05,000 --> 00:00:04,000\nlost\n\n4\n00:00:06,000 --> 00:00:07,000\n\xFF\nlast";

TEST(SrtOfEachPrefix, OfASampleIsReadAsTheRulesSay) {
    const std::string text = sample;
    for (std::size_t size = 0; size <= text.size(); ++size) {
        EXPECT_EQ(read(parseSRT, text.substr(0, size)), read(slowSRT, text.substr(0, size)));
    }
}

std::vector<std::string> sampleFiles() {
    std::vector<std::string> texts;
    const std::string folder = test::sourceFolder() + "/samples";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == ".srt") {
            std::ifstream in(entry.path(), std::ios::binary);
            texts.emplace_back(std::istreambuf_iterator<char>(in),
                               std::istreambuf_iterator<char>());
        }
    }
    return texts;
}

TEST(SrtOfEachPrefix, OfTheSampleFilesReturns) {
    const std::vector<std::string> texts = sampleFiles();
    EXPECT_GE(texts.size(), 10U) << "samples that nobody reads prove nothing";
    for (const std::string& text : texts) {
        std::size_t most = 0;
        for (std::size_t size = 0; size <= text.size(); ++size) {
            try {
                most = std::max(most, parseSRT(text.substr(0, size))->buffers.size());
            } catch (const fn::UTF8Exception&) {
                continue;  // The samples have encodings of their own.
            }
        }
        EXPECT_GE(text.size(), most * 30) << "no cue is smaller than its times";
    }
}

// Long texts. What counts is that they end with the right answer.

constexpr std::size_t limit = 8388608;  // Bytes of a file that are read.

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

TEST(SrtLongText, ALineOfDigits) {
    EXPECT_EQ(describe(*parseSRT(repeated("1", limit))), head);
    EXPECT_EQ(describe(*parseSRT(repeated("1", limit - 3) + "-->")), head);
    EXPECT_EQ(describe(*parseSRT(repeated("1", limit - 24) + ":0:1,0 --> 0:0:2,0\nx\n")),
              head + R"( | 1000000000+1000000000 [x\0])");
}

TEST(SrtLongText, EmptyLines) {
    EXPECT_EQ(describe(*parseSRT(repeated("\n", limit))), head);
    EXPECT_EQ(describe(*parseSRT(repeated("-->\n", limit / 4))), head);
}

TEST(SrtLongText, OneCueOfManyLines) {
    const fn::AutoPtr<SubtitleData> data =
        parseSRT("0:0:1,0 --> 0:0:2,0\n" + repeated("x\n", limit / 2));
    ASSERT_EQ(data->buffers.size(), 1U);
    EXPECT_EQ(gst_buffer_get_size(data->buffers.front().get()), 4 + 78 + limit);
}

TEST(SrtLongText, OneLineOfWhiteSpace) {
    EXPECT_EQ(describe(*parseSRT("0:0:1,0 --> 0:0:2,0\n" + repeated(" ", limit) + "x" +
                                 repeated("\t", limit))),
              head + R"( | 1000000000+1000000000 [x\0])");
}

TEST(SrtLongText, AMillionOpenTagsInOneCue) {
    const fn::AutoPtr<SubtitleData> data =
        parseSRT("0:0:1,0 --> 0:0:2,0\n" + repeated("<i>x", 1000000));
    ASSERT_EQ(data->buffers.size(), 1U);
    EXPECT_EQ(gst_buffer_get_size(data->buffers.front().get()), 4 + 79 * 1000000 + 1U);
}

TEST(SrtLongText, MalformedLinesInOneCue) {
    const fn::AutoPtr<SubtitleData> data =
        parseSRT("0:0:1,0 --> 0:0:2,0\n" + repeated("\xFF\n", limit / 2));
    ASSERT_EQ(data->buffers.size(), 1U);
    EXPECT_EQ(gst_buffer_get_size(data->buffers.front().get()), 4 + 78 + limit);
}

TEST(SrtLongText, BracketsWithoutEndInOneCue) {
    const std::string times = "0:0:1,0 --> 0:0:2,0\n";
    EXPECT_EQ(describe(*parseSRT(times + repeated("{", limit))), head);
    EXPECT_EQ(describe(*parseSRT(times + repeated("<", limit))), head);
    EXPECT_EQ(describe(*parseSRT(times + "a" + repeated("{", limit))),
              head + R"( | 1000000000+1000000000 [a])");
}

TEST(SrtLongText, ManySmallCues) {
    const fn::AutoPtr<SubtitleData> data = parseSRT(repeated("0:0:1,0-->0:0:2,0\nx\n\n", 100000));
    ASSERT_EQ(data->buffers.size(), 100000U);
    EXPECT_EQ(describe(data->buffers.back(), data->mimeType), R"(1000000000+1000000000 [x\0])");
}

}  // namespace
