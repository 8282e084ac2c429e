// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/language.h"

#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/encode.h"

using subtitles::Language;
using testing::ElementsAre;

namespace {

std::string print(const Language& language) {
    std::string text = language.name + ":";
    for (const fn::String& code : language.codes) {
        text += " " + code;
    }
    return text;
}

/// The rows as somebody else wrote them down: "Czech: CS CZE CZ".
std::vector<std::string> expectedRows() {
    std::istringstream in(test::readTestData("languages.txt"));
    std::vector<std::string> rows;
    for (std::string row; std::getline(in, row);) {
        rows.push_back(row);
    }
    return rows;
}

}  // namespace

TEST(LanguageTable, HoldsEveryRowInOrderAndUnknownBehindThem) {
    std::vector<std::string> expected = expectedRows();
    ASSERT_EQ(expected.size(), 192U);
    expected.emplace_back("Unknown: UND");
    std::vector<std::string> rows;
    for (const Language& language : Language::languages()) {
        rows.push_back(print(language));
    }
    EXPECT_EQ(rows, expected);
}

TEST(LanguageTable, IsTheExportedList) {
    EXPECT_EQ(&Language::languages(), &Language::_languages);
    EXPECT_EQ(Language::languages().size(), 193U);
    EXPECT_EQ(print(Language::_unknown), "Unknown: UND");
}

TEST(LanguageTable, EveryCodeFindsItsLanguageButTheShadowedOne) {
    for (const Language& language : Language::languages()) {
        for (const fn::String& code : language.codes) {
            const bool shadowed = language.name == "Korean" && code == "KR";
            EXPECT_EQ(Language::forCode(code).name, shadowed ? "Kanuri" : language.name) << code;
            EXPECT_EQ(&Language::forCode(code), &Language::forCode(code.toLowerCase())) << code;
        }
    }
}

struct Code {
    const char* name;
    fn::String code;
    const char* language;
};

class LanguageForCode : public testing::TestWithParam<Code> {};

TEST_P(LanguageForCode, Finds) {
    EXPECT_EQ(Language::forCode(GetParam().code).name, GetParam().language);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LanguageForCode,
    testing::Values(Code{"TwoLowerCaseLetters", "de", "German"}, Code{"MixedCase", "dE", "German"},
                    Code{"ThreeLetters", "GER", "German"},
                    Code{"AThreeLetterCodeThatTheTableLacks", "DEU", "Unknown"},
                    Code{"KrIsKanuriSinceItStandsFirst", "kr", "Kanuri"},
                    Code{"KoreanByItsOwnCodes", "kor", "Korean"},
                    Code{"SingleThreeLetterCode", "ast", "Asturian"},
                    Code{"AlternativeInTheThirdPlace", "cz", "Czech"},
                    Code{"TraditionalChinese", "zht", "Chinese (traditional)"},
                    Code{"BilingualChinese", "ze", "Chinese (bilingual)"},
                    Code{"BrazilianIsALanguageOfItsOwn", "pob", "Brazilian"},
                    Code{"Serbian", "scc", "Serbian"}, Code{"Manipuri", "ma", "Manipuri"},
                    Code{"NothingIsUnknown", "", "Unknown"}, Code{"Und", "und", "Unknown"},
                    Code{"UndInUpperCase", "UND", "Unknown"},
                    Code{"NamesAreNotSearched", "English", "Unknown"},
                    Code{"OnlyWholeCodesMatch", "e", "Unknown"},
                    Code{"NoTailIsLeftOut", "en.sdh", "Unknown"},
                    Code{"NoNulIsLeftOut", fn::String("en\0", 3), "Unknown"},
                    // U+212A is a kelvin sign, whose lower case in Unicode is "k".
                    Code{"OtherLettersAreNotFolded", "\xE2\x84\xAAR", "Unknown"},
                    Code{"NorAreTheBracketsNextToTheLetters", "[N", "Unknown"}),
    [](const auto& test) { return test.param.name; });

TEST(LanguageForCode, GivesTheUnknownEntryItselfWhereNothingMatches) {
    EXPECT_EQ(&Language::forCode(""), &Language::_unknown);
    EXPECT_EQ(&Language::forCode("DEU"), &Language::_unknown);
}

TEST(LanguageForCode, FindsUndInTheCopyAtTheEndOfTheTable) {
    EXPECT_EQ(&Language::forCode("und"), &Language::languages().back());
    EXPECT_EQ(&Language::forCode("UND"), &Language::languages().back());
    EXPECT_EQ(print(Language::forCode("und")), "Unknown: UND");
}

TEST(LanguageForCode, KeepsTheNameOfVolapukInUTF8) {
    EXPECT_EQ(Language::forCode("vo").name, "Volap\xC3\xBCk");
}

TEST(Language, MatchesAnyOfItsCodesInAnyCase) {
    const Language language("Test", std::vector<fn::String>{"aB",
                                                            "\xC3\x84"
                                                            "c"});
    EXPECT_TRUE(language.matches("Ab"));
    EXPECT_TRUE(
        language.matches("\xC3\x84"
                         "C"));
    EXPECT_FALSE(
        language.matches("\xC3\xA4"
                         "c"))
        << "only the letters of ASCII have a case";
    EXPECT_FALSE(language.matches("a"));
    EXPECT_FALSE(language.matches(""));
    EXPECT_THAT(Language("Test", "x").codes, ElementsAre("x"));
}

TEST(LanguageTable, IsFilledOnceWhoeverAsksFirst) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] { EXPECT_EQ(Language::forCode("en").name, "English"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(Language::languages().size(), 193U);
}
