// SPDX-License-Identifier: LGPL-2.1-or-later

#include "frame-rate.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace {

using tool::FrameRate;

struct RateCase {
    const char* name;
    const char* text;
    const char* expected;  // "" where it is no rate; "!" in front of one that no film has
};

std::string describe(const char* text) {
    const std::optional<FrameRate> rate = tool::parseFrameRate(text);
    return rate ? (tool::isPlausible(*rate) ? "" : "!") + tool::toString(*rate) : "";
}

constexpr RateCase rateCases[] = {
    {"Whole", "25", "25"},
    {"Decimal", "23.976", "2997/125"},
    {"DecimalComma", "23,976", "2997/125"},
    {"DecimalOfAWholeNumber", "25.000", "25"},
    {"Fraction", "24000/1001", "24000/1001"},
    {"FractionInLowestTerms", "48000/2002", "24000/1001"},
    {"Slowest", "1/1000", "1/1000"},
    {"Slower", "1/1001", "!1/1001"},
    {"SlowestDecimal", "0.001", "1/1000"},
    {"Fastest", "1000", "1000"},
    {"Faster", "1000.000001", "!1000000001/1000000"},
    {"FasterFraction", "1001/1", "!1001"},
    {"Zero", "0", "!0"},
    {"ZeroDecimal", "0.0", "!0"},
    {"EighteenDigits", "23.9760239760239760", "2997002997002997/125000000000000"},
    {"NineteenDigits", "23.97602397602397602", ""},
    {"Empty", "", ""},
    {"Infinite", "1/0", ""},
    {"Word", "inf", ""},
    {"NoNumber", "nan", ""},
    {"Negative", "-25", ""},
    {"Signed", "+25", ""},
    {"Exponent", "1e2", ""},
    {"NoWholePart", ".5", ""},
    {"NoFraction", "25.", ""},
    {"TwoPoints", "1.2.3", ""},
    {"DecimalInAFraction", "23.976/1", ""},
    {"TwoSlashes", "1/2/3", ""},
    {"Blank", " 25", ""},
    {"Unit", "25fps", ""},
    {"LongDigits",
     "1000000000000000000000000000000000000000000000000000000000000000000000000000000000000", ""},
};

class FrameRateText : public testing::TestWithParam<RateCase> {};

TEST_P(FrameRateText, IsReadExactly) {
    EXPECT_EQ(describe(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, FrameRateText, testing::ValuesIn(rateCases),
                         [](const auto& test) { return test.param.name; });

TEST(FrameTime, IsExactForEveryFrame) {
    EXPECT_EQ(tool::frameTime(0, {25, 1}), 0U);
    EXPECT_EQ(tool::frameTime(25, {25, 1}), 1000000000U);
    EXPECT_EQ(tool::frameTime(1, {24000, 1001}), 41708333U);
    // Three hours at the rate of films: no drift, 258,741.258 frames to a nanosecond.
    EXPECT_EQ(tool::frameTime(24000, {24000, 1001}), 1001000000000U);
    EXPECT_EQ(tool::frameTime(258741, {24000, 1001}), 10791655875000U);
}

TEST(FrameTime, TellsApartTheDecimalAndTheFraction) {
    EXPECT_EQ(tool::frameTime(258741, {2997, 125}), 10791666666666U);
}

TEST(FrameTime, EndsAtTheLargestTime) {
    constexpr std::uint64_t most = 0xFFFFFFFFFFFFFFFFU;
    EXPECT_EQ(tool::frameTime(most, {1, 1000}), most);
    EXPECT_EQ(tool::frameTime(most, {1, 999999999999999999U}), most);
    EXPECT_EQ(tool::frameTime(18446744073, {1, 1}), 18446744073000000000U);
    EXPECT_EQ(tool::frameTime(18446744074, {1, 1}), most);
    EXPECT_EQ(tool::frameTime(most, {1000, 1}), 18446744073709551615U);
}

}  // namespace
