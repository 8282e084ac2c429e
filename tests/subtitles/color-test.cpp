// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/color.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/color-table.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

// The colour before each parse, so that a failed one shows that it left it alone.
constexpr Color before = {1, 2, 3};

// "failed" where the text is no colour; what the colour was is then looked at as well.
std::string parsed(const fn::String& text) {
    Color color = before;
    if (color.parse(text)) {
        return describe(color);
    }
    return color == before ? "failed" : "failed and changed to " + describe(color);
}

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

constexpr Case cases[] = {
    {"EmptyTextIsNoColor", "", "failed"},
    {"NoDigits", "#", "failed"},
    {"OneDigit", "#1", "failed"},
    {"TwoDigits", "#12", "failed"},
    {"FourDigits", "#1234", "failed"},
    {"FiveDigits", "#12345", "failed"},
    {"SevenDigits", "#1234567", "failed"},
    {"EightDigits", "#12345678", "failed"},
    {"TenDigits", "#1234567890", "failed"},
    {"ElevenDigits", "#12345678901", "failed"},
    {"ThirteenDigits", "#1234567890123", "failed"},
    {"FifteenDigits", "#123456789012345", "failed"},
    {"BadDigitAfterGoodChannels", "#12g", "failed"},
    {"BadDigitInTheMiddle", "#1g2", "failed"},
    {"SignIsNoDigit", "#+12", "failed"},
    {"BlankIsNoDigit", "#1 2", "failed"},
    {"LetterBeyondASCIIIsNoDigit", "#1\xC3\xA9", "failed"},
    {"OneDigitEach", "#abc", "aabbcc"},
    {"CapitalDigits", "#F00", "ff0000"},
    {"MixedCaseDigits", "#aBcDeF", "abcdef"},
    {"TwoDigitsEach", "#123456", "123456"},
    {"ThreeDigitsEachKeepTheLowByte", "#123456789", "316497"},
    {"FourDigitsEachKeepTheLowByte", "#123456789abc", "3478bc"},
    {"Name", "red", "ff0000"},
    {"NameInCapitals", "RED", "ff0000"},
    {"NameWithBlankInOtherCase", "Alice Blue", "f0f8ff"},
    {"NameWithoutBlankInOtherCase", "aliceblue", "f0f8ff"},
    {"LastName", "YellowGreen", "9acd32"},
    {"GrayOfX11", "gray", "bebebe"},
    {"GreyOfX11", "grey", "bebebe"},
    {"Gray50", "gray50", "7f7f7f"},
    {"GreenOfX11", "green", "00ff00"},
    {"MaroonOfX11", "maroon", "b03060"},
    {"PurpleOfX11", "purple", "a020f0"},
    {"White", "white", "ffffff"},
    {"BlankBeforeNameIsNotTrimmed", " red", "failed"},
    {"BlankBehindNameIsNotTrimmed", "red ", "failed"},
    {"BlankBeforeNumberSign", " #123", "failed"},
    {"UnknownName", "octarine", "failed"},
    {"StartOfNames", "alice", "failed"},
    {"NameBeforeTheFirst", "a", "failed"},
    {"NameBehindTheLast", "zinc", "failed"},
    {"DigitsWithoutNumberSign", "123456", "failed"},
};

class ColorParse : public testing::TestWithParam<Case> {};

TEST_P(ColorParse, GivesColor) {
    EXPECT_EQ(parsed(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ColorParse, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(Color, TextEndsAtItsFirstNul) {
    EXPECT_EQ(parsed(fn::String("#F00\0zz", 7)), "ff0000");
    EXPECT_EQ(parsed(fn::String("red\0zz", 6)), "ff0000");
    EXPECT_EQ(parsed(fn::String("\0red", 4)), "failed");
}

TEST(Color, LongTextsAreNoColors) {
    EXPECT_EQ(parsed(fn::String(std::string(1U << 20U, 'r'))), "failed");
    EXPECT_EQ(parsed(fn::String("#" + std::string(1U << 20U, '1'))), "failed");
}

TEST(Color, DefaultIsBlack) {
    EXPECT_EQ(describe(Color()), "000000");
}

TEST(Color, EqualOnAllChannels) {
    EXPECT_TRUE((Color{1, 2, 3} == Color{1, 2, 3}));
    EXPECT_TRUE((Color{1, 2, 3} != Color{0, 2, 3}));
    EXPECT_TRUE((Color{1, 2, 3} != Color{1, 0, 3}));
    EXPECT_TRUE((Color{1, 2, 3} != Color{1, 2, 0}));
}

TEST(Color, PrintsChannelsBelow16WithABlank) {
    EXPECT_EQ((Color{0xAB, 0xCD, 0xEF}.toString()), "#ABCDEF");
    EXPECT_EQ((Color{0x0A, 0x10, 0}.toString()), "# A10 0");
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

TEST(ColorTable, EveryRowIsFoundInAnyCase) {
    for (const ColorEntry& entry : colorEntries) {
        const std::string name = colorNames + entry.name;
        const std::string color = describe(Color{entry.red, entry.green, entry.blue});
        EXPECT_EQ(parsed(name), color) << name;
        EXPECT_EQ(parsed(upperCase(name)), color) << name;
        EXPECT_EQ(entry.zero, 0) << name;
    }
}

TEST(ColorTable, RowsAscendWithoutRegardToCase) {
    for (std::size_t i = 1; i < colorEntryCount; ++i) {
        EXPECT_LT(upperCase(colorNames + colorEntries[i - 1].name),
                  upperCase(colorNames + colorEntries[i].name));
    }
}

TEST(ColorTable, NamesLieBackToBack) {
    std::size_t next = 0;
    for (const ColorEntry& entry : colorEntries) {
        EXPECT_EQ(entry.name, next);
        next += std::strlen(colorNames + entry.name) + 1;
    }
    EXPECT_EQ(next, sizeof colorNames);
}

TEST(ColorTable, HasBothSpellingsAndAllShades) {
    std::size_t withBlank = 0;
    std::size_t shadesOfGray = 0;
    for (const ColorEntry& entry : colorEntries) {
        const std::string name = upperCase(colorNames + entry.name);
        const bool gray = name.rfind("GRAY", 0) == 0 || name.rfind("GREY", 0) == 0;
        withBlank += name.find(' ') != std::string::npos ? 1U : 0U;
        shadesOfGray += gray && name.size() > 4 && std::isdigit(name[4]) != 0 ? 1U : 0U;
    }
    EXPECT_EQ(colorEntryCount, 752U);
    EXPECT_EQ(withBlank, 95U);
    EXPECT_EQ(shadesOfGray, 202U);
    EXPECT_STREQ(colorNames + colorEntries[0].name, "alice blue");
    EXPECT_STREQ(colorNames + colorEntries[751].name, "YellowGreen");
}

}  // namespace
}  // namespace subtitles
