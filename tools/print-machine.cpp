// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Prints the states of SRT's mark-up machine, one a line, from the rows that the library compiles:
//
//     7 | NUL 111 (1,0); LT 2 (1); LB 8 (1); else 1 (1,0)
//
// A line is the state, and for each input the next state and the actions on the way. So the rows
// can be read, compared and drawn without their C++. tests/data/srt-markup-states.txt is what comes
// out.

#include <cstdio>
#include <string>

#include "subtitles/byte-machine.h"
#include "subtitles/subtitle-parser-table.h"

namespace {

namespace table = subtitles::srt::table;
using subtitles::byte_machine::ActionList;
using subtitles::byte_machine::ByteSet;
using subtitles::byte_machine::Row;
using subtitles::byte_machine::Transition;

struct Input {
    ByteSet set;
    const char* name;
};

constexpr Input inputs[] = {
    {table::Nul, "NUL"},      {table::LineFeed, "LF"},
    {table::Space, "WS"},     {table::Digit, "DIGIT"},
    {table::Less, "LT"},      {table::Greater, "GT"},
    {table::BraceOpen, "LB"}, {table::BraceClose, "RB"},
    {table::Slash, "SL"},     {table::Equals, "EQ"},
    {table::Quote, "QU"},     {subtitles::byte_machine::everyByte, "else"},
};

/// The input's name; a letter stands for itself.
std::string nameOf(const ByteSet& set) {
    for (const Input& input : inputs) {
        if (input.set == set) {
            return input.name;
        }
    }
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        if (subtitles::byte_machine::byte(letter) == set) {
            return std::string(1, letter);
        }
    }
    return "?";
}

std::string textOf(const ActionList& actions) {
    std::string text;
    for (const auto action : actions) {
        text += (text.empty() ? " (" : ",") + std::to_string(action);
    }
    return text.empty() ? text : text + ")";
}

std::string textOf(const Row& row) {
    std::string text;
    for (const Transition& transition : row.transitions) {
        if (transition.used) {
            text += (text.empty() ? "" : "; ") + nameOf(transition.input) + " " +
                    std::to_string(transition.next) + textOf(transition.actions);
        }
    }
    return text;
}

constexpr const char* head =
    "# Inputs: WS is 9 to 13 and 32, LF and NUL are 10 and 0, LT \"<\", GT \">\", LB \"{\",\n"
    "# RB \"}\", SL \"/\", EQ \"=\", QU a double quote; letters are themselves. The first that "
    "fits\n"
    "# counts. State 1 is the start, state 0 the error.\n"
    "# Actions: 0 append the byte, 1 open bold, 2 close bold, 3 open italic, 4 close italic,\n"
    "# 5 open underline, 6 close underline, 7 begin colour, 8 end colour, 9 open colour,\n"
    "# 10 close colour.\n";

}  // namespace

int main() {
    std::fputs(head, stdout);
    for (const Row& row : table::rows) {
        std::printf("%d | %s\n", int{row.state}, textOf(row).c_str());
    }
    return 0;
}
