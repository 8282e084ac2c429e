// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/text-lines.h"

#include <cstddef>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "foundation/stream-reader.h"
#include "foundation/stream.h"
#include "foundation/string-view.h"

#include "tests/support/describe.h"

namespace {

/// Each line in brackets.
std::string linesOf(fn::StringView text) {
    std::string result;
    subtitles::TextLines lines(text);
    while (const auto line = lines.next()) {
        result += "[" + subtitles::escaped(*line) + "]";
    }
    EXPECT_FALSE(lines.next()) << "the end stays the end";
    return result;
}

std::string readLinesOf(fn::StringView text) {
    std::string result;
    fn::MemoryInputStream stream(text);
    fn::StreamReader reader(&stream);
    while (const auto line = reader.readLine()) {
        result += "[" + subtitles::escaped(fn::to_string_view(*line)) + "]";
    }
    return result;
}

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

constexpr Case cases[] = {
    {"NothingFromNothing", "", ""},
    {"TheLastLineNeedsNoLineFeed", "a\nb", "[a][b]"},
    {"NoEmptyLineBehindTheLastLineFeed", "a\nb\n", "[a][b]"},
    {"EmptyLines", "\n\na\n\n", "[][][a][]"},
    {"OneCarriageReturnGoesWithTheLineFeed", "a\r\nb\r\r\n\r\n", R"([a][b\r][])"},
    {"ALoneCarriageReturnIsAByte", "a\rb\r", R"([a\rb\r])"},
};

class TextLines : public testing::TestWithParam<Case> {};

TEST_P(TextLines, AreCut) {
    EXPECT_EQ(linesOf(GetParam().text), GetParam().expected);
    EXPECT_EQ(readLinesOf(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, TextLines, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(TextLinesOfRandomTexts, AreThoseOfAStreamReader) {
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i) {
        std::string text;
        for (std::size_t size = random() % 12; size > 0; --size) {
            text += std::string("\n\r\0ab", 5)[random() % 5];
        }
        EXPECT_EQ(linesOf(text), readLinesOf(text)) << subtitles::escaped(text);
    }
}

}  // namespace
