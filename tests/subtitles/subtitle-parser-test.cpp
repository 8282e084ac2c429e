// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-parser.h"

#include <cstddef>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/attributed-text.h"

#include "tests/subtitles/srt-markup-reference.h"
#include "tests/support/describe.h"

namespace {

using subtitles::AttributedText;
using subtitles::describe;
using subtitles::parseSRTFormatting;

struct Case {
    const char* name;
    const char* text;
    const char* expected;  // Runs as [attributes: text]; \0 is the NUL at the end.
};

constexpr Case cases[] = {
    // Text and its end.
    {"PlainTextIsOneRunWithTheNul", "Hello", R"([Hello\0])"},
    {"EmptyTextIsTheNulAlone", "", R"([\0])"},
    {"TextThatEndsInATagLeavesTheNulARunOfItsOwn", "<i>Hi</i>", R"([style=2: Hi][\0])"},
    {"OpenTagAtTheEndStylesTheNul", "a<b>", R"([a][weight=700: \0])"},
    {"LineFeedsStay", "one\ntwo\n", R"([one\ntwo\n\0])"},
    {"AllOtherBytesAreText", "\x01 \t>}\"/=\xC3\xA9\xFF",
     R"([\x01 \t>}"/=)"
     "\xC3\xA9"
     R"(\xFF\0])"},
    // Tags that are known.
    {"BoldThenPlain", "<b>bold</b> plain", R"([weight=700: bold][ plain\0])"},
    {"Italic", "<i>x</i>y", R"([style=2: x][y\0])"},
    {"Underline", "<u>x</u>y", R"([underline=1: x][y\0])"},
    {"ColorByNumber", "<font color=\"#ff8000\">x", R"([color=ff8000: x\0])"},
    {"ColorByName", "<font color=\"Red\">x", R"([color=ff0000: x\0])"},
    {"WhiteSpaceInKnownTags", "< \t\v\f\rb >x</ b\t>y", R"([weight=700: x][y\0])"},
    {"WhiteSpaceInAColor", "< font\tcolor = \"red\" >x", R"([color=ff0000: x\0])"},
    {"NoWhiteSpaceNeededInAColor", "<fontcolor=\"red\">x", R"([color=ff0000: x\0])"},
    {"ColorValueIsNotTrimmed", "<font color=\" red\">x", R"([color=000000: x\0])"},
    {"ColorThatIsNoneIsBlack", "<font color=\"nosuchcolour\">x", R"([color=000000: x\0])"},
    {"ColorValueMayHoldALineFeed", "<font color=\"r\ned\">x", R"([color=000000: x\0])"},
    {"EmptyColorIsAnUnknownTag", "<font color=\"\">x", R"([x\0])"},
    {"ColorEndsAtTheCuesEnd", "<font color=\"red\">x\ny", R"([color=ff0000: x\ny\0])"},
    {"FontEndEndsNothing", "<font color=\"#ff0000\">red</font> still red",
     R"([color=ff0000: red still red\0])"},
    {"UnderlineEndEndsTheColorToo", "<u><font color=\"red\">x</u>y",
     R"([color=ff0000 underline=1: x][y\0])"},
    {"UnderlineEndEndsAColorAlone", "<font color=\"red\">x</u>y", R"([color=ff0000: x][y\0])"},
    // Nesting.
    {"TagsMayOverlap", "<b>1<i>2</b>3</i>4",
     R"([weight=700: 1][style=2 weight=700: 2][style=2: 3][4\0])"},
    {"OneEndEndsAllOfItsKind", "<b><b><b>x</b>y", R"([weight=700: x][y\0])"},
    {"EndWithNothingOpenEndsTheRunAlone", "a</b>b</i>c</u>d", R"([a][b][c][d\0])"},
    {"NeighbouringTagsMakeNoRunBetween", "<b><i></i></b>x", R"([x\0])"},
    {"TheNewestColorCounts", "<font color=\"red\">a<font color=\"blue\">b</u>c",
     R"([color=ff0000: a][color=0000ff: b][c\0])"},
    {"AllAtOnce", "<b><i><u><font color=\"lime green\">x",
     R"([style=2 weight=700 color=32cd32 underline=1: x\0])"},
    // Tags that are not.
    {"UnknownTagsAreDropped", "a<br>b<B>c<s>d<>e</>f<font size=2>g", R"([abcdefg\0])"},
    {"ColorWithoutQuotesIsUnknown", "<font color=red>x", R"([x\0])"},
    {"AnotherAttributeFirstIsUnknown", "<font face=\"x\" color=\"red\">y", R"([y\0])"},
    {"AnotherAttributeBehindIsUnknown", "<font color=\"red\" face=\"x\">y", R"([y\0])"},
    {"SlashMustFollowAtOnce", "< /b>x", R"([x\0])"},
    {"WhiteSpaceBehindTheSlashIsKnown", "</ b>x", R"([x\0])"},
    {"SlashAfterABlankEndsNothing", "<b>x< /b>y", R"([weight=700: xy\0])"},
    {"SlashBeforeABlankEndsBold", "<b>x</ b>y", R"([weight=700: x][y\0])"},
    {"LongerNamesAreUnknown", "<bb>a<ib>b<u1>c</bx>d", R"([abcd\0])"},
    {"TagsMayHoldLess", "<b<i>x", R"([x\0])"},
    {"TagsMayHoldBraces", "<{x}>y", R"([y\0])"},
    {"AnUnfinishedTagTakesTheRest", "a<b", R"([a])"},
    {"AnUnfinishedColorTakesTheRest", "a<font color=\"red", R"([a])"},
    // Line feeds in tags.
    {"LineFeedInAnUnknownTagEndsTheText", "a<x\ny>b", R"([a])"},
    {"LineFeedInBold", "<\nb>x", R"([weight=700: x\0])"},
    {"LineFeedBehindBold", "<b\n>x", R"([weight=700: x\0])"},
    {"LineFeedThenUnknownMakesNoText", "<\nx>y", ""},
    {"LineFeedsInAColor", "<\nfont\ncolor\n=\n\"red\"\n>x", R"([color=ff0000: x\0])"},
    {"LineFeedsInAnEnd", "<b><i><u>a</\nb\n>b</\ni\n>c</\nu\n>d",
     R"([style=2 weight=700 underline=1: a][style=2 underline=1: b][underline=1: c][d\0])"},
    {"LineFeedThenAnEmptyColorEndsTheText", "a<font\ncolor=\"\">x", R"([a])"},
    {"LineFeedBetweenLessAndSlashEndsTheText", "a<\n/b>x", R"([a])"},
    // Braces.
    {"PositionCodeIsDropped", "a{an8}b", R"([ab\0])"},
    {"PositionCodeMayHaveManyDigits", "{an0123456789}b", R"([b\0])"},
    {"PositionCodeDoesNotSplitTheStyle", "<b>a{an8}b", R"([weight=700: ab\0])"},
    {"AnyOtherBraceEndsTheText", "a{b", R"([a])"},
    {"OverrideCodesEndTheText", R"(a{\an8}b)", R"([a])"},
    {"PositionCodeNeedsDigits", "a{an}b", R"([a])"},
    {"PositionCodeWithABlankEndsTheText", "a{an 8}b", R"([a])"},
    {"UnfinishedPositionCodeEndsTheText", "a{an8", R"([a])"},
    {"BraceAtTheStartMakesNoText", "{x", ""},
    {"BraceBehindATagKeepsWhatCameBefore", "<i>a</i>{x", R"([style=2: a])"},
    {"ClosingBraceIsText", "a}b", R"([a}b\0])"},
    // A ">" in a colour's value.
    {"GreaterInAColorIsTextToo", "<font color=\"a>b\">c", R"([b">][color=000000: c\0])"},
    {"GreaterInAColorWithoutEndIsText", "<font color=\"a>b", R"([b\0])"},
    {"TagsInTheTextOfAnOpenValueCount", "<font color=\"a><b>b</b><i>c</i><u>d</u>e\">f",
     R"([weight=700: b][style=2: c][underline=1: d][e">][color=000000: f\0])"},
    {"QuoteBehindBoldInAnOpenValue", "<font color=\"a><b>\">f",
     R"([weight=700: ">][weight=700 color=000000: f\0])"},
    {"PositionCodeInAnOpenValue", "<font color=\"a>x{an8}y\">z", R"([xy">][color=000000: z\0])"},
    {"BraceInAnOpenValueIsOnlyTheValues", "<font color=\"a>x{b\">z", R"([x][color=000000: z\0])"},
    {"LineFeedInATagInAnOpenValue", "<font color=\"a>x<y\nz\">w", R"([x][color=000000: w\0])"},
    {"ValueThatEndsBehindTextNeedsAGreater", "<font color=\"a>b\" c", R"([b" c\0])"},
    {"ValueEndsInsideAnUnknownTag", "<font color=\"a>b<c\">d", R"([b][color=000000: d\0])"},
    {"ColorInsideAnOpenValue", "<font color=\"a><font color=\"red\">x", R"([color=ff0000: x\0])"},
    {"ValueWhoseEndLiesBeforeItsStartIsBlack", "<font color=\"r><font color=\">y",
     R"([color=000000: y\0])"},
};

