// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Attributed text as WebVTT. Tags stand where attributes change from one run to the next.

#include "subtitles/webvtt-exporter.h"

#include <cstdint>

#include "subtitles/text-attributes-delta.h"
#include "subtitles/text-rewrite.h"

namespace subtitles {

namespace {

// clang-format off
constexpr Rewrite escapes[] = {
    {"&",            "&amp;"},
    {"<",            "&lt;"},
    // ">" has no row: it stands in a cue as it is.
    {"\xE2\x80\x8E", "&lrm;"},
    {"\xE2\x80\x8F", "&rlm;"},
    {"\xC2\xA0",     "&nbsp;"},
    // Lines are escaped one by one, and each begins with a mark of its own.
    {"\n",           "\n&lrm;"},
};
// clang-format on
static_assert(onePassIsEnough(escapes), "the rows would have to be replaced one after the other");

constexpr Rewriter escaper(escapes);

bool has(const TextAttributes& attributes, std::uint32_t mask) {
    return (attributes.attributeMask & mask) != 0;
}

}  // namespace

fn::String WebVTTExporter::encodeAttributes(const TextAttributes& changed,
                                            const TextAttributes& removed) const {
    fn::String tags;
    if (has(changed, TextAttributes::FONT_WEIGHT)) {
        tags += "<b>";  // Whatever the weight is.
    }
    if (has(removed, TextAttributes::FONT_WEIGHT)) {
        tags += "</b>";
    }
    if (has(changed, TextAttributes::FONT_STYLE)) {
        tags += changed.fontStyle != 0 ? "<i>" : "</i>";
    }
    if (has(removed, TextAttributes::FONT_STYLE)) {
        tags += "</i>";
    }
    if (has(changed, TextAttributes::UNDERLINE)) {
        tags += changed.underline != 0 ? "<u>" : "</u>";
    }
    if (has(removed, TextAttributes::UNDERLINE)) {
        tags += "</u>";
    }
    return tags;
}

fn::String WebVTTExporter::processRunText(const fn::String& text) const {
    fn::String result = "&lrm;";
    escaper.append(result, fn::to_string_view(text));
    return result;
}

fn::String WebVTTExporter::attributedTextToString(const AttributedText& text) const {
    fn::String result = "\n";
    const TextAttributes none;
    const TextAttributes* current = &none;
    for (const AttributedText::Run& run : text) {
        const TextAttributesDelta delta(*current, run.attributes);
        current = &run.attributes;
        result += encodeAttributes(delta.changed, delta.removed);
        result += processRunText(run.text);
    }
    return result.size() == 1 ? fn::String() : result;
}

}  // namespace subtitles
