// SPDX-License-Identifier: LGPL-2.1-or-later

#include "look.h"

#include <cstdint>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace {

using subtitles::AttributedText;
using subtitles::Color;
using subtitles::TextAttributes;
using tool::TextStyle;

TextAttributes bold(int weight = 700) {
    TextAttributes attributes;
    attributes.attributeMask = TextAttributes::FONT_WEIGHT;
    attributes.fontWeight = static_cast<TextAttributes::FontWeight>(weight);
    return attributes;
}

TextAttributes colored(const Color& color) {
    TextAttributes attributes;
    attributes.attributeMask = TextAttributes::FOREGROUND_COLOR;
    attributes.foregroundColor = color;
    return attributes;
}

TextAttributes everything() {
    TextAttributes attributes = bold();
    attributes.attributeMask |= TextAttributes::FONT_STYLE | TextAttributes::UNDERLINE |
                                TextAttributes::STRIKE_THROUGH | TextAttributes::FOREGROUND_COLOR |
                                TextAttributes::BACKGROUND_COLOR;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.underline = TextAttributes::UNDERLINE_SINGLE;
    attributes.strikeThrough = true;
    attributes.foregroundColor = {255, 0, 95};
    attributes.backgroundColor = {1, 2, 3};
    return attributes;
}

AttributedText oneRun(const TextAttributes& attributes, const char* text) {
    AttributedText result;
    result.push_back({attributes, text});
    return result;
}

std::string shown(const AttributedText& text, TextStyle style = TextStyle::Colors256) {
    return tool::terminalText(text, style);
}

TEST(TerminalText, IsPlainInAPipe) {
    EXPECT_EQ(shown(oneRun(everything(), "a\nb"), TextStyle::None), "a\nb");
}

TEST(TerminalText, ShowsEveryStyle) {
    EXPECT_EQ(shown(oneRun(everything(), "a"), TextStyle::TrueColor),
              "\x1B[1;3;4;9;38;2;255;0;95;48;2;1;2;3ma\x1B[0m");
    EXPECT_EQ(shown(oneRun(everything(), "a"), TextStyle::Colors256),
              "\x1B[1;3;4;9;38;5;197;48;5;16ma\x1B[0m");
}

TEST(TerminalText, StylesEveryLineForItself) {
    EXPECT_EQ(shown(oneRun(bold(), "a\n\nb\n")), "\x1B[1ma\x1B[0m\n\n\x1B[1mb\x1B[0m\n");
}

TEST(TerminalText, LeavesPlainRunsAlone) {
    AttributedText text = oneRun(bold(), "a");
    text.push_back({TextAttributes(), " b"});
    EXPECT_EQ(shown(text), "\x1B[1ma\x1B[0m b");
}

TEST(TerminalText, LetsNoEscapeSequenceThrough) {
    EXPECT_EQ(shown(oneRun(bold(), "\x1B]0;title\x07")), "\x1B[1m\u241B]0;title\u2407\x1B[0m");
}

TEST(TerminalText, IsBoldFromSemiBoldOn) {
    EXPECT_EQ(shown(oneRun(bold(500), "a")), "a");
    EXPECT_EQ(shown(oneRun(bold(600), "a")), "\x1B[1ma\x1B[0m");
}

TEST(TerminalText, LooksAtSetAttributesOnly) {
    TextAttributes stale = everything();
    stale.attributeMask = 0;
    EXPECT_EQ(shown(oneRun(stale, "a")), "a");
}

TEST(TerminalText, TakesTheNearestOf256Colors) {
    // A cube of six steps a channel (0, 95, 135, 175, 215, 255) from 16 on; 216 colours in all.
    constexpr int steps[] = {0, 95, 135, 175, 215, 255};
    for (int level = 0; level < 256; ++level) {
        int nearest = 0;
        for (int step = 1; step < 6; ++step) {
            if (std::abs(steps[step] - level) <= std::abs(steps[nearest] - level)) {
                nearest = step;
            }
        }
        const auto channel = static_cast<std::uint8_t>(level);
        EXPECT_EQ(shown(oneRun(colored({channel, 0, 0}), "a")),
                  "\x1B[38;5;" + std::to_string(16 + 36 * nearest) + "ma\x1B[0m")
            << level;
    }
}

TEST(RunsToJson, GivesEveryRunTheSameKeys) {
    AttributedText text = oneRun(everything(), "a");
    text.push_back({TextAttributes(), "b"});
    text.push_back({TextAttributes(), ""});
    EXPECT_EQ(tool::jsonText(tool::runsToJson(text)),
              R"([{"text":"a","bold":true,"italic":true,"underline":true,"strikeThrough":true,)"
              R"("color":"#ff005f","background":"#010203"},)"
              R"({"text":"b","bold":false,"italic":false,"underline":false,"strikeThrough":false,)"
              R"("color":null,"background":null}])");
}

TEST(JsonText, HasNoControlCharacters) {
    EXPECT_EQ(tool::jsonText("\x1B\x7F\u009B\u00A0\n\"\xFF"),
              "\"\\u001b\\u007f\\u009b\u00A0\\n\\\"\uFFFD\"");
}

}  // namespace
