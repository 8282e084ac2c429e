// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Patterns on any subject: what `match` finds lies in the subject, malformed UTF-8 is always told,
// and replacing every match is what one gets who goes from match to match by hand.
//
// The first byte of an input chooses the pattern: PCRE2 has fuzzers of its own, and what a pattern
// can be made to take in time is no news.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/exception.h"
#include "foundation/regular-expression.h"
#include "foundation/string.h"
#include "foundation/utf8.h"

#include "fuzz/fuzz-require.h"

namespace {

using fn::RegularExpression;
using Matches = std::vector<RegularExpression::Match>;

// PCRE2's options for one search.
constexpr RegularExpression::Options anchored = 0x80000000U;
constexpr RegularExpression::Options notEmptyAtStart = 0x8U;

constexpr const char* patterns[] = {
    R"((\d+):(\d+):(\d+)[\.,](\d+)\s*-->\s*(\d+):(\d+):(\d+)[\.,](\d+).*)",
    R"(\{(\d+)\}\s*\{(\d*)\}\s*(.*))",
    R"((\d+):(\d+):(\d+).(\d+))",
    R"(\{[^\}]*\})",
    "",
    "a*",
    "|a",
    "\\b",
    "$",
    "(?<first>.)(?<second>\\w)?",
};
constexpr std::size_t patternCount = sizeof(patterns) / sizeof(patterns[0]);

// Some of the patterns take quadratic time.
constexpr std::size_t subjectLimit = 2048;

std::size_t nextCodePoint(const fn::String& subject, std::size_t position, bool isUTF8) {
    const char* const here = subject.data() + position;
    return position + (isUTF8 ? fn::utf8::decode(here, subject.data() + subject.size()).size : 1);
}

/// Replaces every match as Perl tells it: behind an empty match one that is not empty is tried at
/// the same place, and then the search starts a code point further.
fn::String substByHand(const RegularExpression& expression, bool isUTF8, const fn::String& subject,
                       const fn::String& replacement) {
    fn::String result;
    std::size_t copied = 0;
    std::size_t position = 0;
    bool wasEmpty = false;
    Matches matches;
    while (position <= subject.size()) {
        const auto options = wasEmpty ? anchored | notEmptyAtStart : 0;
        if (expression.match(subject, position, matches, options) == 0) {
            if (!wasEmpty || position == subject.size()) {
                break;
            }
            position = nextCodePoint(subject, position, isUTF8);
            wasEmpty = false;
            continue;
        }
        result.append(subject, copied, matches[0].offset - copied).append(replacement);
        copied = matches[0].offset + matches[0].length;
        position = copied;
        wasEmpty = matches[0].length == 0;
    }
    return result.append(subject, copied, fn::String::npos);
}

void requireInside(const Matches& matches, const fn::String& subject) {
    for (const auto& match : matches) {
        FUZZ_REQUIRE(match.offset <= subject.size());
        FUZZ_REQUIRE(match.length <= subject.size() - match.offset);
    }
}

void requireMalformed(const RegularExpression& expression, const fn::String& subject) {
    Matches matches;
    bool isRefused = false;
    try {
        expression.match(subject, 0, matches);
    } catch (const fn::UTF8Exception&) {
        isRefused = true;
    }
    FUZZ_REQUIRE(isRefused);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > subjectLimit) {
        return 0;
    }
    const bool isUTF8 = data[0] >= 0x80;
    const RegularExpression expression(patterns[data[0] % 0x80 % patternCount],
                                       isUTF8 ? RegularExpression::UTF8 : 0);
    fn::String subject(std::string(data + 1, data + size));
    if (isUTF8 && !fn::utf8::isValid(fn::to_string_view(subject))) {
        requireMalformed(expression, subject);
        return 0;
    }
    Matches matches;
    const int found = expression.match(subject, 0, matches);
    FUZZ_REQUIRE(found == static_cast<int>(matches.size()));
    requireInside(matches, subject);
    const fn::String expected = substByHand(expression, isUTF8, subject, "<>");
    const int count = expression.subst(subject, 0, "<>", RegularExpression::Global);
    FUZZ_REQUIRE(subject == expected);
    FUZZ_REQUIRE((count > 0) == (found > 0));
    return 0;
}
