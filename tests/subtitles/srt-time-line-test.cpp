// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/srt-time-line.h"

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/regular-expression.h"
#include "foundation/string.h"

#include "tests/support/describe.h"

namespace {

namespace srt = subtitles::srt;
using Matches = std::vector<fn::RegularExpression::Match>;

/// "start-end", "no" or the exception's class.
template <class Read>
std::string answer(Read&& read) {
    try {
        return read();
    } catch (const fn::UTF8Exception& exception) {
        return fmt::format("{}: {}", exception.className(), exception.what());
    }
}

std::string parsed(const fn::String& line) {
    return answer([&]() -> std::string {
        const auto span = srt::parseTimeLine(fn::to_string_view(line));
        return span ? fmt::format("{}-{}", span->start, span->end) : "no";
    });
}

/// The groups with their places.
std::string groupsOf(const fn::String& line) {
    return answer([&]() -> std::string {
        const auto groups = srt::matchTimeLine(fn::to_string_view(line));
        std::string text = groups ? "" : "no";
        for (std::size_t i = 0; groups && i < groups->size(); ++i) {
            text += fmt::format("{}+{} ", (*groups)[i].data() - line.data(), (*groups)[i].size());
        }
        return text;
    });
}

/// What the reader would do with the expression alone: it asks nothing of a line without "-->".
std::string matched(const fn::String& line, bool withGroups) {
    return answer([&]() -> std::string {
        Matches matches;
        if (line.find("-->") == fn::String::npos || srt::time.match(line, 0, matches) == 0) {
            return "no";
        }
        if (!withGroups) {
            return fmt::format("{}-{}", srt::parseNumber(line, matches.cbegin() + 1),
                               srt::parseNumber(line, matches.cbegin() + 5));
        }
        std::string text;
        for (std::size_t i = 1; i < matches.size(); ++i) {
            text += fmt::format("{}+{} ", matches[i].offset, matches[i].length);
        }
        return text;
    });
}

struct Case {
    const char* name;
    const char* line;
    const char* expected;  // Nanoseconds.
};

constexpr Case cases[] = {
    {"Ordinary", "00:00:01,000 --> 00:00:02,500", "1000000000-2500000000"},
    {"AllParts", "01:02:03,004 --> 10:20:30,400", "3723004000000-37230400000000"},
    {"FractionsAreMillisecondsWhateverTheirDigits", "00:00:01.5 --> 00:00:02,50",
     "1005000000-2050000000"},
    {"LongFractionsReachIntoSeconds", "0:0:1,5000 --> 0:0:1,0005", "6000000000-1005000000"},
    {"MinutesAndSecondsHaveNoLimit", "00:99:99,000 --> 0:100:100,0", "6039000000000-6100000000000"},
    {"HoursWrapIn32Bits", "1193047:0:0,0 --> 1193046:0:0,0", "1904000000000-4294965600000000000"},
    {"MinutesWrapIn32Bits", "0:71582789:0,0 --> 0:71582788:0,0", "44000000000-4294967280000000000"},
    {"SecondsDoNotWrap", "0:0:4294967295,0 --> 0:1:4294967295,0",
     "4294967295000000000-4294967355000000000"},
    {"HugeNumbersCountAsNought", "0:0:4294967296,7 --> 99999999999999999999:0:1,0",
     "7000000-1000000000"},
    {"LeadingNoughtsAreNoLargeNumber", "0000000000000:0:0000000000001,1 --> 0:0:2,0",
     "1001000000-2000000000"},
    {"NoWhiteSpaceNeeded", "0:0:1,0-->0:0:2,0", "1000000000-2000000000"},
    {"AnyAsciiWhiteSpace", "0:0:1,0 \t\v\f\r-->\t\r 0:0:2,0", "1000000000-2000000000"},
    {"OtherWhiteSpaceIsNone", "0:0:1,0\xC2\xA0-->0:0:2,0", "no"},
    {"OtherDigitsAreNone", "0:0:1,0-->0:0:\xD9\xA2,0", "no"},
    {"TextInFrontAndBehind",
     "\xEF\xBB\xBF"
     "7 0:0:1,0 --> 0:0:2,0 X1:40 caf\xC3\xA9",
     "1000000000-2000000000"},
    {"DigitsInFrontBelongToTheHours", "a10:0:1,0 --> 0:0:2,0", "36001000000000-2000000000"},
    {"ANumberBeforeTheHoursIsIgnored", "9:0:0:1,0 --> 0:0:2,0:7", "1000000000-2000000000"},
    {"EndBeforeStart", "0:0:3,0 --> 0:0:2,0", "3000000000-2000000000"},
    {"TheFirstArrowThatFitsCounts", "--> 1 --> 0:0:1,0 --> 0:0:2,0 --> 0:0:3,0",
     "1000000000-2000000000"},
    {"BothSidesOfOneArrowCount", "0:0:1,0 --> x 0:0:2,0 --> 0:0:3,0", "2000000000-3000000000"},
    {"AnArrowWithALongTailIsNone", "0:0:1,0 ---> 0:0:2,0", "no"},
    {"AnArrowWithTwoHeadsIsNone", "0:0:1,0 -->> 0:0:2,0", "no"},
    {"AShortArrowIsNone", "0:0:1,0 -> 0:0:2,0", "no"},
    {"NoFraction", "0:0:1 --> 0:0:2,0", "no"},
    {"NoHours", "0:1,0 --> 0:0:2,0", "no"},
    {"NoEnd", "0:0:1,0 -->", "no"},
    {"NoStart", "--> 0:0:1,0", "no"},
    {"EmptyNumber", "0::1,0 --> 0:0:2,0", "no"},
    {"ColonBeforeTheFraction", "0:0:1:0 --> 0:0:2,0", "no"},
    {"PointBeforeTheSeconds", "0:0.1,0 --> 0:0:2,0", "no"},
    {"SignsAreNoNumbers", "0:0:1,0 --> 0:0:-2,0", "no"},
    {"Counter", "42", "no"},
    {"Nothing", "", "no"},
    {"MalformedWithoutAnArrowIsNoTimeLine", "\xFF 0:0:1,0", "no"},
};

class SrtTimeLine : public testing::TestWithParam<Case> {};

TEST_P(SrtTimeLine, IsRead) {
    EXPECT_EQ(parsed(GetParam().line), GetParam().expected);
    EXPECT_EQ(matched(GetParam().line, false), GetParam().expected);
    EXPECT_EQ(groupsOf(GetParam().line), matched(GetParam().line, true));
}

INSTANTIATE_TEST_SUITE_P(Cases, SrtTimeLine, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(SrtTimeLineErrors, AMalformedLineWithAnArrowRaisesWhatTheExpressionRaises) {
    for (const char* const line : {"0:0:1,0 --> 0:0:2,0 \xFF", "\xC3 --> ", "-->\xED\xA0\x80"}) {
        EXPECT_THROW(srt::parseTimeLine(line), fn::UTF8Exception);
        EXPECT_EQ(parsed(line), matched(line, false));
    }
}

TEST(SrtTimeLineErrors, TheByteZeroIsAByteLikeOthers) {
    const char line[] =
        "\0"
        "0:0:1,0 --> 0:0:2,0\0"
        "9";
    EXPECT_EQ(parsed(fn::String(line, sizeof line - 1)), "1000000000-2000000000");
    EXPECT_EQ(parsed(fn::String("0:0:1,0\0 --> 0:0:2,0", 20)), "no");
}

TEST(SrtTimeLineNumbers, AreReadFromFourGroups) {
    const fn::String line = "01:02:03,004 --> 00:00:05.6";
    Matches matches;
    ASSERT_EQ(srt::time.match(line, 0, matches), 9);
    EXPECT_EQ(srt::parseNumber(line, matches.begin() + 1), 3723004000000U);
    EXPECT_EQ(srt::parseNumber(line, matches.begin() + 5), 5006000000U);
}

/// Lines of pieces that are time lines often, and then changed here and there.
class RandomLine {
public:
    std::string operator()() {
        std::string line;
        switch (random() % 3) {
            case 0: line = anyPieces(); break;
            case 1: line = time() + space() + "-->" + space() + time(); break;
            default:
                line = time() + space() + "-->" + time() + pick(_pieces) + "-->" + time();
                break;
        }
        for (std::size_t count = random() % 3; count > 0; --count) {
            change(line);
        }
        return line;
    }

private:
    static constexpr const char* _pieces[] = {"0",    "12",       "345",     "4294967296",
                                              ":",    ",",        ".",       "-->",
                                              "-",    ">",        " ",       "\t",
                                              "\n",   "\r",       "x",       "\xC3\xA9",
                                              "\xFF", "\xC2\xA0", "1:2:3,4", "1:2:3.4 --> 1:2:4.5"};
    static constexpr const char* _spaces[] = {"", " ", "  ", "\t", "\v\f", "\n", "x"};

    template <std::size_t size>
    const char* pick(const char* const (&pieces)[size]) {
        return pieces[random() % size];
    }
    std::string space() { return pick(_spaces); }
    std::string number() { return std::to_string(random() >> (random() % 32)); }
    std::string time() {
        return number() + ":" + number() + ":" + number() + (random() % 2 == 0 ? "," : ".") +
               number();
    }
    std::string anyPieces() {
        std::string line;
        for (std::size_t count = random() % 24; count > 0; --count) {
            line += pick(_pieces);
        }
        return line;
    }
    void change(std::string& line) {
        const std::size_t at = random() % (line.size() + 1);
        if (random() % 2 == 0 && at < line.size()) {
            line.erase(at, 1 + random() % 2);
        } else {
            line.insert(at, pick(_pieces));
        }
    }

    std::mt19937 random{11};
};

TEST(SrtTimeLineOfRandomText, IsWhatTheExpressionSays) {
    RandomLine randomLine;
    int timeLines = 0;
    int errors = 0;
    for (int i = 0; i < 30000; ++i) {
        const fn::String line = randomLine();
        const std::string expected = matched(line, false);
        ASSERT_EQ(parsed(line), expected) << subtitles::escaped(fn::to_string_view(line));
        ASSERT_EQ(groupsOf(line), matched(line, true))
            << subtitles::escaped(fn::to_string_view(line));
        timeLines +=
            expected.find('-') != std::string::npos && expected.find(':') == std::string::npos;
        errors += expected.find(':') != std::string::npos;
    }
    // Each kind of line came often enough to mean something.
    EXPECT_GT(timeLines, 3000);
    EXPECT_GT(errors, 300);
    EXPECT_LT(timeLines + errors, 25000);
}

TEST(SrtTimeLineOfTheUsualForm, IsWhatTheExpressionSaysWhateverByteIsChanged) {
    const fn::String usual = "10:23:45,678 --> 98:76:54,321";
    for (std::size_t at = 0; at < usual.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            fn::String line = usual;
            line[at] = static_cast<char>(byte);
            ASSERT_EQ(parsed(line), matched(line, false))
                << subtitles::escaped(fn::to_string_view(line));
        }
    }
}

// Long lines, on which the expression alone would take the square of their length.

fn::String digits() {
    return fn::String(std::string(8388608, '1'));
}

TEST(SrtTimeLineLong, ADigitRunIsNoTimeLine) {
    EXPECT_EQ(parsed(digits()), "no");
    EXPECT_EQ(parsed(digits() + "-->"), "no");
    EXPECT_EQ(parsed("-->" + digits()), "no");
    EXPECT_EQ(parsed(digits() + ":1:1,1 --> "), "no");
}

TEST(SrtTimeLineLong, ADigitRunIsANumber) {
    // Eight million digits do not fit 32 bits.
    EXPECT_EQ(parsed(digits() + ":0:1,0 --> 0:0:2," + digits()), "1000000000-2000000000");
}

TEST(SrtTimeLineLong, ManyArrowsAndMuchWhiteSpace) {
    std::string line;
    for (int i = 0; i < 400000; ++i) {
        line += "1:1:1    -->    ";
    }
    EXPECT_EQ(parsed(line), "no");
    EXPECT_EQ(parsed(line + "1:1:1,1 --> 1:1:2,1"), "3661001000000-3662001000000");
}

}  // namespace
