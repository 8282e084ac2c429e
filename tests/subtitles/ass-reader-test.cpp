// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/ass-reader.h"

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

constexpr std::size_t mebibyte = 1024 * 1024;

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    text.reserve(count * piece.size());
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

/// The header in quotes, and the events with their times. The stream's type and unit, which are
/// the same for all, are left out.
std::string streamOf(const fn::String& text) {
    const std::string head = "application/x-ass ns | header ";
    const std::string printed = describe(*parseASS(text));
    EXPECT_EQ(printed.compare(0, head.size(), head), 0) << printed;
    return printed.size() > head.size() ? printed.substr(head.size()) : "";
}

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

#define FORMAT "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"

constexpr Case cases[] = {
    // The header.
    {"NothingHasAnEmptyHeader", "", "\"\""},
    {"TextWithoutEventsIsAllHeader", "[Script Info]\nTitle: x\n[V4+ Styles]",
     "\"[Script Info]\\nTitle: x\\n[V4+ Styles]\\n\""},
    {"HeaderKeepsCaseAndBlanks", "  [A] \n\n\tb\n[Events]\n", "\"  [A] \\n\\n\\tb\\n\""},
    {"CarriageReturnsAreLineEnds", "a\r\nb\r\n[Events]\r\n", "\"a\\nb\\n\""},
    {"EventsInAnyCaseAndBetweenBlanks", "a\n \t[eVENTS] \nb", "\"a\\n\""},
    {"EventsWithATailIsHeader", "[Events] x\n", "\"[Events] x\\n\""},
    {"EventsBehindAByteOrderMarkIsHeader", "\xEF\xBB\xBF[Events]\n", "\"\xEF\xBB\xBF[Events]\\n\""},
    {"SecondEventsSectionIsNoHeader", "[Events]\n[Events]\n", "\"\""},
    // The format line.
    {"EventsBeforeTheFormatLineAreLost",
     "[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,x\nFormat: Start,Text\n", "\"\""},
    {"FormatInTheHeaderIsNone", "Format: Start,Text\n[Events]\nDialogue: 0:00:01.00,a\n",
     "\"Format: Start,Text\\n\""},
    {"FormatNeedNotComeFirst", "[Events]\n\n; x\n format: Start,Text\nDialogue: 0:00:01.00,a\n",
     "\"\" | 1000000000+- \"0,,,,,,,,a\""},
    {"ColumnNamesHaveAnyCase", "[Events]\nFORMAT:sTART,TEXT\nDialogue: 0:00:01.00,a",
     "\"\" | 1000000000+- \"0,,,,,,,,a\""},
    {"ColumnNamesAreTrimmed", "[Events]\nFormat: \tStart  ,\xC2\x85 Text \nDialogue: 0:00:01.00,a",
     "\"\" | 1000000000+- \"0,,,,,,,,a\""},
    {"EmptyColumnNamesAreNoColumns", "[Events]\nFormat: ,,Start, ,Text,\nDialogue: 0:00:01.00,a,b",
     "\"\" | 1000000000+- \"0,,,,,,,,a,b\""},
    {"NoColumnsIsTheEnd", "[Events]\nFormat: , ,\nFormat: Start\nDialogue: 0:00:01.00", "\"\""},
    {"SecondFormatLineIsIgnored",
     "[Events]\nFormat: Start,Text\nFormat: Text,Start\nDialogue: 0:00:01.00,a",
     "\"\" | 1000000000+- \"0,,,,,,,,a\""},
    {"FirstOfTwoColumnsCounts", "[Events]\nFormat: Start,Style,Style\nDialogue: 0:00:01.00,a,b",
     "\"\" | 1000000000+- \"0,,a,,,,,,\""},
    {"UnknownColumnsAreDropped", "[Events]\nFormat: Start,Marked,Text\nDialogue: 0:00:01.00,a,b",
     "\"\" | 1000000000+- \"0,,,,,,,,b\""},
    // The events.
    {"OrdinaryEvent",
     "[Events]\n" FORMAT "Dialogue: 0,0:00:01.50,0:00:03.00,Default,,0,0,0,,Hi, there\n",
     "\"\" | 1500000000+1500000000 \"0, 0,Default,,0,0,0,,Hi, there\""},
    {"ReorderedColumnsGiveTheSameEvent",
     "[Events]\nFormat: End, Effect, MarginV, Name, Start, Layer, MarginR, Style, MarginL, Text\n"
     "Dialogue:0:00:03.00,,0,,0:00:01.50, 0,0,Default,0,Hi, there\n",
     "\"\" | 1500000000+1500000000 \"0, 0,Default,,0,0,0,,Hi, there\""},
    {"EveryFieldInItsPlace", "[Events]\n" FORMAT "Dialogue:1,0:00:01.00,0:00:02.00,2,3,4,5,6,7,8\n",
     "\"\" | 1000000000+1000000000 \"0,1,2,3,4,5,6,7,8\""},
    {"MissingColumnIsAnEmptyField",
     "[Events]\nFormat: Layer, Start, End, Name, Text\nDialogue: 0,0:00:01.00,0:00:02.00,n,x\n",
     "\"\" | 1000000000+1000000000 \"0, 0,,n,,,,,x\""},
    {"ValuesKeepTheirBlanks", "[Events]\nFormat: Start,Style,Text\nDialogue: 0:00:01.00 , s , t\n",
     "\"\" | 1000000000+- \"0,, s ,,,,,, t\""},
    {"LineIsTrimmed", "[Events]\nFormat: Start,Text\n  Dialogue: 0:00:01.00,a \t\n",
     "\"\" | 1000000000+- \"0,,,,,,,,a\""},
    {"DialogueInAnyCase", "[Events]\nFormat: Start,Text\nDIALOGUE:0:00:01.00,A",
     "\"\" | 1000000000+- \"0,,,,,,,,A\""},
    {"CommentsAndSectionsAreSkipped",
     "[Events]\nFormat: Start,Text\nComment: 0:00:01.00,a\n\n[Fonts]\nx\nDialogue: 0:00:02.00,b\n",
     "\"\" | 2000000000+- \"0,,,,,,,,b\""},
    {"DialogueWithoutColonIsNone", "[Events]\nFormat: Start,Text\nDialogue 0:00:01.00,a", "\"\""},
    {"ReadOrderCountsAcceptedEvents",
     "[Events]\nFormat: Start,Text\nDialogue: 0:00:01.00,a\nDialogue: x,b\n"
     "Dialogue: 0:00:02.00,c\n",
     "\"\" | 1000000000+- \"0,,,,,,,,a\" | 2000000000+- \"1,,,,,,,,c\""},
    {"FileOrderIsKept",
     "[Events]\nFormat: Start,Text\nDialogue: 0:00:02.00,a\nDialogue: 0:00:01.00,b",
     "\"\" | 2000000000+- \"0,,,,,,,,a\" | 1000000000+- \"1,,,,,,,,b\""},
    {"TenthsOfASecond", "[Events]\nFormat: Start,Text\nDialogue: 0:00:01.5,a",
     "\"\" | 1500000000+- \"0,,,,,,,,a\""},
    {"EqualStartAndEndHaveNoDuration",
     "[Events]\nFormat: Start,End,Text\nDialogue: 0:00:01.00,0:00:01.00,a",
     "\"\" | 1000000000+- \"0,,,,,,,,a\""},
    {"EndBeforeStartHasNoDuration",
     "[Events]\nFormat: Start,End,Text\nDialogue: 0:00:02.00,0:00:01.00,a",
     "\"\" | 2000000000+- \"0,,,,,,,,a\""},
    {"EndThatIsNoTimeHasNoDuration", "[Events]\nFormat: Start,End,Text\nDialogue: 0:00:02.00,x,a",
     "\"\" | 2000000000+- \"0,,,,,,,,a\""},
    {"StartThatIsNoTimeIsDropped", "[Events]\nFormat: Start,End,Text\nDialogue: x,0:00:01.00,a",
     "\"\""},
    {"NoStartColumnDropsAll", "[Events]\nFormat: End,Text\nDialogue: 0:00:01.00,a", "\"\""},
    {"FewerValuesThanColumnsAreEmpty", "[Events]\n" FORMAT "Dialogue: 0,0:00:01.00",
     "\"\" | 1000000000+- \"0, 0,,,,,,,\""},
    {"NoValuesAtAll", "[Events]\n" FORMAT "Dialogue:", "\"\""},
    {"TextThatIsNotTheLastColumnEndsAtItsComma",
     "[Events]\nFormat: Text,Start\nDialogue: a,0:00:01.00,b",
     "\"\" | 1000000000+- \"0,,,,,,,, a\""},
    {"LastColumnKeepsItsCommas", "[Events]\nFormat: Start,Style\nDialogue: 0:00:01.00,a,b,,c",
     "\"\" | 1000000000+- \"0,,a,b,,c,,,,,,\""},
    {"OneColumnTakesTheWholeLine", "[Events]\nFormat: Start\nDialogue: x,0:00:01.00,y",
     "\"\" | 1000000000+- \"0,,,,,,,,\""},
    {"OverrideCodesStay", "[Events]\nFormat: Start,Text\nDialogue: 0:00:01.00,{\\i1}a\\Nb<b>&",
     "\"\" | 1000000000+- \"0,,,,,,,,{\\\\i1}a\\\\Nb<b>&\""},
    // In lower case, this capital letter is an "i". Nine bytes are cut off all the same.
    {"LetterThatIsALetterOfDialogueInLowerCase",
     "[Events]\nFormat: Layer,Start,Text\nD\xC4\xB0"
     "alogue:,0:00:01.00,a",
     "\"\" | 1000000000+- \"0,:,,,,,,,a\""},
};

