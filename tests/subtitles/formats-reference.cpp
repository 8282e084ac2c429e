// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/subtitles/formats-reference.h"

#include <cstddef>
#include <vector>

#include "foundation/regular-expression.h"

#include "subtitles/ass-reader.h"
#include "subtitles/microdvd-parser.h"

namespace formats_reference {
namespace {

struct Row {
    const char* found;
    const char* replacement;
};

constexpr Row microDVDRows[] = {
    {"|", "\n"},      {"{y:i}", "<i>"}, {"{y:u}", "<u>"}, {"{y:b}", "<b>"},
    {"{Y:i}", "<i>"}, {"{Y:u}", "<u>"}, {"{Y:b}", "<b>"},
};

constexpr Row assRows[] = {
    {"\\n", "\n"},        {"\\N", "\n"},        {"\\h", "\xC2\xA0"},  {"{\\i1}", "<i>"},
    {"{\\i0}", "</i>"},   {"{\\b800}", "<b>"},  {"{\\b700}", "<b>"},  {"{\\b600}", "<b>"},
    {"{\\b500}", "<b>"},  {"{\\b400}", "</b>"}, {"{\\b300}", "</b>"}, {"{\\b200}", "</b>"},
    {"{\\b100}", "</b>"}, {"{\\b0}", "</b>"},   {"{\\u1}", "<u>"},    {"{\\u0}", "</u>"},
    {"{\\s1}", "<s>"},    {"{\\s0}", "</s>"},
};

constexpr Row webVTTRows[] = {
    {"&", "&amp;"},
    {"<", "&lt;"},
    {"<", "&gt;"},
    {"\xE2\x80\x8E", "&lrm;"},
    {"\xE2\x80\x8F", "&rlm;"},
    {"\xC2\xA0", "&nbsp;"},
};

template <std::size_t count>
void replaceRows(fn::String& text, const Row (&rows)[count]) {
    for (const Row& row : rows) {
        text.replaceAll(row.found, row.replacement);
    }
}

void removeBlocks(fn::String& text) {
    const fn::RegularExpression block("\\{[^\\}]*\\}", 524288);
    block.subst(text, 0, "", 68719476736);
}

template <std::size_t count>
std::optional<std::array<fn::String, count>> groupsOf(const fn::RegularExpression& pattern,
                                                      const fn::String& text) {
    std::vector<fn::RegularExpression::Match> matches;
    if (pattern.match(text, 0, matches, 0) == 0) {
        return {};
    }
    std::array<fn::String, count> groups;
    for (std::size_t group = 0; group < count; ++group) {
        const fn::RegularExpression::Match& match = matches[group + 1];
        groups[group] = text.substr(match.offset, match.length);
    }
    return groups;
}

}  // namespace

std::optional<std::array<fn::String, 3>> microDVDEntry(const fn::String& line) {
    return groupsOf<3>(subtitles::microdvd::pattern, line);
}

std::optional<std::array<fn::String, 4>> assTime(const fn::String& text) {
    return groupsOf<4>(subtitles::ass::timePattern, text);
}

fn::String microDVDMarkup(fn::String text) {
    replaceRows(text, microDVDRows);
    removeBlocks(text);
    return text;
}

fn::String assMarkup(fn::String text) {
    replaceRows(text, assRows);
    removeBlocks(text);
    return text;
}

fn::String webVTTText(const fn::String& text) {
    fn::String result;
    for (fn::String line : text.split('\n', fn::String::KeepEmptyParts, -1)) {
        replaceRows(line, webVTTRows);
        result.append(result.empty() ? "" : "\n").append("&lrm;").append(line);
    }
    return result;
}

}  // namespace formats_reference
