// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/attributed-text.h"

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/describe.h"

namespace subtitles {
namespace {

TEST(PlainToAttributedText, EmptyTextIsOneRun) {
    const AttributedText text = plainToAttributedText("");
    ASSERT_EQ(text.size(), 1U);
    EXPECT_EQ(text[0].attributes.attributeMask, 0U);
    EXPECT_EQ(text[0].attributes.fontWeight, 400);
    EXPECT_TRUE(text[0].attributes.fallback);
    EXPECT_EQ(text[0].text, "");
}

TEST(PlainToAttributedText, TakesTheTextAsItStands) {
    EXPECT_EQ(describe(plainToAttributedText("one\ntwo <i>three</i>")), "[one\\ntwo <i>three</i>]");
    EXPECT_EQ(describe(plainToAttributedText(fn::String("a\0b", 3))), "[a\\0b]");
    EXPECT_EQ(describe(plainToAttributedText("\xFF")), "[\\xFF]");
}

AttributedText::Run run(const char* text) {
    AttributedText::Run result;
    result.text = text;
    return result;
}

TEST(AttributedText, StartsEmpty) {
    const AttributedText text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.size(), 0U);
    EXPECT_TRUE(text.begin() == text.end());
}

TEST(AttributedText, GrowsAtItsBackAndKeepsTheOrder) {
    AttributedText text;
    for (int i = 0; i < 10; ++i) {
        text.push_back(run(std::to_string(i).c_str()));
        EXPECT_EQ(text.size(), static_cast<std::size_t>(i) + 1);
    }
    EXPECT_EQ(describe(text), "[0][1][2][3][4][5][6][7][8][9]");
    EXPECT_EQ(text.front().text, "0");
    EXPECT_EQ(text.back().text, "9");
    EXPECT_EQ(text[3].text, "3");
}

TEST(AttributedText, CopiesOwnTheirRuns) {
    AttributedText text;
    text.push_back(run("a"));
    AttributedText copy = text;
    copy.back().text = "b";
    copy.push_back(text.back());
    EXPECT_EQ(describe(text), "[a]");
    EXPECT_EQ(describe(copy), "[b][a]");
}

// Whoever splits a run appends a copy of the last one.
TEST(AttributedText, AppendsACopyOfItsOwnRun) {
    AttributedText text;
    text.push_back(run("a text that is too long to be kept inside of its string"));
    for (int i = 0; i < 8; ++i) {
        text.push_back(text.back());
    }
    for (const AttributedText::Run& each : text) {
        EXPECT_EQ(each.text, "a text that is too long to be kept inside of its string");
    }
}

TEST(AttributedText, CanBeCleared) {
    AttributedText text = plainToAttributedText("a");
    text.clear();
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(describe(text), "");
}

}  // namespace
}  // namespace subtitles
