// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Which languages a style sheet names, and which classes a document uses.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "subtitles/smi-loader.h"

namespace subtitles {
namespace {

std::string describeLanguages(const SMILoader& loader) {
    std::string text;
    for (const SMILoader::LanguageEntry& entry : loader.getLanguages()) {
        text += "[" + entry.className + " code=" + entry.languageCode +
                " name=" + entry.languageName + "]";
    }
    return text;
}

/// What the sheet makes of the classes that a document's paragraphs have.
std::string languages(const char* sheetText, const std::vector<const char*>& classes) {
    SMILoader loader;
    for (const char* const name : classes) {
        loader.startElement("p", {{"class", name}});
    }
    StyleSheet sheet;
    sheet.parse(sheetText);
    loader.parseStylesheet(sheet);
    return describeLanguages(loader);
}

struct Case {
    const char* name;
    const char* sheet;
    const char* expected;  ///< For a document that uses the class x.
};

class SMIStyle : public testing::TestWithParam<Case> {};

TEST_P(SMIStyle, NamesLanguages) {
    EXPECT_EQ(languages(GetParam().sheet, {"X"}), GetParam().expected);
}

constexpr Case cases[] = {
    {"NameThenKnownCode", ".x {name: English; lang: en-US} ", "[x code=en name=]"},
    {"KnownCodeThenName", ".x {lang: en-US; name: English} ", "[x code=en name=]"},
    {"NameThenUnknownCode", ".x {name: Klingon; lang: xx} ", "[x code= name=Klingon]"},
    {"UnknownCodeThenName", ".x {lang: xx; name: Klingon} ", "[x code= name=Klingon]"},
    {"UnknownCodeAlone", ".x {lang: xx} ", "[x code= name=xx]"},
    {"NameAlone", ".x {name: Klingon} ", "[x code= name=Klingon]"},
    {"NoProperty", ".x {} ", "[x code= name=]"},
    {"OtherPropertiesAreNothing", ".x {color: red; name: Klingon; size: 1px} ",
     "[x code= name=Klingon]"},
    {"NamesAndClassesInAnyCase", ".X {NAME: English; Lang: en-US} ", "[x code=en name=]"},
    {"CodeIsKeptAsWritten", ".x {lang: EN} ", "[x code=EN name=]"},
    {"QuotedValue", ".x {lang: \"ko-KR\"} ", "[x code=ko name=]"},
    {"NumberIsNoName", ".x {name: 12} ", "[x code= name=]"},
    {"ColourIsNoName", ".x {name: #123456} ", "[x code= name=]"},
    {"SecondValueIsIgnored", ".x {name: Old Church} ", "[x code= name=Old]"},
    {"HyphenFirstLeavesNoCode", ".x {lang: -en} ", "[x code= name=]"},
    {"LastSelectorWithAClassDecides", "P.y, .x {lang: ko} ", "[x code=ko name=]"},
    {"SelectorWithoutClassDoesNotCount", ".x, P {lang: ko} ", "[x code=ko name=]"},
    {"FirstSegmentWithAClassDecides", "P .x.y {lang: ko} ", "[x code=ko name=]"},
    {"RuleWithoutClassAddsNothing", "P {lang: ko} ", "[x code= name=X]"},
    {"LastDefinitionStays", ".x {lang: ko} .X {name: Klingon} ", "[x code= name=Klingon]"},
    {"RootPropertiesAreNotLookedAt", "lang: ko; name: Korean; ", "[x code= name=X]"},
    {"UndefinedClassShowsInCapitals", "", "[x code= name=X]"},
};

INSTANTIATE_TEST_SUITE_P(Cases, SMIStyle, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(SMILanguages, TwoSelectorsDefineTheLastClassAlone) {
    EXPECT_EQ(languages("P.x, .y {lang: ko} ", {"x", "y"}), "[x code= name=X][y code=ko name=]");
}

TEST(SMILanguages, CodesMayBeManyAndComeAgain) {
    std::string rules;
    for (int i = 0; i < 1200; ++i) {
        rules += ".x {lang: q" + std::to_string(i) + "} ";
    }
    EXPECT_EQ(languages((rules + ".x {lang: ko} ").c_str(), {"X"}), "[x code=ko name=]");
    EXPECT_EQ(languages((rules + ".x {lang: q1; lang: q1199} ").c_str(), {"X"}),
              "[x code= name=q1]");
}

TEST(SMILanguages, DefinedClassThatNobodyUsesGivesNoEntry) {
    EXPECT_EQ(languages(".x {lang: ko} ", {}), "");
}

TEST(SMILanguages, EntriesComeInByteOrder) {
    EXPECT_EQ(languages("", {"KRCC", "ENCC"}), "[encc code= name=ENCC][krcc code= name=KRCC]");
}

}  // namespace
}  // namespace subtitles
