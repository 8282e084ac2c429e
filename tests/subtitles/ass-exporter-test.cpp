// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/ass-exporter.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "subtitles/ass-color.h"

#include "tests/support/build-text.h"

namespace subtitles {
namespace {

TextAttributes strikeThrough(bool value) {
    return only(TextAttributes::STRIKE_THROUGH, &TextAttributes::strikeThrough, value);
}

TextAttributes family(const char* value) {
    return only(TextAttributes::FONT_FAMILY, &TextAttributes::fontFamily, value);
}

TextAttributes absoluteSize(int value) {
    return only(TextAttributes::FONT_SIZE_ABSOLUTE, &TextAttributes::fontSizeAbsolute, value);
}

TextAttributes relativeSize(int value) {
    return only(TextAttributes::FONT_SIZE_RELATIVE, &TextAttributes::fontSizeRelative, value);
}

TextAttributes bothSizes() {
    TextAttributes attributes = absoluteSize(20);
    attributes.attributeMask |= TextAttributes::FONT_SIZE_RELATIVE;
    attributes.fontSizeRelative = 1;
    return attributes;
}

/// Everything that has no tag in ASS.
TextAttributes unknown() {
    TextAttributes attributes;
    attributes.attributeMask = TextAttributes::FONT_DESCRIPTION | TextAttributes::FONT_VARIANT |
                               TextAttributes::FONT_STRETCH | TextAttributes::BACKGROUND_COLOR |
                               TextAttributes::UNDERLINE_COLOR | TextAttributes::RISE |
                               TextAttributes::STRIKE_THROUGH_COLOR | TextAttributes::FALLBACK |
                               TextAttributes::LANGUAGE | TextAttributes::LETTER_SPACING |
                               TextAttributes::GRAVITY | TextAttributes::GRAVITY_HINT;
    attributes.fontDescription = "Sans 12";
    attributes.language = "en";
    attributes.rise = 5;
    return attributes;
}

TextAttributes everything() {
    TextAttributes attributes;
    attributes.attributeMask = 0xFFFFF;
    attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.underline = TextAttributes::UNDERLINE_SINGLE;
    attributes.strikeThrough = true;
    attributes.fontFamily = "Serif";
    attributes.fontSizeAbsolute = 20;
    attributes.fontSizeRelative = 1;
    attributes.foregroundColor = {1, 2, 3};
    return attributes;
}

struct ColorCase {
    const char* name;
    Color color;
    int alpha;
    bool withAlpha;
    const char* expected;
};

constexpr ColorCase colors[] = {
    {"BlueGreenRed", {0x12, 0x34, 0x56}, 255, false, "&H563412"},
    {"OneDigitChannelsHaveAZero", {1, 2, 3}, 255, false, "&H030201"},
    {"OpaqueIsAlphaZero", {0xFF, 0xFF, 0xFF}, 255, true, "&H00FFFFFF"},
    {"TransparentIsAlphaFull", {0, 0, 0}, 0, true, "&HFF000000"},
    {"AlphaIsTheComplement", {0xAB, 0xCD, 0xEF}, 192, true, "&H3FEFCDAB"},
    {"HalfAlpha", {0, 0, 0}, 128, true, "&H7F000000"},
};

class ASSColor : public testing::TestWithParam<ColorCase> {};

TEST_P(ASSColor, IsWritten) {
    EXPECT_EQ(colorToASS(GetParam().color, static_cast<unsigned char>(GetParam().alpha),
                         GetParam().withAlpha),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSColor, testing::ValuesIn(colors),
                         [](const auto& test) { return test.param.name; });

TEST(ASSStyle, HasDefaults) {
    const ASSStyle style;
    EXPECT_EQ(style.fontName, "Arial");
    EXPECT_EQ(style.fontSize, 38.0F);
    EXPECT_TRUE(style.bold);
    EXPECT_FALSE(style.italic);
    EXPECT_EQ(style.primaryColor, (Color{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(style.outlineColor, (Color{0, 0, 0}));
    EXPECT_EQ(style.outlineAlpha, 0xC0);
    EXPECT_EQ(style.outline, 2.5F);
    EXPECT_EQ(style.backColor, (Color{0, 0, 0}));
    EXPECT_EQ(style.backAlpha, 0x80);
    EXPECT_EQ(style.shadow, 0.0F);
    EXPECT_EQ(style.marginHorizontal, 20);
    EXPECT_EQ(style.marginVertical, 20);
}

TEST(ASSStyle, WritesFormatLine) {
    EXPECT_EQ(ASSStyle().getFormat(),
              "Format:Name,Fontname,Fontsize,PrimaryColour,OutlineColour,BackColour,Bold,Italic,"
              "BorderStyle,Outline,Shadow,Alignment,MarginL,MarginR,MarginV\n");
}

TEST(ASSStyle, WritesDefaultStyleLine) {
    EXPECT_EQ(ASSStyle().getStyle("Default"),
              "Style:Default,Arial,38,&H00FFFFFF,&H3F000000,&H7F000000,-1,0,1,2.5,0,2,20,20,20\n");
}

TEST(ASSStyle, WritesEveryFieldInItsPlace) {
    ASSStyle style;
    style.fontName = "Some Font";
    style.fontSize = 12.5F;
    style.bold = false;
    style.italic = true;
    style.primaryColor = {1, 2, 3};
    style.outlineColor = {4, 5, 6};
    style.outlineAlpha = 0;
    style.outline = 0.25F;
    style.backColor = {7, 8, 9};
    style.backAlpha = 255;
    style.shadow = 1.5F;
    style.marginHorizontal = -7;
    style.marginVertical = 30;
    EXPECT_EQ(style.getStyle("My style"),
              "Style:My style,Some Font,12.5,&H00030201,&HFF060504,&H00090807,0,1,1,0.25,1.5,2,-7,"
              "-7,30\n");
}

TEST(ASSStyle, StyleLineHasAValueForEveryFormat) {
    const auto count = [](const fn::String& line) {
        return line.split(',', fn::String::KeepEmptyParts, -1).size();
    };
    EXPECT_EQ(count(ASSStyle().getStyle("x")), count(ASSStyle().getFormat()));
}

struct TagCase {
    const char* name;
    TextAttributes changed;
    TextAttributes removed;
    const char* expected;
};

// Every row of the tags, in their order.
const TagCase tags[] = {
    {"NothingGivesNoBraces", {}, {}, ""},
    {"BoldIs900", weight(700), {}, "{\\b900}"},
    {"NormalWeightIs900", weight(400), {}, "{\\b900}"},
    {"ThinIs900", weight(100), {}, "{\\b900}"},
    {"HeavyStays", weight(900), {}, "{\\b900}"},
    {"UltraHeavyStays", weight(1000), {}, "{\\b1000}"},
    {"RemovedWeight", {}, weight(700), "{\\b0}"},
    {"Italic", style(TextAttributes::FONT_STYLE_ITALIC), {}, "{\\i1}"},
    {"ObliqueIsItalic", style(TextAttributes::FONT_STYLE_OBLIQUE), {}, "{\\i1}"},
    {"NormalStyle", style(TextAttributes::FONT_STYLE_NORMAL), {}, "{\\i0}"},
    {"RemovedStyle", {}, style(TextAttributes::FONT_STYLE_ITALIC), "{\\i0}"},
    {"Underline", underline(TextAttributes::UNDERLINE_DOUBLE), {}, "{\\u1}"},
    {"NoUnderline", underline(TextAttributes::UNDERLINE_NONE), {}, "{\\u0}"},
    {"RemovedUnderline", {}, underline(TextAttributes::UNDERLINE_SINGLE), "{\\u0}"},
    {"StrikeThrough", strikeThrough(true), {}, "{\\s1}"},
    {"NoStrikeThrough", strikeThrough(false), {}, "{\\s0}"},
    {"RemovedStrikeThrough", {}, strikeThrough(true), "{\\s0}"},
    {"Family", family("Some Font"), {}, "{\\fnSome Font}"},
    {"RemovedFamilyIsTheStyles", {}, family("Some Font"), "{\\fnArial}"},
    {"AbsoluteSize", absoluteSize(20), {}, "{\\fs20}"},
    {"NegativeAbsoluteSize", absoluteSize(-1), {}, "{\\fs-1}"},
    {"OneStepUp", relativeSize(1), {}, "{\\fs46}"},
    {"TwoStepsUp", relativeSize(2), {}, "{\\fs55}"},
    {"ThreeStepsUp", relativeSize(3), {}, "{\\fs66}"},
    {"NoStep", relativeSize(0), {}, "{\\fs38}"},
    {"OneStepDown", relativeSize(-1), {}, "{\\fs32}"},
    {"ThreeStepsDown", relativeSize(-3), {}, "{\\fs22}"},
    {"BothSizesAbsoluteFirst", bothSizes(), {}, "{\\fs20\\fs46}"},
    {"RemovedAbsoluteSizeIsTheStyles", {}, absoluteSize(20), "{\\fs38}"},
    {"RemovedRelativeSizeIsTheStyles", {}, relativeSize(2), "{\\fs38}"},
    {"RemovedBothSizesIsOneTag", {}, bothSizes(), "{\\fs38}"},
    {"Color", foreground({0x12, 0x34, 0x56}), {}, "{\\c&H563412&}"},
    {"RemovedColorIsTheStyles", {}, foreground({0x12, 0x34, 0x56}), "{\\c&HFFFFFF&}"},
    {"OthersGiveNothing", unknown(), unknown(), ""},
    {"AllChanged", everything(), {}, "{\\b900\\i1\\u1\\s1\\fnSerif\\fs20\\fs46\\c&H030201&}"},
    {"AllRemoved", {}, everything(), "{\\b0\\i0\\u0\\s0\\fnArial\\fs38\\c&HFFFFFF&}"},
    {"RemovedStandsBehindChanged", everything(), everything(),
     "{\\b900\\b0\\i1\\i0\\u1\\u0\\s1\\s0\\fnSerif\\fnArial\\fs20\\fs46\\fs38\\c&H030201&"
     "\\c&HFFFFFF&}"},
};

class ASSTags : public testing::TestWithParam<TagCase> {};

TEST_P(ASSTags, GivesTags) {
    EXPECT_EQ(ASSExporter().encodeAttributes(GetParam().changed, GetParam().removed, ASSStyle()),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSTags, testing::ValuesIn(tags),
                         [](const auto& test) { return test.param.name; });

TEST(ASSExporterTags, LookAtTheMaskOnly) {
    TextAttributes unset = everything();
    unset.attributeMask = 0;
    EXPECT_EQ(ASSExporter().encodeAttributes(unset, unset, ASSStyle()), "");
}

TEST(ASSExporterTags, FallBackToTheStyleThatIsGiven) {
    ASSStyle style;
    style.fontName = "Serif";
    style.fontSize = 20.5F;
    style.primaryColor = {1, 2, 3};
    EXPECT_EQ(ASSExporter().encodeAttributes({}, everything(), style),
              "{\\b0\\i0\\u0\\s0\\fnSerif\\fs20.5\\c&H030201&}");
    EXPECT_EQ(ASSExporter().encodeAttributes(relativeSize(1), {}, style), "{\\fs25}");
}

// A buffer can hold any number of steps; the answer must not take as many.
TEST(ASSExporterTags, AreMadeAtOnceForAnyNumberOfSteps) {
    constexpr int least = std::numeric_limits<std::int32_t>::min();
    constexpr int most = std::numeric_limits<std::int32_t>::max();
    const auto tagOf = [](int steps) {
        return ASSExporter().encodeAttributes(relativeSize(steps), {}, ASSStyle());
    };
    EXPECT_EQ(tagOf(least), "{\\fs0}");
    EXPECT_EQ(tagOf(-100), "{\\fs0}");
    EXPECT_EQ(tagOf(most), tagOf(10000));
    EXPECT_EQ(tagOf(20), "{\\fs1457}");
}

struct Case {
    const char* name;
    std::vector<AttributedText::Run> runs;
    const char* expected;
};

const Case cases[] = {
    {"NoRunsGiveNothing", {}, ""},
    {"PlainTextHasNoBraces", {{{}, "text"}}, "text"},
    {"LineFeedIsACode", {{{}, "a\nb"}}, "a\\Nb"},
    {"BackslashAndLetterStay", {{{}, "a\\nb\\Nc"}}, "a\\nb\\Nc"},
    {"BoldThenPlain", {{weight(700), "x"}, {{}, "y"}}, "{\\b900}x{\\b0}y"},
    {"WeightOf400IsWritten", {{weight(400), "x"}}, "{\\b900}x"},
    {"Color", {{foreground({0x12, 0x34, 0x56}), "x"}}, "{\\c&H563412&}x"},
    {"StepUp", {{relativeSize(1), "x"}}, "{\\fs46}x"},
    {"StepDown", {{relativeSize(-1), "x"}}, "{\\fs32}x"},
    {"BothSizes", {{bothSizes(), "x"}}, "{\\fs20\\fs46}x"},
    {"LanguageAloneGivesNoBraces",
     {{only(TextAttributes::LANGUAGE, &TextAttributes::language, "en"), "x"}},
     "x"},
    {"BracesInTheTextStay", {{{}, "a{b}c{"}}, "a{b}c{"},
    {"WhatTheStyleHasIsWrittenAllTheSame",
     {{family("Arial"), "x"}, {foreground({0xFF, 0xFF, 0xFF}), "y"}},
     "{\\fnArial}x{\\fnArial\\c&HFFFFFF&}y"},
    {"TheSameAttributesGiveNoTag", {{weight(700), "x"}, {weight(700), "y"}}, "{\\b900}xy"},
    {"AnotherWeightIsWritten", {{weight(700), "x"}, {weight(1000), "y"}}, "{\\b900}x{\\b1000}y"},
    {"NothingClosesTheLastRun",
     {{{}, "x"}, {style(TextAttributes::FONT_STYLE_ITALIC), "y"}},
     "x{\\i1}y"},
    {"LineFeedInAFamilyIsACode", {{family("a\nb"), "x"}}, "{\\fna\\Nb}x"},
    {"EmptyRunHasItsTags", {{weight(700), ""}, {{}, ""}}, "{\\b900}{\\b0}"},
};

class ASSText : public testing::TestWithParam<Case> {};

TEST_P(ASSText, GivesText) {
    EXPECT_EQ(ASSExporter().attributedTextToString(textOf(GetParam().runs)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSText, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(ASSExporter, WritesWithItsOwnStyle) {
    ASSStyle style;
    style.fontName = "Serif";
    EXPECT_EQ(ASSExporter(style).attributedTextToString(textOf({{family("Sans"), "x"}, {{}, "y"}})),
              "{\\fnSans}x{\\fnSerif}y");
}

TEST(ASSExporter, KeepsNulBytes) {
    EXPECT_EQ(ASSExporter().attributedTextToString(textOf({{{}, fn::String("a\0", 2)}})),
              fn::String("a\0", 2));
}

TEST(ASSExporter, WritesEightMebibytesOfLineFeeds) {
    constexpr std::size_t size = 8 * 1024 * 1024;
    const fn::String result =
        ASSExporter().attributedTextToString(textOf({{{}, std::string(size, '\n')}}));
    EXPECT_EQ(result.size(), 2 * size);
}

}  // namespace
}  // namespace subtitles
