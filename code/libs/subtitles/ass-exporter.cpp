// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Attributed text as ASS. Tags stand where attributes change from one run to the next.

#include "subtitles/ass-exporter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "subtitles/ass-color.h"
#include "subtitles/text-attributes-delta.h"

namespace subtitles {

namespace {

constexpr int leastBoldWeight = 900;

/// The size after so many steps of 1.2, up or down, rounded.
double scaledSize(float size, std::int32_t steps) {
    // Beyond this many steps every size is 0 or infinite or the smallest there is, and stays so.
    constexpr std::int32_t most = 10000;
    double scaled = static_cast<double>(size);
    for (std::int32_t step = 0; step < std::min(steps, most); ++step) {
        scaled *= 1.2;
    }
    for (std::int32_t step = 0; step > std::max(steps, -most); --step) {
        scaled /= 1.2;
    }
    return std::floor(scaled + 0.5);
}

void appendColorTag(fn::String& tags, const Color& color) {
    tags += "\\c";
    tags += colorToASS(color, 255, false);
    tags += '&';
}

bool has(const TextAttributes& attributes, std::uint32_t mask) {
    return (attributes.attributeMask & mask) != 0;
}

void appendWeight(fn::String& tags, const TextAttributes& changed, const TextAttributes& removed) {
    if (has(changed, TextAttributes::FONT_WEIGHT)) {
        tags += "\\b";
        tags += fn::String::number(std::max<int>(changed.fontWeight, leastBoldWeight));
    }
    if (has(removed, TextAttributes::FONT_WEIGHT)) {
        tags += "\\b0";
    }
}

/// The tags of what is either on or off.
void appendSwitches(fn::String& tags, const TextAttributes& changed,
                    const TextAttributes& removed) {
    if (has(changed, TextAttributes::FONT_STYLE)) {
        tags += changed.fontStyle != 0 ? "\\i1" : "\\i0";
    }
    if (has(removed, TextAttributes::FONT_STYLE)) {
        tags += "\\i0";
    }
    if (has(changed, TextAttributes::UNDERLINE)) {
        tags += changed.underline != 0 ? "\\u1" : "\\u0";
    }
    if (has(removed, TextAttributes::UNDERLINE)) {
        tags += "\\u0";
    }
    if (has(changed, TextAttributes::STRIKE_THROUGH)) {
        tags += changed.strikeThrough ? "\\s1" : "\\s0";
    }
    if (has(removed, TextAttributes::STRIKE_THROUGH)) {
        tags += "\\s0";
    }
}

void appendFont(fn::String& tags, const TextAttributes& changed, const TextAttributes& removed,
                const ASSStyle& style) {
    if (has(changed, TextAttributes::FONT_FAMILY)) {
        tags += "\\fn" + changed.fontFamily;
    }
    if (has(removed, TextAttributes::FONT_FAMILY)) {
        tags += "\\fn" + style.fontName;
    }
    if (has(changed, TextAttributes::FONT_SIZE_ABSOLUTE)) {
        tags += "\\fs" + fn::String::number(changed.fontSizeAbsolute);
    }
    if (has(changed, TextAttributes::FONT_SIZE_RELATIVE)) {
        tags += "\\fs" + fn::String::number(scaledSize(style.fontSize, changed.fontSizeRelative));
    }
    if (has(removed, TextAttributes::FONT_SIZE_ABSOLUTE | TextAttributes::FONT_SIZE_RELATIVE)) {
        tags += "\\fs" + fn::String::number(style.fontSize);
    }
}

void appendColor(fn::String& tags, const TextAttributes& changed, const TextAttributes& removed,
                 const ASSStyle& style) {
    if (has(changed, TextAttributes::FOREGROUND_COLOR)) {
        appendColorTag(tags, changed.foregroundColor);
    }
    if (has(removed, TextAttributes::FOREGROUND_COLOR)) {
        appendColorTag(tags, style.primaryColor);
    }
}

/// The block of all tags; nothing where there is none.
void appendBlock(fn::String& text, const TextAttributes& changed, const TextAttributes& removed,
                 const ASSStyle& style) {
    if ((changed.attributeMask | removed.attributeMask) == 0) {
        return;
    }
    const std::size_t start = text.size();
    text += '{';
    appendWeight(text, changed, removed);
    appendSwitches(text, changed, removed);
    appendFont(text, changed, removed, style);
    appendColor(text, changed, removed, style);
    if (text.size() == start + 1) {
        text.resize(start);
    } else {
        text += '}';
    }
}

/// Room for the text of all runs, and for a few tags at each.
std::size_t likelySize(const AttributedText& text) {
    constexpr std::size_t tags = 16;
    std::size_t size = 0;
    for (const AttributedText::Run& run : text) {
        size += run.text.size() + tags;
    }
    return size;
}

}  // namespace

fn::String colorToASS(const Color& color, unsigned char alpha, bool withAlpha) {
    const auto hex = [](unsigned char byte) { return fn::String::numberHex(byte, 2, '0'); };
    fn::String text = "&H";
    if (withAlpha) {
        text += hex(static_cast<unsigned char>(~alpha));
    }
    return text + hex(color.blue) + hex(color.green) + hex(color.red);
}

ASSStyle::ASSStyle() = default;

fn::String ASSStyle::getFormat() const {
    return "Format:Name,Fontname,Fontsize,PrimaryColour,OutlineColour,BackColour,Bold,Italic,"
           "BorderStyle,Outline,Shadow,Alignment,MarginL,MarginR,MarginV\n";
}

fn::String ASSStyle::getStyle(const fn::String& name) const {
    const fn::String values[] = {
        fontName,
        fn::String::number(fontSize),
        colorToASS(primaryColor, 255, true),
        colorToASS(outlineColor, outlineAlpha, true),
        colorToASS(backColor, backAlpha, true),
        bold ? "-1" : "0",
        italic ? "1" : "0",
        "1",  // An outline, not a box.
        fn::String::number(outline),
        fn::String::number(shadow),
        "2",  // The lower edge's middle.
        fn::String::number(marginHorizontal),
        fn::String::number(marginHorizontal),
        fn::String::number(marginVertical),
    };
    fn::String line = "Style:" + name;
    for (const fn::String& value : values) {
        line.append(1, ',').append(value);
    }
    return line + "\n";
}

ASSExporter::ASSExporter(const ASSStyle& style) : defaultStyle(style) {}

ASSExporter::~ASSExporter() = default;

fn::String ASSExporter::encodeAttributes(const TextAttributes& changed,
                                         const TextAttributes& removed,
                                         const ASSStyle& style) const {
    fn::String tags;
    appendBlock(tags, changed, removed, style);
    return tags;
}

fn::String ASSExporter::attributedTextToString(const AttributedText& text) const {
    fn::String result;
    result.reserve(likelySize(text));
    const TextAttributes none;
    const TextAttributes* current = &none;
    for (const AttributedText::Run& run : text) {
        const TextAttributesDelta delta(*current, run.attributes);
        current = &run.attributes;
        appendBlock(result, delta.changed, delta.removed, defaultStyle);
        result += run.text;
    }
    result.replaceAll("\n", "\\N");
    return result;
}

}  // namespace subtitles
