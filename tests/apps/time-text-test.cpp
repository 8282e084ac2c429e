// SPDX-License-Identifier: LGPL-2.1-or-later

#include "time-text.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace {

struct PrintCase {
    const char* name;
    std::uint64_t time;  // nanoseconds
    const char* milliseconds;
    const char* centiseconds;
};

constexpr PrintCase printCases[] = {
    {"Zero", 0, "00:00:00.000", "0:00:00.00"},
    {"EveryPart", 3723004000000, "01:02:03.004", "1:02:03.00"},
    {"BelowHalf", 1499999, "00:00:00.001", "0:00:00.00"},
    {"HalfIsRoundedUp", 1500000, "00:00:00.002", "0:00:00.00"},
    {"HalfOfAHundredth", 5000000, "00:00:00.005", "0:00:00.01"},
    {"RoundedIntoTheNextHour", 3599999999999, "01:00:00.000", "1:00:00.00"},
    {"ManyHours", 360000000000000, "100:00:00.000", "100:00:00.00"},
    {"TheLargest", 18446744073709551615U, "5124095:34:33.710", "5124095:34:33.71"},
};

class PrintedTime : public testing::TestWithParam<PrintCase> {};

TEST_P(PrintedTime, IsRoundedToItsUnit) {
    EXPECT_EQ(tool::millisecondText(GetParam().time), GetParam().milliseconds);
    EXPECT_EQ(tool::centisecondText(GetParam().time), GetParam().centiseconds);
}

INSTANTIATE_TEST_SUITE_P(Cases, PrintedTime, testing::ValuesIn(printCases),
                         [](const auto& test) { return test.param.name; });

struct ReadCase {
    const char* name;
    const char* text;
    const char* time;   // nanoseconds, "none" where it is no time
    const char* shift;  // the same where a sign is allowed
};

template <class Number>
std::string describe(const std::optional<Number>& number) {
    return number ? std::to_string(*number) : "none";
}

constexpr ReadCase readCases[] = {
    {"Seconds", "90", "90000000000", "90000000000"},
    {"Fraction", "1.5", "1500000000", "1500000000"},
    {"FractionWithComma", "1,25", "1250000000", "1250000000"},
    {"Nanosecond", "0.000000001", "1", "1"},
    {"Minutes", "90:01", "5401000000000", "5401000000000"},
    {"Hours", "1:02:03.004", "3723004000000", "3723004000000"},
    {"AMillionHours", "1000000:00:00", "3600000000000000000", "3600000000000000000"},
    {"MoreHours", "1000000:00:01", "none", "none"},
    {"Later", "+2", "none", "2000000000"},
    {"Earlier", "-0:01.5", "none", "-1500000000"},
    {"Empty", "", "none", "none"},
    {"SignAlone", "-", "none", "none"},
    {"TwoSigns", "--1", "none", "none"},
    {"FourParts", "1:2:3:4", "none", "none"},
    {"SixtySeconds", "1:60", "none", "none"},
    {"SixtyMinutes", "1:60:00", "none", "none"},
    {"EmptyPart", "1::2", "none", "none"},
    {"NoSeconds", "1:", "none", "none"},
    {"NoWholePart", ".5", "none", "none"},
    {"NoFraction", "1.", "none", "none"},
    {"TenDigits", "0.0000000001", "none", "none"},
    {"PointInMinutes", "1.5:00", "none", "none"},
    {"Unit", "5s", "none", "none"},
    {"Blank", " 5", "none", "none"},
    {"Word", "inf", "none", "none"},
};

class ReadTime : public testing::TestWithParam<ReadCase> {};

TEST_P(ReadTime, IsExact) {
    EXPECT_EQ(describe(tool::parseTime(GetParam().text)), GetParam().time);
    EXPECT_EQ(describe(tool::parseShift(GetParam().text)), GetParam().shift);
}

INSTANTIATE_TEST_SUITE_P(Cases, ReadTime, testing::ValuesIn(readCases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
