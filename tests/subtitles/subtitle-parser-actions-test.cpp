// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-parser-actions.h"

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "subtitles/attributed-text.h"

#include "tests/support/describe.h"

namespace {

using subtitles::AttributedText;
using subtitles::describe;
using subtitles::srt::Action;
using subtitles::srt::Markup;
using subtitles::srt::State;

/// What an action leaves: the runs that it ended, and what the next text would look like. Before
/// it, "a" was read with everything open.
std::string after(Action action) {
    AttributedText result;
    Markup markup(result);
    const std::string value = "red";
    for (const Action open : {Action::OpenBold, Action::OpenItalic, Action::OpenUnderline}) {
        markup.perform(open, nullptr);
    }
    markup.perform(Action::BeginColor, value.data());
    markup.perform(Action::EndColor, value.data() + value.size());
    markup.perform(Action::OpenColor, nullptr);
    const char letters[] = "ab";
    markup.perform(Action::AppendByte, &letters[0]);
    markup.perform(action, &letters[1]);
    return describe(result) + " then " + describe(markup.state.open.cummulativeAttributes()) +
           " with '" + markup.state.text + "'";
}

constexpr const char* all = "style=2 weight=700 color=ff0000 underline=1";

TEST(SrtMarkupActions, AppendByteAppendsTheByteAtHand) {
    EXPECT_EQ(after(Action::AppendByte), std::string(" then ") + all + " with 'ab'");
}

TEST(SrtMarkupActions, BeginAndEndOfAColorLeaveTheRunAlone) {
    EXPECT_EQ(after(Action::BeginColor), std::string(" then ") + all + " with 'a'");
    EXPECT_EQ(after(Action::EndColor), std::string(" then ") + all + " with 'a'");
}

TEST(SrtMarkupActions, OpeningEndsTheRunFirst) {
    for (const Action action :
         {Action::OpenBold, Action::OpenItalic, Action::OpenUnderline, Action::OpenColor}) {
        EXPECT_EQ(after(action), std::string("[") + all + ": a] then " + all + " with ''");
    }
}

struct CloseCase {
    Action action;
    const char* left;
};

TEST(SrtMarkupActions, ClosingEndsTheRunFirst) {
    constexpr CloseCase cases[] = {
        {Action::CloseBold, "style=2 color=ff0000 underline=1"},
        {Action::CloseItalic, "weight=700 color=ff0000 underline=1"},
        {Action::CloseUnderline, "style=2 weight=700 color=ff0000"},
        {Action::CloseColor, "style=2 weight=700 underline=1"},
    };
    for (const CloseCase& test : cases) {
        EXPECT_EQ(after(test.action),
                  std::string("[") + all + ": a] then " + test.left + " with ''");
    }
}

/// The attributes that one action sets on its own.
std::string opened(const std::vector<Action>& actions, const char* value) {
    AttributedText result;
    Markup markup(result);
    for (const Action action : actions) {
        markup.perform(action, value);
    }
    return describe(markup.state.open.cummulativeAttributes());
}

TEST(SrtMarkupActions, EachTagSetsOneAttribute) {
    EXPECT_EQ(opened({Action::OpenBold}, nullptr), "weight=700");
    EXPECT_EQ(opened({Action::OpenItalic}, nullptr), "style=2");
    EXPECT_EQ(opened({Action::OpenUnderline}, nullptr), "underline=1");
    EXPECT_EQ(opened({Action::OpenColor}, nullptr), "color=000000");
}

TEST(SrtMarkupActions, WhatIsOpenTwiceIsClosedOnce) {
    EXPECT_EQ(opened({Action::OpenBold, Action::OpenBold, Action::CloseBold}, nullptr), "");
    EXPECT_EQ(opened({Action::OpenBold, Action::CloseBold, Action::OpenBold}, nullptr),
              "weight=700");
    EXPECT_EQ(opened({Action::OpenColor, Action::OpenColor, Action::CloseColor}, nullptr), "");
}

TEST(SrtMarkupActions, TheNewestColorCounts) {
    const std::string text = "redblue";
    AttributedText result;
    Markup markup(result);
    for (const std::size_t begin : {std::size_t{0}, std::size_t{3}}) {
        markup.perform(Action::BeginColor, &text[begin]);
        markup.perform(Action::EndColor, text.data() + (begin == 0 ? 3 : text.size()));
        markup.perform(Action::OpenColor, nullptr);
    }
    EXPECT_EQ(describe(markup.state.open.cummulativeAttributes()), "color=0000ff");
}

TEST(SrtMarkupActions, AColorIsWhatLiesBetweenItsBeginAndItsEnd) {
    const std::string text = "\"#123\"";
    AttributedText result;
    Markup markup(result);
    markup.perform(Action::BeginColor, &text[1]);
    markup.perform(Action::EndColor, &text[5]);
    markup.perform(Action::OpenColor, nullptr);
    EXPECT_EQ(describe(markup.state.open.cummulativeAttributes()), "color=112233");
}

TEST(SrtMarkupActions, AColorWhoseEndLiesBeforeItsBeginIsBlack) {
    const std::string text = "red red";
    AttributedText result;
    Markup markup(result);
    markup.perform(Action::EndColor, &text[3]);
    markup.perform(Action::BeginColor, &text[4]);
    markup.perform(Action::OpenColor, nullptr);
    EXPECT_EQ(describe(markup.state.open.cummulativeAttributes()), "color=000000");
}

TEST(SrtMarkupActions, AStretchIsAppendedAsItsBytes) {
    AttributedText result;
    Markup markup(result);
    const char text[] = "a\0b";
    markup.append(text, text + 3);
    EXPECT_EQ(markup.state.text, fn::String("a\0b", 3));
}

TEST(SrtMarkupState, RunDoneMakesARunOfTheText) {
    AttributedText result;
    State state(result);
    state.text = "x";
    state.runDone();
    EXPECT_EQ(describe(result), "[x]");
    EXPECT_EQ(state.text, "");
}

TEST(SrtMarkupState, RunDoneWithoutTextMakesNoRun) {
    AttributedText result;
    State state(result);
    state.runDone();
    EXPECT_EQ(describe(result), "");
}

TEST(SrtMarkupState, AttributesAreThoseOfTheMomentAtWhichTheRunEnds) {
    AttributedText result;
    State state(result);
    state.text = "x";
    subtitles::TextAttributes bold;
    bold.fontWeight = subtitles::TextAttributes::FONT_WEIGHT_BOLD;
    bold.attributeMask = subtitles::TextAttributes::FONT_WEIGHT;
    state.open.pushAttributes(bold);
    state.runDone();
    state.text = "y";
    state.open.removeAttributes(32);
    state.runDone();
    EXPECT_EQ(describe(result), "[weight=700: x][y]");
}

}  // namespace