class ASSReader : public testing::TestWithParam<Case> {};

TEST_P(ASSReader, GivesStream) {
    EXPECT_EQ(streamOf(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSReader, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(ASSStream, HasItsTypeAndAHeaderThatHasNoTimes) {
    const fn::AutoPtr<SubtitleData> data = parseASS("");
    EXPECT_EQ(data->mimeType, "application/x-ass");
    EXPECT_EQ(data->timestampUnit, SubtitleData::NANOSECONDS);
    ASSERT_TRUE(data->header);
    EXPECT_EQ(gst_buffer_get_size(data->header.get()), 0U);
    EXPECT_EQ(GST_BUFFER_PTS(data->header.get()), GST_CLOCK_TIME_NONE);
    EXPECT_EQ(GST_BUFFER_DURATION(data->header.get()), GST_CLOCK_TIME_NONE);
}

TEST(ASSStream, KeepsNulBytes) {
    const std::string nul(1, '\0');
    EXPECT_EQ(streamOf(nul + "\n[Events]\nFormat: Start,Text\nDialogue:0:00:01.00,a" + nul + "b"),
              "\"\\0\\n\" | 1000000000+- \"0,,,,,,,,a\\0b\"");
}

// Whatever the line is: the reader takes no part of a file of another encoding.
TEST(ASSMalformed, AnyLineFailsTheWhole) {
    const fn::String header = "[Script Info]\n";
    const fn::String events = "[Events]\n";
    const fn::String format = "Format: Start,Text\n";
    const fn::String event = "Dialogue: 0:00:01.00,a\n";
    const fn::String bad = "\xFF\n";
    EXPECT_NO_THROW(parseASS(header + events + format + event));
    EXPECT_THROW(parseASS(header + bad + events + format + event), fn::UTF8Exception);
    EXPECT_THROW(parseASS(header + events + bad + format + event), fn::UTF8Exception);
    EXPECT_THROW(parseASS(header + events + format + bad + event), fn::UTF8Exception);
    EXPECT_THROW(parseASS(header + events + format + event + "Comment: \xC3\x28"),
                 fn::UTF8Exception);
}

// A format line without columns ends the reading, so nobody looks at what comes behind it.
TEST(ASSMalformed, LineBehindTheEndOfReadingIsNotLookedAt) {
    EXPECT_EQ(streamOf("[Events]\nFormat:\n\xFF"), "\"\"");
}

const std::vector<fn::String> names = {"a", "b", "a", "c"};
const std::vector<fn::String> values = {"1", "2", "3"};

TEST(ASSSegment, IsTheValueAtTheNamesFirstPlace) {
    EXPECT_EQ(ass::getSegment(names, values, "a", "x"), "1");
    EXPECT_EQ(ass::getSegment(names, values, "b", "x"), "2");
}

TEST(ASSSegment, IsTheDefaultWithoutNameOrValue) {
    EXPECT_EQ(ass::getSegment(names, values, "d", "x"), "x");
    EXPECT_EQ(ass::getSegment(names, values, "A", "x"), "x");
    EXPECT_EQ(ass::getSegment(names, values, "c", "x"), "x");
    EXPECT_EQ(ass::getSegment({}, values, "a", "x"), "x");
    EXPECT_EQ(ass::getSegment({}, {}, "", "x"), "x");
}

TEST(ASSPrefixes, OfAScriptAllGiveAResult) {
    const std::string script =
        "[Script Info]\nTitle: \xC3\xA4\n\n[Events]\r\n" FORMAT
        "Dialogue: 0,0:00:01.50,0:00:03.00,Default,,0,0,0,,Hi, {\\i1}there\nComment: x\n";
    for (std::size_t size = 0; size <= script.size(); ++size) {
        const fn::String prefix = script.substr(0, size);
        if (!prefix.endsWith("\xC3")) {
            EXPECT_LE(parseASS(prefix)->buffers.size(), 1U);
        }
    }
}

TEST(ASSLarge, TwoMillionColumnsAndAsManyDialogueLinesAsFit) {
    const std::string format = "[Events]\nFormat:" + repeated("a,", 2000000) + "Start,Text\n";
    const std::string text = format + repeated("Dialogue:\n", (8 * mebibyte - format.size()) / 10);
    EXPECT_TRUE(parseASS(text)->buffers.empty());
    const std::string front = "[Events]\nFormat:Start," + repeated("a,", 2000000) + "Text\n";
    EXPECT_EQ(parseASS(front + repeated("Dialogue:0:0:1.0\n", 100000))->buffers.size(), 100000U);
}

TEST(ASSLarge, DialogueLineOfCommas) {
    const std::string commas(8 * mebibyte, ',');
    EXPECT_EQ(streamOf("[Events]\n" FORMAT "Dialogue:" + commas), "\"\"");
    const fn::AutoPtr<SubtitleData> data =
        parseASS("[Events]\nFormat: Start,Text\nDialogue:0:00:01.00," + commas);
    ASSERT_EQ(data->buffers.size(), 1U);
    EXPECT_EQ(gst_buffer_get_size(data->buffers.front().get()), commas.size() + 9);
    const std::string columns = "[Events]\nFormat:" + repeated("a,", 2000000) + "Start,Text\n";
    EXPECT_TRUE(parseASS(columns + "Dialogue:" + commas)->buffers.empty());
}

TEST(ASSLarge, DigitsInATimeField) {
    const std::string digits(8 * mebibyte, '1');
    const std::string head = "[Events]\nFormat: Start,Text\nDialogue:";
    EXPECT_EQ(streamOf(head + digits), "\"\"");
    EXPECT_EQ(streamOf(head + "0:00:01." + digits + ",a"), "\"\" | 1000000000+- \"0,,,,,,,,a\"");
}

TEST(ASSLarge, LinesWithoutAnything) {
    const std::string lines(mebibyte, '\n');
    EXPECT_EQ(gst_buffer_get_size(parseASS(lines)->header.get()), lines.size());
    EXPECT_TRUE(parseASS("[Events]\n" + lines)->buffers.empty());
    EXPECT_TRUE(parseASS("[Events]\n" FORMAT + lines)->buffers.empty());
}

}  // namespace
}  // namespace subtitles
