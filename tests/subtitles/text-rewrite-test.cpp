// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/text-rewrite.h"

#include <array>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/random-text.h"

namespace subtitles {
namespace {

template <std::size_t count>
std::string oneAfterTheOther(fn::String text, const Rewrite (&rows)[count]) {
    for (const Rewrite& row : rows) {
        text.replaceAll(fn::String(row.found), fn::String(row.replacement));
    }
    return text;
}

constexpr Rewrite harmless[] = {{"|", "\n"}, {"{i}", "<i>"}, {"{b}", "<b>"}};
constexpr Rewrite repeated[] = {{"<", "&lt;"}, {"<", "&gt;"}};
constexpr Rewrite feedsALaterRow[] = {{"a", "b"}, {"b", "c"}};
constexpr Rewrite feedsAnEarlierRow[] = {{"b", "c"}, {"a", "b"}};
constexpr Rewrite completesALaterRow[] = {{"|", "{"}, {"{i}", "<i>"}};
constexpr Rewrite joinsALaterRow[] = {{"|", ""}, {"{i}", "<i>"}};
constexpr Rewrite fitsIntoALaterRow[] = {{"|", "i"}, {"{i}", "<i>"}};
constexpr Rewrite holdsALaterRow[] = {{"|", "x{i}x"}, {"{i}", "<i>"}};
constexpr Rewrite foundsOverlap[] = {{"ab", "1"}, {"bc", "2"}};
constexpr Rewrite foundsNest[] = {{"{{i}}", "1"}, {"{i}", "2"}};
constexpr Rewrite foundOverlapsItself[] = {{"aa", "1"}, {"b", "2"}};

static_assert(onePassIsEnough(harmless));
static_assert(onePassIsEnough(repeated), "the second row finds nothing");
static_assert(onePassIsEnough(feedsAnEarlierRow), "the earlier row is done by then");
static_assert(onePassIsEnough(foundOverlapsItself), "both ways take the left one first");
static_assert(!onePassIsEnough(feedsALaterRow));
static_assert(!onePassIsEnough(completesALaterRow));
static_assert(!onePassIsEnough(joinsALaterRow));
static_assert(!onePassIsEnough(fitsIntoALaterRow));
static_assert(!onePassIsEnough(holdsALaterRow));
static_assert(!onePassIsEnough(foundsOverlap));
static_assert(!onePassIsEnough(foundsNest));

struct Case {
    const char* name;
    const char* text;
    const char* expected;
};

constexpr Case cases[] = {
    {"EmptyTextStaysEmpty", "", ""},
    {"TextWithoutRowsIsCopied", "plain {x} text", "plain {x} text"},
    {"RowAtTheStart", "{i}x", "<i>x"},
    {"RowAtTheEnd", "x{b}", "x<b>"},
    {"RowsSideBySide", "{i}{b}||{i}", "<i><b>\n\n<i>"},
    {"StartOfARowIsNoRow", "{i{i}", "{i<i>"},
    {"RowCutOffAtTheEnd", "x{i", "x{i"},
};

class RewriterText : public testing::TestWithParam<Case> {};

TEST_P(RewriterText, GivesText) {
    EXPECT_EQ(Rewriter(harmless)(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, RewriterText, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(Rewriter, KeepsNulBytes) {
    EXPECT_EQ(Rewriter(harmless)(fn::StringView("a\0|\0", 4)), fn::String("a\0\n\0", 4));
}

TEST(Rewriter, AppendsToWhatIsThere) {
    fn::String result = "{i}";
    Rewriter(harmless).append(result, "{i}");
    EXPECT_EQ(result, "{i}<i>");
}

// Tables of two letters meet and overlap in every way there is. Where a table is said to need one
// pass only, one pass must give what its rows give one after the other.
TEST(Rewriter, IsTheSameAsOneAfterTheOtherWhereOnePassIsEnough) {
    test::RandomText random({"a", "b", "ab", "c"});
    std::size_t tables = 0;
    while (tables < 1000) {
        std::array<std::string, 6> texts;
        for (std::string& text : texts) {
            text = random.next(3);
        }
        const Rewrite rows[] = {{texts[0], texts[1]}, {texts[2], texts[3]}, {texts[4], texts[5]}};
        if (texts[0].empty() || texts[2].empty() || texts[4].empty() || !onePassIsEnough(rows)) {
            continue;
        }
        ++tables;
        for (int i = 0; i < 20; ++i) {
            const std::string text = random.next(12);
            ASSERT_EQ(Rewriter(rows)(text), oneAfterTheOther(fn::String(text), rows))
                << text << " with " << texts[0] << "=" << texts[1] << " " << texts[2] << "="
                << texts[3] << " " << texts[4] << "=" << texts[5];
        }
    }
}

}  // namespace
}  // namespace subtitles
