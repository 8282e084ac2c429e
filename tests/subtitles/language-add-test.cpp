// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Adding to the table of languages. A program of its own: what is added stays, and what comes
// before the table's first reader needs a process in which nobody has read it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "subtitles/language.h"

using subtitles::Language;
using testing::ElementsAre;

TEST(LanguageAdd, PutsEarlyEntriesInFrontAndLateOnesBehindUnknown) {
    EXPECT_TRUE(Language::_languages.empty()) << "nothing is filled before somebody asks";
    Language::add("Early", "DE", "", "X3");
    EXPECT_EQ(Language::languages().size(), 194U);
    EXPECT_EQ(Language::languages().front().name, "Early");
    EXPECT_THAT(Language::languages().front().codes, ElementsAre("DE", "X3"));
    EXPECT_EQ(Language::forCode("de").name, "Early") << "it hides what stands behind it";
    EXPECT_EQ(Language::forCode("ger").name, "German");

    EXPECT_EQ(&Language::forCode(""), &Language::_unknown);
    Language::add("Late", "", "UND", "EN");
    EXPECT_EQ(Language::languages().size(), 195U);
    EXPECT_EQ(Language::languages().back().name, "Late");
    EXPECT_THAT(Language::languages().back().codes, ElementsAre("", "UND", "EN"));
    EXPECT_EQ(Language::forCode("en").name, "English");
    EXPECT_EQ(Language::forCode("und").name, "Unknown");
    EXPECT_EQ(Language::forCode("").name, "Late") << "an empty first code is a code";
}
