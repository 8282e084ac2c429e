// SPDX-License-Identifier: LGPL-2.1-or-later

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "subtitles/ass-reader.h"

#include "tests/subtitles/formats-reference.h"
#include "tests/support/random-text.h"

namespace subtitles {
namespace {

struct Case {
    const char* name;
    const char* text;
    GstClockTime expected;  ///< Nanoseconds.
};

constexpr GstClockTime none = GST_CLOCK_TIME_NONE;

constexpr Case cases[] = {
    {"Ordinary", "0:00:01.50", 1500000000},
    {"HoursMinutesSeconds", "1:02:03.00", 3723000000000},
    {"OneDigitIsTenths", "0:00:01.5", 1500000000},
    {"TwoDigitsAreHundredths", "0:00:00.05", 50000000},
    {"OneAndTenAreTheSame", "0:00:00.10", 100000000},
    {"OneDigit", "0:00:00.1", 100000000},
    {"ThreeDigitsAreMilliseconds", "0:00:00.123", 123000000},
    {"NineDigitsAreNanoseconds", "0:00:00.123456789", 123456789},
    {"BelowANanosecondIsCut", "0:00:00.0000000019", 1},
    {"GreatestFraction", "0:00:00.4294967295", 429496729},
    {"FractionThatDoesNotFitIsZero", "0:00:01.4294967296", 1000000000},
    {"LongFractionOfZeros", "0:00:01.00000000000000000000000000000000000000", 1000000000},
    {"MinutesAndSecondsHaveNoLimit", "0:99:99.0", 6039000000000},
    {"TextAroundIsPassedOver", " x0:00:01.5 y", 1500000000},
    {"AnyByteSeparates", "0:00:01,5", 1500000000},
    {"ColonSeparates", "0:00:01:5", 1500000000},
    {"BlankSeparates", "0:00:01 5", 1500000000},
    {"CarriageReturnSeparates", "0:00:01\r5", 1500000000},
    {"OneByteOfALetterSeparates",
     "0:00:01\xC3"
     "5",
     1500000000},
    {"TwoBytesDoNotSeparate",
     "0:00:01\xC3\xA4"
     "5",
     none},
    {"LineFeedDoesNotSeparate", "0:00:1\n5", none},
    {"DigitSeparatesWhereNothingElseDoes", "0:00:123", 1300000000},
    {"DigitSeparatesBeforeALineFeed", "0:00:123\n5", 1300000000},
    {"DigitSeparatesBeforeALetter", "0:00:1234x", 12400000000},
    {"TwoDigitsOfSecondsAloneAreNoTime", "0:00:12", none},
    {"NoFraction", "0:00:12.", none},
    {"NoHours", "00:12.5", none},
    {"NoMinutes", "0::12.5", none},
    {"NoSeconds", "0:00:.5", none},
    {"SignIsPassedOver", "-0:00:01.5", 1500000000},
    {"Empty", "", none},
    {"FirstPartIsTheTime", "9:0:00:01.5", 32400010000000},
    {"LaterStartIsATime", "9:x0:00:01.5", 1500000000},
    {"HoursThatDoNotFitAreZero", "4294967296:00:01.5", 1500000000},
    {"HoursWrap", "1193047:00:00.0", 1904000000000},
    {"MinutesWrap", "0:71582789:00.0", 44000000000},
    {"SecondsDoNotWrap", "0:00:4294967295.0", 4294967295000000000},
    // The sum is a double, which has 53 bits.
    {"LargeTimesLoseTheirLowestDigits", "2777:46:40.000000001", 10000000000000000},
};

class ASSTime : public testing::TestWithParam<Case> {};

TEST_P(ASSTime, IsParsed) {
    EXPECT_EQ(ass::parseTime(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ASSTime, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

std::optional<std::array<fn::String, 4>> fieldsOf(const fn::String& text) {
    const ass::TimeFields fields = ass::findTime(fn::to_string_view(text));
    if (fields.fraction.empty()) {
        return {};
    }
    return {{fn::String(fields.hours), fn::String(fields.minutes), fn::String(fields.seconds),
             fn::String(fields.fraction)}};
}

TEST(ASSTimeFields, AreThoseOfTheExpressionOnAnyText) {
    test::RandomText random({"0", "1", "23", "456", ":", ":", ":", ".", ",", "x", "\n", "\r",
                             "\xFF", "0:0", ":1:", std::string(1, '\0')});
    for (int i = 0; i < 20000; ++i) {
        const fn::String text = random.next(12);
        ASSERT_EQ(fieldsOf(text), formats_reference::assTime(text)) << text;
    }
}

TEST(ASSTimeFields, AreThoseOfTheExpressionOnMutatedTimes) {
    test::RandomText random({"0:00:01.50", "1:23:45.6", " 0:00:1234", "12:34:56,789"});
    for (int i = 0; i < 20000; ++i) {
        std::string text = random.next(2);
        for (std::size_t mutations = random.below(5); mutations != 0; --mutations) {
            text = random.mutated(text);
        }
        ASSERT_EQ(fieldsOf(text), formats_reference::assTime(text)) << text;
    }
}

TEST(ASSTimeFields, OfTheUsualFormAreThoseOfTheExpressionWhateverByteIsChanged) {
    const fn::String usual = "1:23:45.67";
    for (std::size_t at = 0; at < usual.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            fn::String text = usual;
            text[at] = static_cast<char>(byte);
            ASSERT_EQ(fieldsOf(text), formats_reference::assTime(text)) << text;
        }
    }
}

TEST(ASSTimeUsual, IsWhatTheLongWayGives) {
    std::string text = "0:00:00.00";
    for (int hundredths = 0; hundredths < 10 * 3600 * 100; hundredths += 7) {
        const int seconds = hundredths / 100;
        const int numbers[] = {seconds / 3600, seconds / 60 % 60, seconds % 60, hundredths % 100};
        text[0] = static_cast<char>('0' + numbers[0]);
        for (std::size_t i = 1; i < 4; ++i) {
            text[3 * i - 1] = static_cast<char>('0' + numbers[i] / 10);
            text[3 * i] = static_cast<char>('0' + numbers[i] % 10);
        }
        ASSERT_EQ(ass::timeIn(text), static_cast<GstClockTime>(hundredths) * 10000000) << text;
        ASSERT_EQ(ass::timeIn(text), ass::toNanoseconds(ass::findTime(text))) << text;
    }
    // Minutes and seconds may be more than sixty.
    EXPECT_EQ(ass::timeIn("9:99:99.99"), ass::toNanoseconds(ass::findTime("9:99:99.99")));
}

TEST(ASSTimeLarge, DigitsInEveryField) {
    const std::string digits(8 * 1024 * 1024, '9');
    EXPECT_EQ(ass::parseTime(digits), none);
    EXPECT_EQ(ass::parseTime(digits + ":"), none);
    EXPECT_EQ(ass::parseTime("0:" + digits), none);
    EXPECT_EQ(ass::parseTime(digits + ":00:01.5"), 1500000000U);
    EXPECT_EQ(ass::parseTime("0:" + digits + ":01.5"), 1500000000U);
    EXPECT_EQ(ass::parseTime("0:00:" + digits + ".5"), 500000000U);
    EXPECT_EQ(ass::parseTime("0:00:01." + digits), 1000000000U);
    EXPECT_EQ(ass::parseTime("0:00:" + digits), 900000000U);
}

TEST(ASSTimeLarge, RunsOfDigitsOneBehindTheOther) {
    std::string text;
    for (int i = 0; i < 2 * 1024 * 1024; ++i) {
        text += "1:2;";
    }
    EXPECT_EQ(ass::parseTime(text), none);
    EXPECT_EQ(ass::parseTime(text + "0:0:1.5"), 1500000000U);
}

}  // namespace
}  // namespace subtitles
