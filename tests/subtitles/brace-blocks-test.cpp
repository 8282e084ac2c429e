// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/brace-blocks.h"

#include <cstddef>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/random-text.h"

namespace subtitles {
namespace {

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

constexpr Case cases[] = {
    {"EmptyTextStaysEmpty", "", ""},
    {"TextWithoutBracesStays", "a}b", "a}b"},
    {"BlockGoes", "a{b}c", "ac"},
    {"EmptyBlockGoes", "a{}c", "ac"},
    {"BlocksSideBySideGo", "{a}{b}c{d}", "c"},
    {"BlockEndsAtTheFirstClosingBrace", "a{b{c}d}e", "ad}e"},
    {"BlockHoldsLineFeeds", "a{\n}b", "ab"},
    {"UnclosedBraceStays", "a{b", "a{b"},
    {"UnclosedBraceBehindABlockStays", "a{b}c{d", "ac{d"},
    {"ClosingBraceBeforeStays", "}{", "}{"},
    {"ClosingBraceBehindABlockStays", "{a}}b", "}b"},
    {"UnclosedBracesBehindABlockStay", "{a}b{c{d", "b{c{d"},
    {"TextOfOneBlockGoes", "{a}", ""},
    {"LettersOfSeveralBytesGoWithTheirBlock", "\xC3\xA4{\xC3\xB6}\xC3\xBC", "\xC3\xA4\xC3\xBC"},
};

fn::String withoutBraceBlocks(fn::String text) {
    removeBraceBlocks(text);
    return text;
}

class BraceBlocks : public testing::TestWithParam<Case> {};

TEST_P(BraceBlocks, AreRemoved) {
    EXPECT_EQ(withoutBraceBlocks(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, BraceBlocks, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(BraceBlocksOfMalformedText, AreRefused) {
    EXPECT_THROW(withoutBraceBlocks("a\xFF{b}"), fn::UTF8Exception);
    EXPECT_THROW(withoutBraceBlocks("no block \xC3"), fn::UTF8Exception);
    fn::String text = "{a}\xFF";
    EXPECT_THROW(removeBraceBlocks(text), fn::UTF8Exception);
    EXPECT_EQ(text, "{a}\xFF");
}

/// Nothing where the text is refused.
std::optional<fn::String> byExpression(fn::String text) {
    try {
        braceBlock.subst(text, 0, "", fn::RegularExpression::Global);
        return text;
    } catch (const fn::UTF8Exception&) {
        return {};
    }
}

std::optional<fn::String> byFunction(const fn::String& text) {
    try {
        return withoutBraceBlocks(text);
    } catch (const fn::UTF8Exception&) {
        return {};
    }
}

TEST(BraceBlocksOfAnyText, AreThoseOfTheExpression) {
    test::RandomText random(
        {"{", "{", "}", "}", "a", "\n", "\xC3\xA4", "\xC3", std::string(1, '\0'), "\\", "{\\i1}"});
    for (int i = 0; i < 5000; ++i) {
        const fn::String text = random.next(14);
        ASSERT_EQ(byFunction(text), byExpression(text)) << text;
    }
}

TEST(BraceBlocksOfLargeTexts, AreRemoved) {
    constexpr std::size_t size = 8 * 1024 * 1024;
    const fn::String open(size, '{');
    EXPECT_EQ(withoutBraceBlocks(open), open);
    EXPECT_EQ(withoutBraceBlocks(open + "}"), "");
    EXPECT_EQ(withoutBraceBlocks(fn::String(size, '}')).size(), size);
}

}  // namespace
}  // namespace subtitles
