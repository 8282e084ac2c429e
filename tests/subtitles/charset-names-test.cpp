// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/charset-names.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    const char* answer;
    std::int64_t score;
    const char* expected;
};

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

constexpr Case cases[] = {
    {"CentralEuropeanIsEarned", "WINDOWS-1250", 1, "windows-1250"},
    {"CentralEuropeanByALot", "WINDOWS-1250", most, "windows-1250"},
    {"ATieGoesToTheWest", "WINDOWS-1250", 0, "windows-1252"},
    {"TooLittleGoesToTheWest", "WINDOWS-1250", -1, "windows-1252"},
    {"FarTooLittleGoesToTheWest", "WINDOWS-1250", least, "windows-1252"},
    {"LowerCaseIsJudgedAlike", "windows-1250", 0, "windows-1252"},
    {"LowerCaseEarnsItAlike", "windows-1250", 1, "windows-1250"},
    {"WesternIsNeverPromoted", "WINDOWS-1252", most, "windows-1252"},
    {"WesternIsNeverPromotedInLowerCase", "windows-1252", most, "windows-1252"},
    {"Big5", "Big5", 0, "CP950"},
    {"Big5InUpperCase", "BIG5", 0, "CP950"},
    {"Korean", "EUC-KR", 0, "CP949"},
    {"KoreanUnifiedHangul", "UHC", 0, "CP949"},
    {"AsciiIsNoAnswer", "ASCII", most, ""},
    {"NoAnswerStaysNone", "", most, ""},
    {"Utf8", "UTF-8", least, "UTF-8"},
    {"Cyrillic", "WINDOWS-1251", least, "WINDOWS-1251"},
    {"OtherSpellingsGoOutAsTheyCame", "big5", 0, "big5"},
    {"LongerNamesGoOutAsTheyCame", "WINDOWS-1250X", 0, "WINDOWS-1250X"},
    {"ANameWithoutConverterGoesOutAsItCame", "HZ-GB-2312", 0, "HZ-GB-2312"},
};

class CharsetNames : public testing::TestWithParam<Case> {};

TEST_P(CharsetNames, Are) {
    EXPECT_EQ(subtitles::charsetName(GetParam().answer, GetParam().score), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, CharsetNames, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

}  // namespace
