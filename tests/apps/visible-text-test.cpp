// SPDX-License-Identifier: LGPL-2.1-or-later

#include "visible-text.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;  // NOLINT(google-build-using-namespace): texts with NULs

struct Case {
    const char* name;
    std::string_view text;
    std::string_view visible;  // several lines
    std::string_view line;     // one
    std::string_view valid;    // UTF-8 and nothing else
};

constexpr Case cases[] = {
    {"Ascii", "a <b>~"sv, "a <b>~"sv, "a <b>~"sv, "a <b>~"sv},
    {"Empty", ""sv, ""sv, ""sv, ""sv},
    {"Letters", "\u00E9\u65E5\U0001F600"sv, "\u00E9\u65E5\U0001F600"sv, "\u00E9\u65E5\U0001F600"sv,
     "\u00E9\u65E5\U0001F600"sv},
    {"EscapeSequence", "\x1B[31mx"sv, "\u241B[31mx"sv, "\u241B[31mx"sv, "\x1B[31mx"sv},
    {"LinesAndTabs", "a\tb\nc"sv, "a\tb\nc"sv, "a\u2409b\u240Ac"sv, "a\tb\nc"sv},
    {"CarriageReturn", "a\rb"sv, "a\u240Db"sv, "a\u240Db"sv, "a\rb"sv},
    {"NulAndDelete", "\0\x7F"sv, "\u2400\u2421"sv, "\u2400\u2421"sv, "\0\x7F"sv},
    {"OneByteEscapesOfSomeTerminals", "\u009B31m\u0080\u009F\u00A0"sv,
     "\uFFFD31m\uFFFD\uFFFD\u00A0"sv, "\uFFFD31m\uFFFD\uFFFD\u00A0"sv,
     "\u009B31m\u0080\u009F\u00A0"sv},
    {"MalformedBytes", "a\xFF\x9B\xC3"sv, "a\uFFFD\uFFFD\uFFFD"sv, "a\uFFFD\uFFFD\uFFFD"sv,
     "a\uFFFD\uFFFD\uFFFD"sv},
    {"Surrogate", "\xED\xA0\x80x"sv, "\uFFFD\uFFFD\uFFFDx"sv, "\uFFFD\uFFFD\uFFFDx"sv,
     "\uFFFD\uFFFD\uFFFDx"sv},
    {"Overlong", "\xC0\x9B"sv, "\uFFFD\uFFFD"sv, "\uFFFD\uFFFD"sv, "\uFFFD\uFFFD"sv},
    {"CutSequence", "a\xE2\x82"sv, "a\uFFFD\uFFFD"sv, "a\uFFFD\uFFFD"sv, "a\uFFFD\uFFFD"sv},
};

class VisibleText : public testing::TestWithParam<Case> {};

TEST_P(VisibleText, HasNoControlCharacters) {
    EXPECT_EQ(tool::visibleText(GetParam().text), GetParam().visible);
    EXPECT_EQ(tool::visibleLine(GetParam().text), GetParam().line);
    EXPECT_EQ(tool::validText(GetParam().text), GetParam().valid);
}

INSTANTIATE_TEST_SUITE_P(Cases, VisibleText, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(VisibleText, LeavesNoControlByteOfAny) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text{'a', static_cast<char>(byte), 'b'};
        for (const char c : tool::visibleLine(text)) {
            EXPECT_FALSE(static_cast<unsigned char>(c) < 0x20 || c == '\x7F') << byte;
        }
    }
}

TEST(DisplayWidth, CountsColumns) {
    EXPECT_EQ(tool::displayWidth(""), 0U);
    EXPECT_EQ(tool::displayWidth("abc"), 3U);
    EXPECT_EQ(tool::displayWidth("\u00E9"), 1U);
    EXPECT_EQ(tool::displayWidth("e\u0301"), 1U);
    EXPECT_EQ(tool::displayWidth("\uD55C\uAD6D"), 4U);
}

TEST(ClippedToWidth, KeepsWholeLettersThatFit) {
    EXPECT_EQ(tool::clippedToWidth("abc", 3), "abc");
    EXPECT_EQ(tool::clippedToWidth("abc", 2), "ab");
    EXPECT_EQ(tool::clippedToWidth("abc", 0), "");
    EXPECT_EQ(tool::clippedToWidth("", 5), "");
    EXPECT_EQ(tool::clippedToWidth("\uD55C\uAD6D", 3), "\uD55C");
    EXPECT_EQ(tool::clippedToWidth("ae\u0301b", 2), "ae\u0301");
}

}  // namespace