class SrtMarkup : public testing::TestWithParam<Case> {};

TEST_P(SrtMarkup, GivesRuns) {
    EXPECT_EQ(describe(parseSRTFormatting(GetParam().text)), GetParam().expected);
    EXPECT_EQ(describe(subtitles::srt::parseFormatting(GetParam().text)), GetParam().expected);
    EXPECT_EQ(describe(srt_reference::parse(GetParam().text)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, SrtMarkup, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(SrtMarkupText, AnEmbeddedNulIsItsEnd) {
    EXPECT_EQ(describe(parseSRTFormatting(fn::String("a\0b", 3))), R"([a\0])");
    EXPECT_EQ(describe(parseSRTFormatting(fn::String("<b\0>x", 5))), "");
}

TEST(SrtMarkupText, OnlyTheNamedAttributesAreSet) {
    const AttributedText text = parseSRTFormatting("<b>x");
    ASSERT_EQ(text.size(), 1U);
    subtitles::TextAttributes expected;
    expected.fontWeight = subtitles::TextAttributes::FONT_WEIGHT_BOLD;
    expected.attributeMask = 32;
    EXPECT_EQ(describeFields(text[0].attributes), describeFields(expected));
}

/// Texts of pieces that meet in tags often.
class RandomText {
public:
    std::string operator()() {
        std::string text;
        for (std::size_t count = random() % 16; count > 0; --count) {
            text += _pieces[random() % std::size(_pieces)];
        }
        return text;
    }

private:
    static constexpr const char* _pieces[] = {"<",
                                              ">",
                                              "\"",
                                              "{",
                                              "}",
                                              "/",
                                              "=",
                                              "\n",
                                              " ",
                                              "b",
                                              "i",
                                              "u",
                                              "font",
                                              "color",
                                              "a",
                                              "an8",
                                              "<b>",
                                              "</b>",
                                              "<i>",
                                              "</i>",
                                              "<u>",
                                              "</u>",
                                              "{an8}",
                                              "red",
                                              "x",
                                              "\t",
                                              "\xC3",
                                              "<br>",
                                              "<font color=\"",
                                              "\">",
                                              "#12f",
                                              "<font color=\"blue\">",
                                              "<font color=\"a>",
                                              "</\n",
                                              "f",
                                              "{an",
                                              "7"};

    std::mt19937 random{20260701};
};

TEST(SrtMarkupText, RandomTextsAreReadAsTheAlternativesSay) {
    RandomText randomText;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = randomText();
        ASSERT_EQ(describe(parseSRTFormatting(text)), describe(srt_reference::parse(text)))
            << subtitles::escaped(text);
    }
}

TEST(SrtMarkupText, EachStartOfATextIsReadAsTheAlternativesSay) {
    const std::string text =
        "{an8}<i>One</i> <b>two\n< u >three</ u ></b> <font color=\"#a0f\">four</font>\n"
        "<font color=\"x>y<i>z</i>\">five</u> <br><\nb>six<\n/b>seven";
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const std::string start = text.substr(0, size);
        EXPECT_EQ(describe(parseSRTFormatting(start)), describe(srt_reference::parse(start)));
    }
}

// Long texts. What counts is that they end with the right answer.

constexpr std::size_t limit = 8388608;  // Bytes of a file that are read.

fn::String repeated(const std::string& piece, std::size_t count) {
    fn::String text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

/// Each run but the last is `[style=2: x]`, and that one has the NUL, too.
void expectItalicLetters(const AttributedText& text, std::size_t count) {
    ASSERT_EQ(text.size(), count);
    std::size_t wrong = 0;
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const AttributedText::Run& run = text[i];
        const bool right =
            run.text == "x" && run.attributes.attributeMask == 16 && run.attributes.fontStyle == 2;
        wrong += right ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0U);
    AttributedText last;
    last.push_back(text.back());
    EXPECT_EQ(describe(last), R"([style=2: x\0])");
}

TEST(SrtMarkupLongText, PlainTextIsOneRun) {
    const AttributedText text = parseSRTFormatting(repeated("x", limit));
    ASSERT_EQ(text.size(), 1U);
    EXPECT_EQ(text[0].text, repeated("x", limit) + fn::String("", 1));
}

TEST(SrtMarkupLongText, AMillionOpenTagsWithALetterBehindEach) {
    expectItalicLetters(parseSRTFormatting(repeated("<i>x", 1000000)), 1000000);
}

TEST(SrtMarkupLongText, AMillionOpenTagsThenEndsOfAnotherKindAgainAndAgain) {
    const fn::String open = repeated("<i>", 1000000);
    const std::size_t count = (limit - open.size()) / 5;
    expectItalicLetters(parseSRTFormatting(open + repeated("</b>x", count)), count);
}

TEST(SrtMarkupLongText, AMillionOpenTagsAndOneEnd) {
    EXPECT_EQ(describe(parseSRTFormatting(repeated("<b><i>", 1000000) + "x</b>y</i>z")),
              R"([style=2 weight=700: x][style=2: y][z\0])");
}

TEST(SrtMarkupLongText, OpenBracesEndAtTheFirst) {
    EXPECT_EQ(describe(parseSRTFormatting(repeated("{", limit))), "");
    EXPECT_EQ(describe(parseSRTFormatting("{an" + repeated("8", limit))), "");
    EXPECT_EQ(describe(parseSRTFormatting("{an" + repeated("8", limit) + "}x")), R"([x\0])");
    EXPECT_EQ(describe(parseSRTFormatting(repeated("{an8}", limit / 5) + "x")), R"([x\0])");
}

TEST(SrtMarkupLongText, OpenTagsWithoutEndAreOneUnfinishedTag) {
    EXPECT_EQ(describe(parseSRTFormatting(repeated("<", limit))), "");
    EXPECT_EQ(describe(parseSRTFormatting("a" + repeated("<", limit) + ">b")), R"([ab\0])");
    EXPECT_EQ(describe(parseSRTFormatting("<" + repeated(" ", limit) + "b>x")),
              R"([weight=700: x\0])");
}

TEST(SrtMarkupLongText, ColorsWithoutEnd) {
    const fn::String open = "<font color=\"";
    EXPECT_EQ(describe(parseSRTFormatting(open + repeated("x", limit))), "");
    EXPECT_EQ(describe(parseSRTFormatting(open + repeated("x", limit) + "\">y")),
              R"([color=000000: y\0])");
    EXPECT_EQ(describe(parseSRTFormatting(repeated("<font color=\"red\">", 400000) + "y</u>z")),
              R"([color=ff0000: y][z\0])");
}

}  // namespace
