// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/webvtt-exporter.h"

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/subtitles/formats-reference.h"
#include "tests/support/build-text.h"
#include "tests/support/random-text.h"

namespace subtitles {
namespace {

TextAttributes everything() {
    TextAttributes attributes;
    attributes.attributeMask = 0xFFFFF;
    attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.underline = TextAttributes::UNDERLINE_SINGLE;
    return attributes;
}

struct RunTextCase {
    const char* name;
    const char* text;
    const char* expected;
};

// Every row of the escapes, and the order in which they are asked for.
constexpr RunTextCase runTexts[] = {
    {"PlainTextBeginsWithAMark", "a", "&lrm;a"},
    {"EmptyTextIsOneEmptyLine", "", "&lrm;"},
    {"EveryLineBeginsWithAMark", "a\nb", "&lrm;a\n&lrm;b"},
    {"EmptyLinesAreKept", "a\n\nb", "&lrm;a\n&lrm;\n&lrm;b"},
    {"LineFeedAtTheEndGivesAnEmptyLine", "a\n", "&lrm;a\n&lrm;"},
    {"CarriageReturnIsAnOrdinaryByte", "a\r\nb", "&lrm;a\r\n&lrm;b"},
    {"AmpersandIsEscaped", "a&b", "&lrm;a&amp;b"},
    {"LessIsEscaped", "a<b", "&lrm;a&lt;b"},
    {"GreaterStays", "a>b-->c", "&lrm;a>b-->c"},
    {"TagIsEscapedAtItsStartOnly", "a<b>c&d", "&lrm;a&lt;b>c&amp;d"},
    {"EntityInTheTextIsEscaped", "&lt;&lrm;", "&lrm;&amp;lt;&amp;lrm;"},
    {"LeftToRightMarkStandsBesideTheLinesOwn",
     "\xE2\x80\x8E"
     "a",
     "&lrm;&lrm;a"},
    {"RightToLeftMark", "a\xE2\x80\x8F", "&lrm;a&rlm;"},
    {"NoBreakSpace",
     "a\xC2\xA0"
     "b",
     "&lrm;a&nbsp;b"},
    {"OtherLettersStay", "\xE2\x80\x90\xC2\xA1", "&lrm;\xE2\x80\x90\xC2\xA1"},
    {"MalformedBytesStay", "\xE2\x80\xFF", "&lrm;\xE2\x80\xFF"},
};

class WebVTTRunText : public testing::TestWithParam<RunTextCase> {};

TEST_P(WebVTTRunText, GivesText) {
    EXPECT_EQ(WebVTTExporter().processRunText(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, WebVTTRunText, testing::ValuesIn(runTexts),
                         [](const auto& test) { return test.param.name; });

TEST(WebVTTExporterRunText, KeepsNulBytes) {
    EXPECT_EQ(WebVTTExporter().processRunText(fn::String("a\0", 2)), fn::String("&lrm;a\0", 7));
}

TEST(WebVTTExporterRunText, IsTheSameAsReplacingRowByRow) {
    test::RandomText random({"&", "<", ">", "\n", "\xE2", "\x80", "\x8E", "\x8F", "\xC2", "\xA0",
                             "\xE2\x80\x8E", "\xE2\x80\x8F", "\xC2\xA0", "&lt;", "amp;", "text"});
    for (int i = 0; i < 5000; ++i) {
        const fn::String text = random.next(12);
        ASSERT_EQ(WebVTTExporter().processRunText(text), formats_reference::webVTTText(text));
    }
}

struct TagCase {
    const char* name;
    TextAttributes changed;
    TextAttributes removed;
    const char* expected;
};

const TagCase tags[] = {
    {"NothingGivesNoTag", {}, {}, ""},
    {"WeightOpensBold", weight(TextAttributes::FONT_WEIGHT_BOLD), {}, "<b>"},
    {"NormalWeightOpensBold", weight(TextAttributes::FONT_WEIGHT_NORMAL), {}, "<b>"},
    {"LightWeightOpensBold", weight(TextAttributes::FONT_WEIGHT_THIN), {}, "<b>"},
    {"RemovedWeightClosesBold", {}, weight(TextAttributes::FONT_WEIGHT_BOLD), "</b>"},
    {"ItalicOpens", style(TextAttributes::FONT_STYLE_ITALIC), {}, "<i>"},
    {"ObliqueOpensItalic", style(TextAttributes::FONT_STYLE_OBLIQUE), {}, "<i>"},
    {"NormalStyleClosesItalic", style(TextAttributes::FONT_STYLE_NORMAL), {}, "</i>"},
    {"RemovedStyleClosesItalic", {}, style(TextAttributes::FONT_STYLE_NORMAL), "</i>"},
    {"UnderlineOpens", underline(TextAttributes::UNDERLINE_ERROR), {}, "<u>"},
    {"NoUnderlineCloses", underline(TextAttributes::UNDERLINE_NONE), {}, "</u>"},
    {"RemovedUnderlineCloses", {}, underline(TextAttributes::UNDERLINE_SINGLE), "</u>"},
    {"AllChangedGivesThreeTags", everything(), {}, "<b><i><u>"},
    {"AllRemovedGivesThreeTags", {}, everything(), "</b></i></u>"},
    {"BothRecordsCountRowByRow", everything(), everything(), "<b></b><i></i><u></u>"},
};

class WebVTTTags : public testing::TestWithParam<TagCase> {};

TEST_P(WebVTTTags, GivesTags) {
    EXPECT_EQ(WebVTTExporter().encodeAttributes(GetParam().changed, GetParam().removed),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, WebVTTTags, testing::ValuesIn(tags),
                         [](const auto& test) { return test.param.name; });

TEST(WebVTTExporterTags, LookAtTheMaskOnly) {
    TextAttributes unset = everything();
    unset.attributeMask = 0;
    EXPECT_EQ(WebVTTExporter().encodeAttributes(unset, unset), "");
}

struct Case {
    const char* name;
    std::vector<AttributedText::Run> runs;
    const char* expected;
};

const Case cases[] = {
    {"NoRunsGiveNothing", {}, ""},
    {"TextBehindALineFeed", {{{}, "a"}}, "\n&lrm;a"},
    {"TwoLines", {{{}, "a\nb"}}, "\n&lrm;a\n&lrm;b"},
    {"EscapedText", {{{}, "a<b>c&d"}}, "\n&lrm;a&lt;b>c&amp;d"},
    {"EmptyRunGivesItsMark", {{{}, ""}}, "\n&lrm;"},
    {"BoldThenPlain",
     {{weight(TextAttributes::FONT_WEIGHT_BOLD), "x"}, {{}, "y"}},
     "\n<b>&lrm;x</b>&lrm;y"},
    {"WeightOf400OpensBold", {{weight(TextAttributes::FONT_WEIGHT_NORMAL), "x"}}, "\n<b>&lrm;x"},
    {"AnotherWeightOpensBoldAgain",
     {{weight(TextAttributes::FONT_WEIGHT_BOLD), "x"},
      {weight(TextAttributes::FONT_WEIGHT_NORMAL), "y"}},
     "\n<b>&lrm;x<b>&lrm;y"},
    {"TheSameWeightGivesNoTag",
     {{weight(TextAttributes::FONT_WEIGHT_BOLD), "x"},
      {weight(TextAttributes::FONT_WEIGHT_BOLD), "y"}},
     "\n<b>&lrm;x&lrm;y"},
    {"NormalStyleAfterItalicCloses",
     {{style(TextAttributes::FONT_STYLE_ITALIC), "x"},
      {style(TextAttributes::FONT_STYLE_NORMAL), "y"}},
     "\n<i>&lrm;x</i>&lrm;y"},
    {"TagsOfTheLastRunStayOpen", {{{}, "x"}, {everything(), "y"}}, "\n&lrm;x<b><i><u>&lrm;y"},
    {"TagsAreNotNested",
     {{weight(TextAttributes::FONT_WEIGHT_BOLD), "x"},
      {style(TextAttributes::FONT_STYLE_ITALIC), "y"},
      {{}, "z"}},
     "\n<b>&lrm;x</b><i>&lrm;y</i>&lrm;z"},
    {"RunThatContinuesALineHasAMarkToo", {{{}, "x"}, {{}, "y\n"}}, "\n&lrm;x&lrm;y\n&lrm;"},
    {"NoBreakSpaceAndMark", {{{}, "\xC2\xA0\xE2\x80\x8E"}}, "\n&lrm;&nbsp;&lrm;"},
};

class WebVTTText : public testing::TestWithParam<Case> {};

TEST_P(WebVTTText, GivesText) {
    EXPECT_EQ(WebVTTExporter().attributedTextToString(textOf(GetParam().runs)),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, WebVTTText, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(WebVTTExporter, EscapesAMebibyteOfOneByte) {
    constexpr std::size_t size = 1024 * 1024;
    for (const auto& [byte, escape] :
         {std::pair<char, std::size_t>{'&', 5}, {'<', 4}, {'\n', 6}, {'\xE2', 1}}) {
        const fn::String result = WebVTTExporter().processRunText(std::string(size, byte));
        EXPECT_EQ(result.size(), 5 + size * escape);
    }
}

}  // namespace
}  // namespace subtitles
