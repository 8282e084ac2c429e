// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/ass-parser.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "subtitles/ass-exporter.h"
#include "subtitles/subtitle-parser.h"

#include "tests/subtitles/formats-reference.h"
#include "tests/support/describe.h"
#include "tests/support/random-text.h"

namespace subtitles {
namespace {

struct Case {
    const char* name;
    const char* entry;
    const char* expected;
};

constexpr Case entries[] = {
    {"EmptyEntryHasNoRuns", "", ""},
    {"EightFieldsHaveNoRuns", "0,0,Default,,0,0,0,Hello", ""},
    {"NineFields", "0,0,Default,,0,0,0,,Hello", "[Hello\\0]"},
    {"TextKeepsItsCommas", "0,0,Default,,0,0,0,,Hello, world", "[Hello, world\\0]"},
    {"EmptyTextIsARun", "0,0,Default,,0,0,0,,", "[\\0]"},
    {"OtherFieldsCanBeEmpty", ",,,,,,,,x", "[x\\0]"},
    {"DrawingCodeInAnotherFieldIsNoDrawing", "0,0,\\p1,,0,0,0,,x", "[x\\0]"},
    {"MalformedOtherFieldIsNotLookedAt", "0,0,\xFF,,0,0,0,,x", "[x\\0]"},
};

class ASSEntry : public testing::TestWithParam<Case> {};

TEST_P(ASSEntry, GivesRuns) {
    EXPECT_EQ(describe(ASSParser().parseEntry(GetParam().entry)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSEntry, testing::ValuesIn(entries),
                         [](const auto& test) { return test.param.name; });

AttributedText parseText(const fn::String& text) {
    return ASSParser().parseEntry("0,0,Default,,0,0,0,," + text);
}

constexpr Case texts[] = {
    // Each row of the codes.
    {"LowerNIsALineFeed", "line1\\nline2", "[line1\\nline2\\0]"},
    {"UpperNIsALineFeed", "line1\\Nline2", "[line1\\nline2\\0]"},
    {"HIsANoBreakSpace", "a\\hb",
     "[a\xC2\xA0"
     "b\\0]"},
    {"ItalicOpens", "{\\i1}x", "[style=2: x\\0]"},
    {"ItalicCloses", "{\\i1}x{\\i0}y", "[style=2: x][y\\0]"},
    {"Weight800OpensBold", "{\\b800}x", "[weight=700: x\\0]"},
    {"Weight700OpensBold", "{\\b700}x", "[weight=700: x\\0]"},
    {"Weight600OpensBold", "{\\b600}x", "[weight=700: x\\0]"},
    {"Weight500OpensBold", "{\\b500}x", "[weight=700: x\\0]"},
    {"Weight400ClosesBold", "{\\b700}x{\\b400}y", "[weight=700: x][y\\0]"},
    {"Weight300ClosesBold", "{\\b700}x{\\b300}y", "[weight=700: x][y\\0]"},
    {"Weight200ClosesBold", "{\\b700}x{\\b200}y", "[weight=700: x][y\\0]"},
    {"Weight100ClosesBold", "{\\b700}x{\\b100}y", "[weight=700: x][y\\0]"},
    {"ZeroClosesBold", "{\\b700}x{\\b0}y", "[weight=700: x][y\\0]"},
    {"UnderlineOpens", "{\\u1}x", "[underline=1: x\\0]"},
    {"UnderlineCloses", "{\\u1}x{\\u0}y", "[underline=1: x][y\\0]"},
    {"StrikeThroughHasNoEffect", "a{\\s1}x{\\s0}y", "[axy\\0]"},
    // What the codes do not hold.
    {"PlainBoldHasNoEffect", "{\\b1}x", "[x\\0]"},
    {"Weight900HasNoEffect", "{\\b900}x", "[x\\0]"},
    {"Weight900DoesNotCloseBold", "{\\b700}x{\\b900}y", "[weight=700: xy\\0]"},
    {"BlockOfTwoCodesHasNoEffect", "{\\i1\\b700}x", "[x\\0]"},
    {"CodeBesideTextInABlockHasNoEffect", "{\\i1 }x{a\\i1}y", "[xy\\0]"},
    {"PositionCodeIsRemoved", "{\\an8}x", "[x\\0]"},
    {"UnknownBlocksAreRemoved", "a{\\c&HFF&}b{comment}c{}d", "[abcd\\0]"},
    {"BlockEndsAtTheFirstClosingBrace", "a{b{c}d}e", "[ad}e\\0]"},
    {"KnownCodeInABlockGoesWithIt", "{a{\\i1}b}c", "[c\\0]"},
    {"KnownCodeDoesNotCloseABlock", "x{a{\\i1}c", "[x]"},
    {"LineEndInABlockGoesWithIt", "a{x\\Ny}b", "[ab\\0]"},
    {"BackslashBeforeACodeStays", "a\\\\nb", "[a\\\\\\nb\\0]"},
    {"OtherBackslashesStay", "a\\tb\\", "[a\\\\tb\\\\\\0]"},
    // Drawings.
    {"DrawingHasNoRuns", "{\\p1}m 0 0 l 1 1{\\p0}", ""},
    {"DrawingAnywhereHasNoRuns", "text {\\p1}m 0 0{\\p0} text", ""},
    {"DrawingCodeOutsideABlockHasNoRuns", "a\\p1b", ""},
    {"DrawingOfScaleTenHasNoRuns", "{\\p10}m 0 0", ""},
    {"DrawingAmongOtherCodesHasNoRuns", "{\\an7\\p1\\pos(1,2)}m 0 0", ""},
    {"DrawingOfAnotherScaleIsText", "{\\p2}m 0 0", "[m 0 0\\0]"},
    {"EndOfADrawingIsText", "{\\p0}x", "[x\\0]"},
    // What the mark-up machine makes of the rest.
    {"TagsOfTheTextCount", "<b>x</b><font color=\"#ff0000\">y",
     "[weight=700: x][color=ff0000: y\\0]"},
    {"CodesAndTagsAreTheSame", "{\\i1}x</i>y", "[style=2: x][y\\0]"},
    {"UnclosedBlockEndsTheText", "x{\\b700", "[x]"},
    {"UnclosedBlockLosesTheRest", "x{y\\Nz", "[x]"},
    {"UnclosedTagEndsTheText", "x<b", "[x]"},
    {"TextEndsInAnAttribute", "{\\i1}x", "[style=2: x\\0]"},
    {"CodeAtTheEndLeavesTheNul", "{\\i1}x{\\i0}", "[style=2: x][\\0]"},
};

class ASSEventText : public testing::TestWithParam<Case> {};

TEST_P(ASSEventText, GivesRuns) {
    EXPECT_EQ(describe(parseText(GetParam().entry)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSEventText, testing::ValuesIn(texts),
                         [](const auto& test) { return test.param.name; });

TEST(ASSEntryText, EndsAtItsFirstNul) {
    EXPECT_EQ(describe(parseText(fn::String("a\0b", 3))), "[a\\0]");
}

TEST(ASSEntryText, IsRefusedWhereItIsMalformed) {
    EXPECT_THROW(parseText("a\xFF"), fn::UTF8Exception);
    EXPECT_THROW(parseText("{\xC3}"), fn::UTF8Exception);
    // A drawing has no text to be looked at.
    EXPECT_EQ(parseText("{\\p1}\xFF").size(), 0U);
}

TEST(ASSEntryText, IsRewrittenAsRowByRow) {
    test::RandomText random(
        {"\\",     "n",      "N",        "h",        "{",      "}",        "i",      "b",
         "u",      "s",      "0",        "1",        "700",    "\\n",      "\\N",    "\\h",
         "{\\i1}", "{\\i0}", "{\\b700}", "{\\b400}", "{\\b0}", "{\\u1}",   "{\\u0}", "{\\s1}",
         "{\\i1",  "\\i1}",  "<",        ">",        "x",      "\xC3\xA4", "<b>"});
    for (int i = 0; i < 20000; ++i) {
        const fn::String text = random.next(12);
        ASSERT_EQ(describe(parseText(text)),
                  describe(parseSRTFormatting(formats_reference::assMarkup(text))))
            << text;
    }
}

std::string plainTextOf(const AttributedText& text) {
    std::string plain;
    for (const AttributedText::Run& run : text) {
        plain += run.text;
    }
    return plain;
}

/// The plain text without the NUL that the mark-up machine leaves at its end.
std::string withoutNul(std::string text) {
    if (!text.empty() && text.back() == '\0') {
        text.pop_back();
    }
    return text;
}

// SRT text as cues have it, through ASS and back. The text itself has no braces, backslashes, "<"
// or NUL, which ASS has no way to write; the tags are what gives the event its codes.
TEST(ASSRoundTrip, KeepsThePlainTextOfSRT) {
    test::RandomText random({"a",
                             "B",
                             " ",
                             "\n",
                             ",",
                             ":",
                             ">",
                             "&",
                             "\"",
                             "'",
                             "1",
                             "text",
                             "\xC2\xA0",
                             "\xC3\xA4",
                             "\xE2\x80\x8E",
                             "\xF0\x9F\x98\x80",
                             "<b>",
                             "</b>",
                             "<i>",
                             "</i>",
                             "<u>",
                             "</u>",
                             "<font color=\"red\">",
                             "<font color=\"#123456\">"});
    const ASSExporter exporter;
    for (int i = 0; i < 5000; ++i) {
        const fn::String markup = random.next(14);
        AttributedText cue = parseSRTFormatting(markup);
        const std::string plain = withoutNul(plainTextOf(cue));
        for (AttributedText::Run& run : cue) {
            run.text = withoutNul(run.text);
        }
        const fn::String event = exporter.attributedTextToString(cue);
        ASSERT_EQ(withoutNul(plainTextOf(parseText(event))), plain) << markup << " as " << event;
    }
}

/// A run of random text without braces, backslashes, "<" and NUL, with random attributes.
AttributedText::Run randomRun(test::RandomText& random) {
    AttributedText::Run run;
    run.text = random.next(6);
    run.attributes.attributeMask = static_cast<std::uint32_t>(random.below(0x100000));
    run.attributes.fontFamily = "Some Font";
    run.attributes.fontWeight =
        static_cast<TextAttributes::FontWeight>(100 * (1 + random.below(10)));
    run.attributes.fontStyle = static_cast<TextAttributes::FontStyle>(random.below(3));
    run.attributes.underline = static_cast<TextAttributes::Underline>(random.below(5));
    run.attributes.strikeThrough = random.below(2) == 1;
    run.attributes.fontSizeAbsolute = static_cast<int>(random.below(100));
    run.attributes.foregroundColor.green = static_cast<std::uint8_t>(random.below(256));
    return run;
}

TEST(ASSRoundTrip, KeepsThePlainTextOfAnyRuns) {
    test::RandomText random({"a", " ", "\n", ",", ">", "/", "&", "i", "b", "1", "-", "\xC2\xA0",
                             "\xE3\x81\x82", "text"});
    const ASSExporter exporter;
    for (int i = 0; i < 5000; ++i) {
        AttributedText text;
        for (std::size_t runs = random.below(6); runs != 0; --runs) {
            text.push_back(randomRun(random));
        }
        const fn::String event = exporter.attributedTextToString(text);
        ASSERT_EQ(withoutNul(plainTextOf(parseText(event))), plainTextOf(text)) << event;
    }
}

constexpr std::size_t largeSize = 8 * 1024 * 1024;

TEST(ASSEntryLarge, OpenBraces) {
    const std::string open(largeSize, '{');
    EXPECT_EQ(describe(parseText("a" + open)), "[a]");
    EXPECT_EQ(describe(parseText("a" + open + "}b")), "[ab\\0]");
}

TEST(ASSEntryLarge, OneCodeOverAndOver) {
    std::string codes;
    for (int i = 0; i < 200000; ++i) {
        codes += "{\\i1}";
    }
    EXPECT_EQ(describe(parseText(codes + "x")), "[style=2: x\\0]");
}

TEST(ASSEntryLarge, CommasAndBackslashes) {
    constexpr std::size_t size = 1024 * 1024;
    const AttributedText commas = ASSParser().parseEntry(std::string(size, ','));
    ASSERT_EQ(commas.size(), 1U);
    EXPECT_EQ(commas[0].text.size(), size - 8 + 1);
    EXPECT_EQ(parseText(std::string(size, '\\'))[0].text.size(), size + 1);
}

}  // namespace
}  // namespace subtitles
