// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/microdvd-parser.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/subtitles/formats-reference.h"
#include "tests/support/describe.h"
#include "tests/support/random-text.h"

namespace subtitles {
namespace {

constexpr std::size_t mebibyte = 1024 * 1024;

std::string repeated(const std::string& piece, std::size_t size) {
    std::string text;
    text.reserve(size + piece.size());
    while (text.size() < size) {
        text += piece;
    }
    return text;
}

/// The stream without its type and unit, which are the same for all.
std::string entriesOf(const fn::String& text, int maxEntries = -1) {
    const std::string head = "application/x-attributed-text frames";
    const std::string printed = describe(*parseMicroDVD(text, maxEntries));
    EXPECT_EQ(printed.compare(0, head.size(), head), 0) << printed;
    return printed.size() > head.size() ? printed.substr(head.size() + 3) : "";
}

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

constexpr Case cases[] = {
    {"NothingGivesNoEntries", "", ""},
    {"EntryOfTwoLines", "{10}{20}Hello|World", "10+10 [Hello\\nWorld\\0]"},
    {"NoEndFrameIsDurationZero", "{10}{}Hello", "10+0 [Hello\\0]"},
    {"EndBeforeStartIsDurationZero", "{20}{10}Hello", "20+0 [Hello\\0]"},
    {"EndAtStartIsDurationZero", "{20}{20}Hello", "20+0 [Hello\\0]"},
    {"BlanksAroundTheBrackets", "{10} {20} Hello", "10+10 [Hello\\0]"},
    {"EveryKindOfBlank", "{10}\t\v\f\r {20}\t\v\f\r Hello", "10+10 [Hello\\0]"},
    {"NoBreakSpaceIsText", "{10}{20}\xC2\xA0Hello", "10+10 [\xC2\xA0Hello\\0]"},
    {"NoBreakSpaceBetweenBracketsIsNoEntry", "{10}\xC2\xA0{20}Hello", ""},
    {"BlanksBehindTheTextStay", "{10}{20}Hello \t", "10+10 [Hello \\t\\0]"},
    {"TextBeforeTheBracketsIsPassedOver", "x {{y}{10}{20}Hello", "10+10 [Hello\\0]"},
    {"ByteOrderMarkIsPassedOver", "\xEF\xBB\xBF{10}{20}Hello", "10+10 [Hello\\0]"},
    {"FirstPairOfBracketsCounts", "{1}{2}{3}{4}", "1+1 [\\0]"},
    {"SecondBracketCanBeTheStart", "{9}x{1}{2}a", "1+1 [a\\0]"},
    {"SecondOfThreeBracketsIsTheEnd", "{9}{1}{2}a", "9+0 [a\\0]"},
    {"EmptyTextIsAnEntry", "{1}{2}", "1+1 [\\0]"},
    {"CarriageReturnGoesWithTheLine", "{1}{2}a\r\n{3}{4}b\r\n", "1+1 [a\\0] | 3+1 [b\\0]"},
    {"PlainLinesArePassedOver", "title\n{1}{2}a\n\nmore\n{3}{4}b", "1+1 [a\\0] | 3+1 [b\\0]"},
    {"OrderOfFramesIsTheFiles", "{30}{40}b\n{10}{20}a", "30+10 [b\\0] | 10+10 [a\\0]"},
    {"NoStartIsNoEntry", "{}{20}Hello", ""},
    {"LettersAreNoFrames", "{a}{20}Hello", ""},
    {"SignsAreNoFrames", "{-1}{20}Hello", ""},
    {"GreatestStart", "{4294967295}{4294967296}a", "4294967295+1 [a\\0]"},
    {"StartThatDoesNotFitIsZero", "{4294967296}{10}a", "0+10 [a\\0]"},
    {"GreatestEnd", "{0}{9223372036854775807}a", "0+9223372036854775807 [a\\0]"},
    {"EndThatDoesNotFitIsNoEnd", "{0}{9223372036854775808}a", "0+0 [a\\0]"},
    // The rows of the control codes.
    {"BarIsALineFeed", "{1}{2}a||b", "1+1 [a\\n\\nb\\0]"},
    {"LowerItalic", "{1}{2}{y:i}Hi", "1+1 [style=2: Hi\\0]"},
    {"LowerUnderline", "{1}{2}{y:u}Hi", "1+1 [underline=1: Hi\\0]"},
    {"LowerBold", "{1}{2}{y:b}Hi", "1+1 [weight=700: Hi\\0]"},
    {"UpperItalic", "{1}{2}{Y:i}Hi", "1+1 [style=2: Hi\\0]"},
    {"UpperUnderline", "{1}{2}{Y:u}Hi", "1+1 [underline=1: Hi\\0]"},
    {"UpperBold", "{1}{2}{Y:b}Hi", "1+1 [weight=700: Hi\\0]"},
    {"LowerCodeHoldsAcrossLines", "{1}{2}{y:i}a|b", "1+1 [style=2: a\\nb\\0]"},
    {"CodesAddUp", "{1}{2}{y:i}a{Y:b}b", "1+1 [style=2: a][style=2 weight=700: b\\0]"},
    {"CodeInTheMiddle", "{1}{2}a{y:u}b", "1+1 [a][underline=1: b\\0]"},
    {"MixedCodeHasNoEffect", "{1}{2}{y:iu}Hi", "1+1 [Hi\\0]"},
    {"LettersOfCodesAreLowerCase", "{1}{2}{y:I}Hi", "1+1 [Hi\\0]"},
    {"ColorCodeHasNoEffect", "{1}{2}{c:$0000FF}Hi", "1+1 [Hi\\0]"},
    {"OtherCodesHaveNoEffect", "{1}{2}{f:Arial}{s:12}{P:0}{o:1,2}Hi", "1+1 [Hi\\0]"},
    {"BarInACodeGoesWithIt", "{1}{2}a{x|y}b", "1+1 [ab\\0]"},
    {"KnownCodeInABlockEndsUpInTheText", "{1}{2}a{x{y:i}b", "1+1 [a]"},
    {"KnownCodeInAClosedBlockGoesWithIt", "{1}{2}a{x{y:i}b}c", "1+1 [ac\\0]"},
    {"TagsOfTheFileCount", "{1}{2}<i>a</i>b", "1+1 [style=2: a][b\\0]"},
    {"UnclosedBraceEndsTheText", "{1}{2}a{b", "1+1 [a]"},
    {"EntryWithoutRunsMakesABuffer", "{1}{2}{x", "1+1 "},
};

class MicroDVD : public testing::TestWithParam<Case> {};

TEST_P(MicroDVD, GivesEntries) {
    EXPECT_EQ(entriesOf(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, MicroDVD, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(MicroDVDStream, CountsFramesAndHasNoHeader) {
    const fn::AutoPtr<SubtitleData> data = parseMicroDVD("", -1);
    EXPECT_EQ(data->mimeType, "application/x-attributed-text");
    EXPECT_EQ(data->timestampUnit, SubtitleData::FRAMES);
    EXPECT_FALSE(data->header);
    EXPECT_TRUE(data->buffers.empty());
}

TEST(MicroDVDStream, KeepsShortDurationsWhenSanitized) {
    const fn::AutoPtr<SubtitleData> data = parseMicroDVD("{1}{2}a\n{10}{}b\n{20}{}c", -1);
    data->sanitize();
    EXPECT_EQ(describeTimes(*data), "1+1 10+0 20+0");
}

TEST(MicroDVDStream, EndsAtANulInTheTextOfAnEntry) {
    EXPECT_EQ(entriesOf(fn::String("{1}{2}a\0b\n{3}{4}c", 17)), "1+1 [a\\0] | 3+1 [c\\0]");
}

constexpr const char* four = "{1}{2}a\n{3}{4}b\n{5}{6}c\n{7}{8}d";

TEST(MicroDVDLimit, IsTheGreatestNumberOfBuffers) {
    EXPECT_EQ(entriesOf(four, 3), "1+1 [a\\0] | 3+1 [b\\0] | 5+1 [c\\0]");
    EXPECT_EQ(entriesOf(four, 1), "1+1 [a\\0]");
    EXPECT_EQ(entriesOf(four, 0), "");
    EXPECT_EQ(entriesOf(four, 4), entriesOf(four));
    EXPECT_EQ(entriesOf(four, 5), entriesOf(four));
}

TEST(MicroDVDLimit, IsNoneForMinusOneOnly) {
    EXPECT_EQ(entriesOf(four, -1), "1+1 [a\\0] | 3+1 [b\\0] | 5+1 [c\\0] | 7+1 [d\\0]");
    EXPECT_EQ(entriesOf(four, -2), "");
}

TEST(MicroDVDMalformed, EntryEndsTheReading) {
    EXPECT_EQ(entriesOf("{1}{2}a\n{3}{4}\xFF\n{5}{6}c"), "1+1 [a\\0]");
}

TEST(MicroDVDMalformed, LineThatIsNoEntryEndsTheReading) {
    EXPECT_EQ(entriesOf("{1}{2}a\nno entry \xFF\n{5}{6}c"), "1+1 [a\\0]");
}

TEST(MicroDVDMalformed, FirstLineGivesAnEmptyStream) {
    EXPECT_EQ(entriesOf("\xFF\n{1}{2}a"), "");
}

TEST(MicroDVDEntry, RefusesMalformedLines) {
    EXPECT_THROW(microdvd::findEntry("{1}{2}\xC3"), fn::UTF8Exception);
    EXPECT_THROW(microdvd::findEntry("\xED\xA0\x80"), fn::UTF8Exception);
}

using Groups = std::optional<std::array<fn::String, 3>>;

Groups entryOf(const fn::String& line) {
    const auto entry = microdvd::findEntry(fn::to_string_view(line));
    if (!entry) {
        return {};
    }
    return {{fn::String(entry->start), fn::String(entry->end), fn::String(entry->text)}};
}

/// What a line gives, and whether it is refused.
template <class Find>
std::pair<Groups, bool> answer(const fn::String& line, Find find) {
    try {
        return {find(line), false};
    } catch (const fn::UTF8Exception&) {
        return {Groups(), true};
    }
}

TEST(MicroDVDEntry, IsThatOfTheExpressionOnAnyLine) {
    test::RandomText random({"{",        "}",
                             "{",        "}",
                             "1",        "007",
                             "{1}",      "{23}",
                             "{}",       " ",
                             "\t",       "\v",
                             "\f",       "\r",
                             "a",        "|",
                             "{y:i}",    "\xC2\xA0",
                             "\xC2\x85", "\xE3\x80\x80",
                             "\xC3",     std::string(1, '\0')});
    for (int i = 0; i < 10000; ++i) {
        const fn::String line = random.next(10);
        ASSERT_EQ(answer(line, entryOf), answer(line, formats_reference::microDVDEntry)) << line;
    }
}

TEST(MicroDVDEntry, IsThatOfTheExpressionOnMutatedEntries) {
    test::RandomText random({"{1}{2}Hello", "{10} {20} Hello", "{100}{}Hi|you", "{7}{8}{y:i}x"});
    for (int i = 0; i < 10000; ++i) {
        std::string line = random.next(2);
        for (std::size_t mutations = random.below(4); mutations != 0; --mutations) {
            line = random.mutated(line);
        }
        if (line.find('\n') == std::string::npos) {
            ASSERT_EQ(answer(line, entryOf), answer(line, formats_reference::microDVDEntry))
                << line;
        }
    }
}

TEST(MicroDVDCodes, AreRewrittenAsRowByRow) {
    test::RandomText random({"|", "{", "}", "y", "Y", ":", "i", "u", "b", "<", ">", "{y:i}",
                             "{y:u}", "{y:b}", "{Y:i}", "{Y:u}", "{Y:b}", "{y:iu}", "\xC3\xA4"});
    for (int i = 0; i < 10000; ++i) {
        const fn::String text = random.next(12);
        fn::String markup = "of another entry";
        microdvd::rewriteCodes(fn::to_string_view(text), markup);
        ASSERT_EQ(markup, formats_reference::microDVDMarkup(text)) << text;
    }
}

TEST(MicroDVDPrefixes, OfAFileAllGiveAResult) {
    const std::string file = "{1}{2}{y:i}a|b\n{3} {4} <b>c</b>{x\r\n\n{5}{}\xC3\xA4{c:$0}d\n";
    for (std::size_t size = 0; size <= file.size(); ++size) {
        EXPECT_LE(parseMicroDVD(file.substr(0, size), -1)->buffers.size(), 3U);
    }
}

TEST(MicroDVDLarge, LineOfOneBracketOverAndOver) {
    EXPECT_EQ(parseMicroDVD(repeated("{1}x", 8 * mebibyte), -1)->buffers.size(), 0U);
    EXPECT_EQ(entriesOf(repeated("{1}", 8 * mebibyte)), "1+0 [\\0]");
}

TEST(MicroDVDLarge, BlanksBetweenTheBrackets) {
    const std::string blanks(8 * mebibyte, ' ');
    EXPECT_EQ(entriesOf("{1}" + blanks + "{2}a"), "1+1 [a\\0]");
    EXPECT_EQ(entriesOf("{1}" + blanks + "a"), "");
    EXPECT_EQ(entriesOf(repeated("{1}  x", 8 * mebibyte)), "");
}

TEST(MicroDVDLarge, DigitsInABracket) {
    const std::string digits(8 * mebibyte, '7');
    EXPECT_EQ(entriesOf("{" + digits), "");
    EXPECT_EQ(entriesOf("{" + digits + "}{9}a"), "0+9 [a\\0]");
    EXPECT_EQ(entriesOf("{9}{" + digits + "}a"), "9+0 [a\\0]");
}

TEST(MicroDVDLarge, OpenBracesInALineAndInAText) {
    const std::string open(8 * mebibyte, '{');
    EXPECT_EQ(entriesOf(open), "");
    EXPECT_EQ(entriesOf("{1}{2}a" + open), "1+1 [a]");
    EXPECT_EQ(entriesOf("{1}{2}a" + open + "}b"), "1+1 [ab\\0]");
}

TEST(MicroDVDLarge, ManyTinyEntries) {
    EXPECT_EQ(parseMicroDVD(repeated("{1}{2}\n", mebibyte), -1)->buffers.size(), 149797U);
}

}  // namespace
}  // namespace subtitles
