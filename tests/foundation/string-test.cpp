// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/string.h"

#include <clocale>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/utf8-iterator.h"

namespace fn {
namespace {

using testing::ElementsAre;

TEST(String, NullPointerIsTheEmptyText) {
    const char* const nothing = nullptr;
    EXPECT_EQ(String(nothing), "");
}

TEST(String, TextEndsAtItsFirstNul) {
    EXPECT_EQ(String("ab\0c").size(), 2U);
}

TEST(String, PointerAndLengthKeepNuls) {
    EXPECT_EQ(String("ab\0c", 4).size(), 4U);
}

TEST(String, PassesWhereTheStandardStringIsExpected) {
    const std::string copy = String("text");
    EXPECT_EQ(copy, "text");
    EXPECT_EQ(String(copy + "s"), "texts");
}

TEST(String, ComparesInPlainByteOrder) {
    EXPECT_LT(String("Z").compare(String("a")), 0);
    EXPECT_GT(String("\xC3\xA4").compare(String("z")), 0);
    EXPECT_EQ(String("a").compare(String("a")), 0);
}

TEST(String, EmptyNeedleIsFoundAtTheStart) {
    EXPECT_EQ(String("movie.srt").find("", 0, 0), 0U);
    EXPECT_EQ(String().find("", 0, 0), 0U);
    EXPECT_EQ(String("movie.srt").find("movie", 0, 5), 0U);
    EXPECT_EQ(String("a movie").find("movie", 0, 5), 2U);
    EXPECT_EQ(String("a").find("movie", 0, 5), String::npos);
}

TEST(String, EndsWith) {
    EXPECT_TRUE(String("movie.mkv").endsWith(String(".mkv")));
    EXPECT_TRUE(String("movie").endsWith(String()));
    EXPECT_TRUE(String().endsWith("", 0));
    EXPECT_FALSE(String("kv").endsWith(String(".mkv")));
    EXPECT_FALSE(String("movie.mkv").endsWith("avi", 3));
}

struct ReplaceCase {
    const char* name;
    const char* text;
    const char* what;
    const char* replacement;
    const char* expected;
};

class StringReplaceAll : public testing::TestWithParam<ReplaceCase> {};

TEST_P(StringReplaceAll, ChangesEveryOccurrence) {
    String text(GetParam().text);
    text.replaceAll(GetParam().what, GetParam().replacement);
    EXPECT_EQ(text, GetParam().expected);
}

constexpr ReplaceCase replaceCases[] = {
    {"EveryOccurrence", "a|b|c", "|", "\n", "a\nb\nc"},
    {"EmptyReplacementRemoves", "a--b--", "--", "", "ab"},
    {"LeftToRightWithoutOverlap", "aaa", "aa", "b", "ba"},
    {"ReplacementIsNotSearchedAgain", "a", "a", "aa", "aa"},
    {"NothingFound", "abc", "x", "y", "abc"},
    {"EmptyTextHasNoOccurrence", "", "x", "y", ""},
    {"EmptyWhatOccursNowhere", "abc", "", "y", "abc"},
    {"WholeText", "abc", "abc", "", ""},
};

INSTANTIATE_TEST_SUITE_P(Cases, StringReplaceAll, testing::ValuesIn(replaceCases),
                         [](const auto& test) { return test.param.name; });

TEST(String, ReplacesInEightMebibytesInOnePass) {
    String text(std::string(8 << 20, '|'));
    text.replaceAll("|", "--");
    EXPECT_EQ(text.size(), std::size_t{16} << 20);
}

struct IntCase {
    const char* name;
    const char* text;
    int base;
    const char* toInt;    ///< With the fallback -7.
    const char* toUInt;   ///< With the fallback 7.
    const char* toInt64;  ///< With the fallback -7.
};

class StringToInt : public testing::TestWithParam<IntCase> {};

TEST_P(StringToInt, GivesTheNumberOrTheFallback) {
    const String text(GetParam().text);
    const int base = GetParam().base;
    EXPECT_EQ(std::to_string(text.toInt(-7, base, nullptr)), GetParam().toInt);
    EXPECT_EQ(std::to_string(text.toUInt(7, base, nullptr)), GetParam().toUInt);
    EXPECT_EQ(std::to_string(text.toInt64(-7, base, nullptr)), GetParam().toInt64);
}

constexpr IntCase intCases[] = {
    {"Plain", "42", 10, "42", "42", "42"},
    {"LeadingZeros", "00042", 10, "42", "42", "42"},
    {"Empty", "", 10, "-7", "7", "-7"},
    {"NoDigit", "abc", 10, "-7", "7", "-7"},
    {"SignAlone", "-", 10, "-7", "7", "-7"},
    {"PlusAlone", "+", 10, "-7", "7", "-7"},
    {"TwoSigns", "+-5", 10, "-7", "7", "-7"},
    {"Negative", "-42", 10, "-42", "7", "-42"},
    {"Plus", "+42", 10, "42", "7", "42"},
    {"LeadingWhiteSpace", " \t\r\n42", 10, "42", "42", "42"},
    {"TailIsIgnored", "12pt", 10, "12", "12", "12"},
    {"LargestSigned", "2147483647", 10, "2147483647", "2147483647", "2147483647"},
    {"BeyondSigned", "2147483648", 10, "-7", "2147483648", "2147483648"},
    {"SmallestSigned", "-2147483648", 10, "-2147483648", "7", "-2147483648"},
    {"LargestUnsigned", "4294967295", 10, "-7", "4294967295", "4294967295"},
    {"BeyondUnsigned", "4294967296", 10, "-7", "7", "4294967296"},
    {"BeyondAll", "99999999999999999999", 10, "-7", "7", "-7"},
    {"Hexadecimal", "fF", 16, "255", "255", "255"},
    {"HexadecimalTail", "1g", 16, "1", "1", "1"},
};

INSTANTIATE_TEST_SUITE_P(Cases, StringToInt, testing::ValuesIn(intCases),
                         [](const auto& test) { return test.param.name; });

TEST(String, EmptyTextGivesTheFallbackInSixtyFourBits) {
    EXPECT_EQ(String().toInt64(-1, 10, nullptr), -1);
}

TEST(String, ToIntTellsWhereTheTailBegins) {
    unsigned long end = 99;
    EXPECT_EQ(String(" 12pt").toInt(0, 10, &end), 12);
    EXPECT_EQ(end, 3U);
    EXPECT_EQ(String("pt").toInt(5, 10, &end), 5);
    EXPECT_EQ(end, 0U);
}

TEST(String, AMillionDigitsDoNotFit) {
    EXPECT_EQ(String(std::string(1000000, '9')).toUInt(3, 10, nullptr), 3U);
    EXPECT_EQ(String(std::string(1000000, '0') + "5").toUInt(3, 10, nullptr), 5U);
}

struct FloatCase {
    const char* name;
    const char* text;
    double expected;  ///< With the fallback -7.
};

class StringToFloat : public testing::TestWithParam<FloatCase> {};

TEST_P(StringToFloat, ReadsAPlainDecimal) {
    EXPECT_EQ(String(GetParam().text).toFloat(-7.0, nullptr), GetParam().expected);
}

constexpr FloatCase floatCases[] = {
    {"Whole", "38", 38.0},
    {"Fraction", "127.5", 127.5},
    {"PointFirst", ".5", 0.5},
    {"MinusPoint", "-.5", -0.5},
    {"PointLast", "2.", 2.0},
    {"Plus", "+1.5", 1.5},
    {"LeadingSpace", " 1.5", 1.5},
    {"TailIsIgnored", "1.5em", 1.5},
    {"NoExponent", "1e3", 1.0},
    {"Empty", "", -7.0},
    {"Word", "abc", -7.0},
    {"Infinity", "inf", -7.0},
    {"NegativeInfinity", "-inf", -7.0},
    {"NotANumber", "nan", -7.0},
    {"PointAlone", ".", -7.0},
    {"CommaIsATail", "1,5", 1.0},
};

INSTANTIATE_TEST_SUITE_P(Cases, StringToFloat, testing::ValuesIn(floatCases),
                         [](const auto& test) { return test.param.name; });

TEST(String, ToBool) {
    for (const char* const yes : {"true", "TRUE", "1", "yes", "Yes", "on", "ON"}) {
        EXPECT_TRUE(String(yes).toBool()) << yes;
    }
    for (const char* const no : {"", "0", "false", "no", "off", "2", " true", "truest"}) {
        EXPECT_FALSE(String(no).toBool()) << no;
    }
}

struct TextCase {
    const char* name;
    const char* text;
    const char* expected;
};

class StringTrim : public testing::TestWithParam<TextCase> {};

TEST_P(StringTrim, RemovesWhiteSpaceAtBothEnds) {
    EXPECT_EQ(String(GetParam().text).trim(true), GetParam().expected);
}

constexpr TextCase trimCases[] = {
    {"Blanks", "  a b  ", "a b"},
    {"AllOfASCII", "\t\n\v\f\r a \r\f\v\n\t", "a"},
    {"Empty", "", ""},
    {"OnlyWhiteSpace", " \t\r\n", ""},
    {"IdeographicSpace",
     "\xE3\x80\x80"
     "a"
     "\xE3\x80\x80",
     "a"},
    {"NextLine",
     "\xC2\x85"
     "a"
     "\xC2\x85",
     "a"},
    {"EmSpaceAndLineSeparator",
     "\xE2\x80\x83"
     "a"
     "\xE2\x80\xA8",
     "a"},
    {"OghamSpaceAndMathSpace",
     "\xE1\x9A\x80"
     "a"
     "\xE2\x81\x9F",
     "a"},
    {"NoBreakSpaceStays", "\xC2\xA0", "\xC2\xA0"},
    {"FigureSpaceStays", " \xE2\x80\x87 ", "\xE2\x80\x87"},
    {"NarrowNoBreakSpaceStays",
     "\xE2\x80\xAF"
     "a",
     "\xE2\x80\xAF"
     "a"},
    {"ZeroWidthSpaceIsNoWhiteSpace",
     "\xE2\x80\x8B"
     "a",
     "\xE2\x80\x8B"
     "a"},
    {"ByteOrderMarkIsNoWhiteSpace",
     "\xEF\xBB\xBF"
     "1",
     "\xEF\xBB\xBF"
     "1"},
    {"FourByteCharacters", " \xF0\x9F\x98\x80 ", "\xF0\x9F\x98\x80"},
};

INSTANTIATE_TEST_SUITE_P(Cases, StringTrim, testing::ValuesIn(trimCases),
                         [](const auto& test) { return test.param.name; });

TEST(String, TrimRaisesOnMalformedTextAnywhere) {
    for (const char* const text : {"\xFF", "a \xC3 b", " \xED\xA0\x80 ", "a\xC0\x80",
                                   "\xF5\x80\x80\x80", "abcdefghijklmnop\xE2\x82"}) {
        EXPECT_THROW(String(text).trim(true), UTF8Exception) << text;
    }
}

TEST(String, TrimAsBytesRaisesNothing) {
    EXPECT_EQ(String(" \xFF\t").trim(false), "\xFF");
}

TEST(String, SplitWithALimitKeepsTheRest) {
    const auto pieces = String("a,b,c,d,e,f,g,h,i,j,k,l,m").split(',', String::KeepEmptyParts, 9);
    ASSERT_EQ(pieces.size(), 9U);
    EXPECT_EQ(pieces.back(), "i,j,k,l,m");
}

TEST(String, SplitKeepsOrDropsEmptyPieces) {
    EXPECT_THAT(String("a,,b").split(',', String::KeepEmptyParts, -1), ElementsAre("a", "", "b"));
    EXPECT_THAT(String("a,,b").split(',', String::TrimAndSkipEmptyParts, -1),
                ElementsAre("a", "b"));
}

TEST(String, SplitTrimsPiecesOnlyWhereItDropsEmptyOnes) {
    EXPECT_THAT(String("a, b, c").split(',', String::TrimAndSkipEmptyParts, -1),
                ElementsAre("a", "b", "c"));
    EXPECT_THAT(String("a, b, c").split(',', String::KeepEmptyParts, -1),
                ElementsAre("a", " b", " c"));
    EXPECT_THAT(String("a, ,\xFF ").split(',', String::TrimAndSkipEmptyParts, -1),
                ElementsAre("a", "\xFF"));
}

TEST(String, SplitOfAnEmptyText) {
    EXPECT_THAT(String().split(',', String::KeepEmptyParts, -1), ElementsAre(""));
    EXPECT_THAT(String().split(',', String::TrimAndSkipEmptyParts, -1), ElementsAre());
}

TEST(String, SplitOfSeparatorsAlone) {
    EXPECT_THAT(String(",").split(',', String::KeepEmptyParts, -1), ElementsAre("", ""));
    EXPECT_THAT(String("a\n").split('\n', String::KeepEmptyParts, -1), ElementsAre("a", ""));
    EXPECT_THAT(String(",,").split(',', String::KeepEmptyParts, 1), ElementsAre(",,"));
}

class StringToLowerCase : public testing::TestWithParam<TextCase> {};

TEST_P(StringToLowerCase, MapsCodePointByCodePoint) {
    EXPECT_EQ(String(GetParam().text).toLowerCase(), GetParam().expected);
}

constexpr TextCase lowerCases[] = {
    {"ASCII", "MOVIE.Srt", "movie.srt"},
    {"Latin", "\xC3\x84\xC3\x96", "\xC3\xA4\xC3\xB6"},
    {"Cyrillic", "\xD0\x9C", "\xD0\xBC"},
    {"Deseret", "\xF0\x90\x90\x80", "\xF0\x90\x90\xA8"},
    {"MalformedBytesStay",
     "A\xFF"
     "B\xC3",
     "a\xFF"
     "b\xC3"},
};

INSTANTIATE_TEST_SUITE_P(Cases, StringToLowerCase, testing::ValuesIn(lowerCases),
                         [](const auto& test) { return test.param.name; });

TEST(String, ToUpperCase) {
    EXPECT_EQ(String("encc\xC3\xA4\xFF").toUpperCase(), "ENCC\xC3\x84\xFF");
}

TEST(String, CaseDoesNotDependOnTheLocale) {
    // Installed or not: where it is, its I has no dot.
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "tr_TR.UTF-8");
    EXPECT_EQ(String("SMI").toLowerCase(), "smi");
    EXPECT_EQ(String("smi").toUpperCase(), "SMI");
    std::setlocale(LC_ALL, before.c_str());
}

TEST(String, ToLowerCaseASCIILeavesOtherBytesAlone) {
    EXPECT_EQ(String("AZ[\xC3\x84").toLowerCaseASCII(), "az[\xC3\x84");
    EXPECT_EQ(String("az{\xC3\xA4").toUpperCaseASCII(), "AZ{\xC3\xA4");
}

TEST(String, NumberPrintsDecimals) {
    EXPECT_EQ(String::number(0, 0, ' '), "0");
    EXPECT_EQ(String::number(-12, 0, ' '), "-12");
    EXPECT_EQ(String::number(std::numeric_limits<int>::min(), 0, ' '), "-2147483648");
    EXPECT_EQ(String::number(7, 3, '0'), "007");
    EXPECT_EQ(String::number(static_cast<unsigned char>(200), 0, ' '), "200");
}

TEST(String, NumberPrintsTheShortestDecimalThatReadsBack) {
    EXPECT_EQ(String::number(38.0F), "38");
    EXPECT_EQ(String::number(2.5F), "2.5");
    EXPECT_EQ(String::number(0.1F), "0.1");
    EXPECT_EQ(String::number(0.1), "0.1");
    EXPECT_EQ(String::number(46.0), "46");
    EXPECT_EQ(String::number(-0.5), "-0.5");
    EXPECT_EQ(String::number(1e21), "1000000000000000000000");
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(String::number(tiny).toFloat(0.0, nullptr), tiny);
    const double large = std::numeric_limits<double>::max();
    EXPECT_EQ(String::number(large).toFloat(0.0, nullptr), large);
}

TEST(String, NumberHexFillsOnTheLeft) {
    const auto byte = [](int value) { return static_cast<unsigned char>(value); };
    EXPECT_EQ(String::numberHex(byte(0x0A), 2, ' '), " A");
    EXPECT_EQ(String::numberHex(byte(0x0A), 2, '0'), "0A");
    EXPECT_EQ(String::numberHex(byte(0xFF), 2, ' '), "FF");
    EXPECT_EQ(String::numberHex(0x1FF, 2, '0'), "1FF");
}

TEST(String, IteratesOverCodePoints) {
    const String text("a\xC3\xA4\xF0\x9F\x98\x80");
    std::vector<std::uint32_t> codePoints;
    for (UTF8Iterator it = text.beginUTF8(); it != text.endUTF8(); ++it) {
        codePoints.push_back(*it);
    }
    EXPECT_THAT(codePoints, ElementsAre(0x61U, 0xE4U, 0x1F600U));
}

TEST(String, FindTurnsALiteralKeyIntoAString) {
    const std::map<String, String> map{{"class", "krcc"}};
    EXPECT_EQ(fn::find(map, "class")->second, "krcc");
    EXPECT_EQ(fn::find(map, "start"), map.end());
}

}  // namespace
}  // namespace fn
