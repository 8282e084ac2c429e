// SPDX-License-Identifier: LGPL-2.1-or-later

#include "look.h"

#include <cstddef>
#include <string_view>

#include "foundation/string.h"

#include "visible-text.h"

namespace tool {

using subtitles::AttributedText;
using subtitles::Color;
using subtitles::TextAttributes;

namespace {

/// The nearest colour of the cube of 6 x 6 x 6 that terminals with 256 colours have: its steps are
/// 0, 95, 135, 175, 215 and 255.
int cubeIndex(const Color& color) {
    const auto step = [](int channel) { return channel < 48 ? 0 : (channel - 35) / 40; };
    const auto nearest = [step](int channel) {
        return channel >= 48 && channel < 115 ? 1 : step(channel);
    };
    return 16 + 36 * nearest(color.red) + 6 * nearest(color.green) + nearest(color.blue);
}

/// The parameters of "select graphic rendition" for a colour; `plane` is 38 for text and 48 for
/// what is behind it.
std::string colorCode(int plane, const Color& color, TextStyle style) {
    const std::string start = ";" + std::to_string(plane);
    if (style == TextStyle::TrueColor) {
        return start + ";2;" + std::to_string(color.red) + ";" + std::to_string(color.green) + ";" +
               std::to_string(color.blue);
    }
    return start + ";5;" + std::to_string(cubeIndex(color));
}

/// The escape sequence that turns a look on, empty where it is the terminal's own.
std::string escapeFor(const Look& look, TextStyle style) {
    std::string codes;
    codes += look.bold ? ";1" : "";
    codes += look.italic ? ";3" : "";
    codes += look.underline ? ";4" : "";
    codes += look.strikeThrough ? ";9" : "";
    codes += look.color ? colorCode(38, *look.color, style) : "";
    codes += look.background ? colorCode(48, *look.background, style) : "";
    return codes.empty() ? codes : "\x1B[" + codes.substr(1) + "m";
}

void appendLines(std::string& result, std::string_view text, const std::string& escape) {
    while (!text.empty()) {
        const std::size_t size = text.find('\n');
        const std::string_view line = text.substr(0, size);
        if (!line.empty()) {
            result.append(escape).append(line).append(escape.empty() ? "" : "\x1B[0m");
        }
        text.remove_prefix(line.size());
        if (!text.empty()) {
            result.push_back('\n');
            text.remove_prefix(1);
        }
    }
}

Json colorToJson(const std::optional<Color>& color) {
    if (!color) {
        return nullptr;
    }
    constexpr char digits[] = "0123456789abcdef";
    std::string text = "#";
    for (const unsigned channel : {color->red, color->green, color->blue}) {
        text.append({digits[channel >> 4U], digits[channel & 0xFU]});
    }
    return text;
}

}  // namespace

Look lookOf(const TextAttributes& attributes) {
    const auto has = [&](TextAttributes::Attribute attribute) {
        return (attributes.attributeMask & attribute) != 0;
    };
    Look look;
    // A terminal knows one bold alone: semi-bold is the first weight that looks like it.
    look.bold = has(TextAttributes::FONT_WEIGHT) &&
                attributes.fontWeight >= TextAttributes::FONT_WEIGHT_SEMIBOLD;
    look.italic = has(TextAttributes::FONT_STYLE) &&
                  attributes.fontStyle != TextAttributes::FONT_STYLE_NORMAL;
    look.underline =
        has(TextAttributes::UNDERLINE) && attributes.underline != TextAttributes::UNDERLINE_NONE;
    look.strikeThrough = has(TextAttributes::STRIKE_THROUGH) && attributes.strikeThrough;
    if (has(TextAttributes::FOREGROUND_COLOR)) {
        look.color = attributes.foregroundColor;
    }
    if (has(TextAttributes::BACKGROUND_COLOR)) {
        look.background = attributes.backgroundColor;
    }
    return look;
}

std::string plainText(const AttributedText& text) {
    std::string result;
    for (const AttributedText::Run& run : text) {
        result += run.text;
    }
    return result;
}

std::string terminalText(const AttributedText& text, TextStyle style) {
    std::string result;
    for (const AttributedText::Run& run : text) {
        const std::string escape =
            style == TextStyle::None ? std::string() : escapeFor(lookOf(run.attributes), style);
        appendLines(result, visibleText(run.text), escape);
    }
    return result;
}

Json runsToJson(const AttributedText& text) {
    Json runs = Json::array();
    for (const AttributedText::Run& run : text) {
        if (run.text.empty()) {
            continue;
        }
        const Look look = lookOf(run.attributes);
        runs.push_back({{"text", static_cast<const std::string&>(run.text)},
                        {"bold", look.bold},
                        {"italic", look.italic},
                        {"underline", look.underline},
                        {"strikeThrough", look.strikeThrough},
                        {"color", colorToJson(look.color)},
                        {"background", colorToJson(look.background)}});
    }
    return runs;
}

}  // namespace tool
