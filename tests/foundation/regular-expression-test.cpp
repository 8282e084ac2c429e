// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/regular-expression.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"

namespace {

using fn::RegularExpression;
using Match = RegularExpression::Match;

/// The result of `match` on one line: "3: [0+5 abcde] [1+2 bc] [name=4+1 e]".
std::string printMatch(const RegularExpression& expression, const fn::String& subject,
                       unsigned long start = 0) {
    std::vector<Match> matches;
    std::string text = std::to_string(expression.match(subject, start, matches)) + ":";
    for (const Match& match : matches) {
        text += " [" + (match.name.empty() ? "" : match.name + "=") + std::to_string(match.offset) +
                "+" + std::to_string(match.length) + " " +
                subject.substr(match.offset, match.length) + "]";
    }
    return text;
}

struct MatchCase {
    const char* name;
    const char* pattern;
    RegularExpression::Options options;
    const char* subject;
    unsigned long start;
    const char* expected;
};

constexpr RegularExpression::Options utf8 = RegularExpression::UTF8;

constexpr MatchCase matchCases[] = {
    {"FindsFirstMatchUnanchored", "b+", 0, "abbcb", 0, "1: [1+2 bb]"},
    {"NoMatchIsZeroAndEmpty", "x", 0, "abc", 0, "0:"},
    {"GroupsComeInOrder", R"((\d+):(\d+))", utf8, "at 12:345", 0,
     "3: [3+6 12:345] [3+2 12] [6+3 345]"},
    {"GroupWithoutPartIsEmpty", "(a)|(b)", 0, "b", 0, "3: [0+1 b] [0+0 ] [0+1 b]"},
    {"LastGroupWithoutPartIsEmpty", "(b)|(a)", 0, "b", 0, "3: [0+1 b] [0+1 b] [0+0 ]"},
    {"NamedGroupTellsItsName", "(?<hours>\\d+)h(\\d+)", 0, "3h20", 0,
     "3: [0+4 3h20] [hours=0+1 3] [2+2 20]"},
    {"OffsetsAreBytes", "b", utf8,
     "\xc3\xa4\xe2\x82\xac"
     "b",
     0, "1: [5+1 b]"},
    {"StartSkipsWhatLiesBefore", "a", 0, "aba", 1, "1: [2+1 a]"},
    {"StartAtEndMatchesEmpty", "$", 0, "ab", 2, "1: [2+0 ]"},
    {"StartBehindEndIsNoMatch", "a*", 0, "ab", 3, "0:"},
    {"DotTakesCodePointWithUTF8", "^.$", utf8, "\xe2\x82\xac", 0, "1: [0+3 \xe2\x82\xac]"},
    {"DotTakesByteWithoutUTF8", "^.", 0, "\xe2\x82\xac", 0, "1: [0+1 \xe2]"},
    {"MalformedTextIsBytesWithoutUTF8", "b", 0,
     "\xff"
     "b",
     0, "1: [1+1 b]"},
    {"DigitsAreASCIIWithUTF8", "\\d", utf8,
     "\xd9\xa3"
     "3",
     0, "1: [2+1 3]"},
    {"SrtTimeLine", R"((\d+):(\d+):(\d+)[\.,](\d+)\s*-->\s*(\d+):(\d+):(\d+)[\.,](\d+).*)", utf8,
     "1:2:3,4 --> 5:6:7.8 X1:0", 0,
     "9: [0+24 1:2:3,4 --> 5:6:7.8 X1:0] [0+1 1] [2+1 2] [4+1 3] [6+1 4] [12+1 5] [14+1 6] "
     "[16+1 7] [18+1 8]"},
};

class RegularExpressionMatch : public testing::TestWithParam<MatchCase> {};

TEST_P(RegularExpressionMatch, Gives) {
    const RegularExpression expression(GetParam().pattern, GetParam().options);
    EXPECT_EQ(printMatch(expression, GetParam().subject, GetParam().start), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, RegularExpressionMatch, testing::ValuesIn(matchCases),
                         [](const auto& test) { return test.param.name; });

TEST(RegularExpressionMatch, NulIsAnOrdinaryByte) {
    const RegularExpression expression("b", utf8);
    EXPECT_EQ(printMatch(expression, fn::String("a\0b", 3)), "1: [2+1 b]");
}

TEST(RegularExpressionMatch, NamesOfAnEarlierResultDoNotStay) {
    std::vector<Match> matches;
    RegularExpression("(?<word>a)", 0).match("a", 0, matches);
    EXPECT_EQ(matches.at(1).name, "word");
    RegularExpression("(a)", 0).match("a", 0, matches);
    EXPECT_EQ(matches.at(1).name, "");
    RegularExpression("b", 0).match("a", 0, matches);
    EXPECT_TRUE(matches.empty());
}

struct SubstCase {
    const char* name;
    const char* pattern;
    RegularExpression::Options options;  // of the pattern
    const char* subject;
    unsigned long start;
    const char* replacement;
    RegularExpression::Options how;
    const char* expected;
};

constexpr RegularExpression::Options global = RegularExpression::Global;

constexpr SubstCase substCases[] = {
    {"FirstMatchOnly", "a", 0, "aaa", 0, "x", 0, "1: xaa"},
    {"EveryMatch", "a", 0, "abaa", 0, "xy", global, "3: xybxyxy"},
    {"NothingToReplace", "z", 0, "abc", 0, "x", global, "0: abc"},
    {"OverrideBlocksGo", R"(\{[^\}]*\})", utf8, "{\\i1}a{}b{c", 0, "", global, "2: ab{c"},
    {"ReplacementIsTakenAsItStands", "(a)", 0, "a", 0, "$1\\1", global, "1: $1\\1"},
    {"StartKeepsWhatLiesBefore", "a", 0, "aaa", 1, "x", global, "2: axx"},
    {"StartBehindEnd", "a*", 0, "a", 2, "x", global, "0: a"},
    {"EmptyMatchesStandBetweenBytes", "", 0, "ab", 0, "-", global, "3: -a-b-"},
    {"EmptyMatchesAdvanceByCodePoint", "", utf8, "\xc3\xa4\xe2\x82\xac", 0, "-", global,
     "3: -\xc3\xa4-\xe2\x82\xac-"},
    {"EmptyMatchBehindFullOne", "x*", 0, "axb", 0, "-", global, "4: -a--b-"},
    {"EmptyMatchThenFullOneAtTheSamePlace", "|a", 0, "ab", 0, "-", global, "4: ---b-"},
    {"EmptySubject", "a*", 0, "", 0, "x", global, "1: x"},
    {"AnchorMatchesAtTheStartOnly", "^a", 0, "aab", 0, "", global, "1: ab"},
    {"WordsBorderSeesTheTextBefore", "\\ba", 0, "aa a", 0, "x", global, "2: xa x"},
    {"KeptTextIsNoPartOfTheMatch", "a\\K", 0, "aa", 0, "-", global, "2: a-a-"},
};

class RegularExpressionSubst : public testing::TestWithParam<SubstCase> {};

TEST_P(RegularExpressionSubst, Gives) {
    const SubstCase& test = GetParam();
    const RegularExpression expression(test.pattern, test.options);
    fn::String subject = test.subject;
    const int count = expression.subst(subject, test.start, test.replacement, test.how);
    EXPECT_EQ(std::to_string(count) + ": " + subject, test.expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, RegularExpressionSubst, testing::ValuesIn(substCases),
                         [](const auto& test) { return test.param.name; });

TEST(RegularExpressionSubst, GlobalIsBit36) {
    EXPECT_EQ(RegularExpression::Global, 68719476736U);
    EXPECT_EQ(RegularExpression::UTF8, 524288U);
}

TEST(RegularExpressionSubst, ManyMatchesInALongText) {
    constexpr std::size_t count = 1U << 20U;
    fn::String subject;
    fn::String expected;
    for (std::size_t i = 0; i < count; ++i) {
        subject += "{\\b1}\xc3\xa4";
        expected += "\xc3\xa4";
    }
    const RegularExpression expression(R"(\{[^\}]*\})", utf8);
    EXPECT_EQ(expression.subst(subject, 0, "", global), static_cast<int>(count));
    EXPECT_TRUE(subject == expected);
}

TEST(RegularExpressionSubst, ManyEmptyMatchesInALongText) {
    constexpr std::size_t count = 1U << 20U;
    fn::String subject(std::string(count, 'a'));
    EXPECT_EQ(RegularExpression("", utf8).subst(subject, 0, "-", global),
              static_cast<int>(count) + 1);
    EXPECT_EQ(subject.size(), 2 * count + 1);
}

struct MalformedCase {
    const char* name;
    const char* subject;
    unsigned long start;
};

constexpr MalformedCase malformedCases[] = {
    {"BadByte", "a\xff", 0},
    {"BadByteBeforeTheStart",
     "\xff"
     "aaaaaaaa",
     5},
    {"BadByteBehindTheMatch", "aaaaaaaa\xff", 0},
    {"CutSequence", "a\xe2\x82", 0},
    {"Overlong",
     "\xc0\xaf"
     "a",
     0},
    {"Surrogate",
     "\xed\xa0\x80"
     "a",
     0},
    {"AboveUnicode",
     "\xf4\x90\x80\x80"
     "a",
     0},
    {"FiveBytes",
     "\xf8\x88\x80\x80\x80"
     "a",
     0},
    {"StartInsideASequence",
     "\xc3\xa4"
     "a",
     1},
};

class RegularExpressionMalformed : public testing::TestWithParam<MalformedCase> {};

TEST_P(RegularExpressionMalformed, RaisesUTF8Exception) {
    const RegularExpression expression("a", utf8);
    std::vector<Match> matches;
    fn::String subject = GetParam().subject;
    EXPECT_THROW(expression.match(subject, GetParam().start, matches), fn::UTF8Exception);
    EXPECT_THROW(expression.subst(subject, GetParam().start, "x", global), fn::UTF8Exception);
    EXPECT_EQ(subject, GetParam().subject);
}

INSTANTIATE_TEST_SUITE_P(Cases, RegularExpressionMalformed, testing::ValuesIn(malformedCases),
                         [](const auto& test) { return test.param.name; });

TEST(RegularExpressionPattern, InvalidOneNamesItselfAndTheReason) {
    try {
        RegularExpression("a(b", 0);
        FAIL() << "nothing raised";
    } catch (const fn::DataFormatException& exception) {
        EXPECT_NE(exception.displayText().find("a(b"), fn::String::npos) << exception.what();
        EXPECT_NE(exception.displayText().find("parenthesis"), fn::String::npos)
            << exception.what();
    }
}

TEST(RegularExpressionPattern, MalformedUTF8Raises) {
    EXPECT_THROW(RegularExpression("\xff", utf8), fn::UTF8Exception);
    EXPECT_NO_THROW(RegularExpression("\xff", 0));
}

TEST(RegularExpressionPattern, MovesWithItsCompiledForm) {
    RegularExpression first("a", 0);
    RegularExpression second(std::move(first));
    EXPECT_EQ(printMatch(second, "a"), "1: [0+1 a]");
    RegularExpression third("b", 0);
    third = std::move(second);
    EXPECT_EQ(printMatch(third, "ba"), "1: [1+1 a]");
}

TEST(RegularExpressionPattern, DeepNestingOfTheSubjectEndsWithoutTheCompiledCodesStack) {
    // The group backtracks into each of its repetitions, which is more than the stack of compiled
    // code holds.
    const RegularExpression expression("^(?:a|ab)*$", 0);
    EXPECT_EQ(printMatch(expression, fn::String(std::string(300000, 'a'))).substr(0, 2), "1:");
}

TEST(RegularExpressionPattern, ExponentialSearchRaises) {
    std::vector<Match> matches;
    EXPECT_THROW(RegularExpression("^(a*?)*?(a*?)*?$", 0)
                     .match(fn::String(std::string(40, 'a') + "b"), 0, matches),
                 fn::RuntimeException);
}

TEST(RegularExpressionThreads, ShareOneObject) {
    const RegularExpression expression(R"((\d+)-(\d+))", utf8);
    std::vector<std::thread> threads;
    std::vector<int> wrong(4);
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        threads.emplace_back([&expression, &wrong, i] {
            const fn::String digits = std::string(i + 1, '7');
            const fn::String subject = "x" + digits + "-" + digits;
            std::vector<Match> matches;
            for (int k = 0; k < 2000; ++k) {
                const bool found = expression.match(subject, 0, matches) == 3;
                wrong[i] += !found || matches[1].length != i + 1 ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
