// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The text of an ASS event. The codes of this table become tags of SRT, all others go, and the
// mark-up machine of SRT does the rest.

#include "subtitles/ass-parser.h"

#include <cstddef>

#include "subtitles/brace-blocks.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/text-rewrite.h"

namespace subtitles {

namespace {

// clang-format off
constexpr Rewrite codes[] = {
    {"\\n",       "\n"},
    {"\\N",       "\n"},
    {"\\h",       "\xC2\xA0"},  // The no-break space.
    {"{\\i1}",    "<i>"},
    {"{\\i0}",    "</i>"},
    // There is no row for "{\b1}" and none for a weight of 900: they have no effect.
    {"{\\b800}",  "<b>"},
    {"{\\b700}",  "<b>"},
    {"{\\b600}",  "<b>"},
    {"{\\b500}",  "<b>"},
    {"{\\b400}",  "</b>"},
    {"{\\b300}",  "</b>"},
    {"{\\b200}",  "</b>"},
    {"{\\b100}",  "</b>"},
    {"{\\b0}",    "</b>"},
    {"{\\u1}",    "<u>"},
    {"{\\u0}",    "</u>"},
    // The mark-up machine drops these two as unknown: strike-through has no effect.
    {"{\\s1}",    "<s>"},
    {"{\\s0}",    "</s>"},
};
// clang-format on
static_assert(onePassIsEnough(codes), "the rows would have to be replaced one after the other");

constexpr Rewriter rewriter(codes);

constexpr std::size_t fieldsBeforeText = 8;

/// Where the text begins; the standard no-position value where the entry has no such field.
std::size_t findText(const fn::String& entry) {
    std::size_t position = 0;
    for (std::size_t field = 0; field < fieldsBeforeText; ++field) {
        const std::size_t comma = entry.find(',', position);
        if (comma == fn::String::npos) {
            return comma;
        }
        position = comma + 1;
    }
    return position;
}

}  // namespace

AttributedText ASSParser::parseEntry(const fn::String& entry) const {
    const std::size_t start = findText(entry);
    // "\p10" is a drawing too, and a "\p0" behind it does not save the event.
    if (start == fn::String::npos || entry.find("\\p1", start) != fn::String::npos) {
        return {};
    }
    fn::String markup = rewriter(fn::to_string_view(entry).substr(start));
    removeBraceBlocks(markup);
    return parseSRTFormatting(markup);
}

}  // namespace subtitles
