// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Proves the table of the mark-up machine: from the start, over every byte, it does what the
// alternatives of the language do side by side.

#include "subtitles/subtitle-parser-table.h"

#include <cstddef>
#include <cstdio>
#include <map>
#include <queue>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "subtitles/byte-machine.h"

#include "tests/subtitles/srt-markup-reference.h"

namespace {

using subtitles::byte_machine::Cell;
using subtitles::byte_machine::State;
using subtitles::srt::markupMachine;
using Table = std::remove_const_t<decltype(markupMachine)>;

/// The states in which the byte 0 has just been read as text.
constexpr State lastStates[] = {111, 112};

std::string printed(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
        char code[8] = {};
        std::snprintf(code, sizeof code, c >= 32 && c < 127 ? "%c" : "\\x%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += code;
    }
    return text;
}

/// What happens at a byte, as the language and the table both can tell it.
struct Outcome {
    bool goesOn;
    bool isLast;  ///< The byte 0 has been read as text.
    std::vector<subtitles::srt::Action> actions;

    bool operator==(const Outcome& other) const {
        return goesOn == other.goesOn && isLast == other.isLast && actions == other.actions;
    }
};

Outcome outcomeOf(const srt_reference::Move& move, char byte) {
    return {!move.places.empty(), move.isText && byte == 0, move.actions};
}

Outcome outcomeOf(const Table& table, const Cell& cell) {
    Outcome outcome{cell.next != subtitles::byte_machine::error,
                    cell.next == lastStates[0] || cell.next == lastStates[1],
                    {}};
    for (const auto action : table.lists[cell.list]) {
        outcome.actions.push_back(static_cast<subtitles::srt::Action>(action));
    }
    return outcome;
}

std::string printed(const Outcome& outcome) {
    std::string text = outcome.goesOn ? "goes on" : "error";
    for (const auto action : outcome.actions) {
        text += ' ' + std::to_string(static_cast<int>(action));
    }
    return outcome.isLast ? text + " last" : text;
}

/// The moves from some places over each byte; made once for all comparisons.
const std::vector<srt_reference::Move>& movesFrom(const srt_reference::Places& places) {
    static std::map<srt_reference::Places, std::vector<srt_reference::Move>> all;
    std::vector<srt_reference::Move>& moves = all[places];
    for (int byte = 0; moves.size() < 256; ++byte) {
        moves.push_back(srt_reference::move(places, static_cast<char>(byte)));
    }
    return moves;
}

/// What the comparison found.
struct Comparison {
    std::string difference;  ///< The shortest input on which the two differ, and how.
    std::set<State> reached;
};

/// Walks through all pairs of the places of the language and the states of the table that one
/// input leads to, shorter inputs first.
Comparison compare(const Table& table) {
    using Pair = std::pair<srt_reference::Places, State>;
    const Pair first{srt_reference::startPlaces(), subtitles::byte_machine::start};
    Comparison result;
    std::map<Pair, std::string> inputs = {{first, ""}};
    std::queue<Pair> pairs({first});
    for (; !pairs.empty(); pairs.pop()) {
        const Pair& pair = pairs.front();
        result.reached.insert(pair.second);
        const std::vector<srt_reference::Move>& moves = movesFrom(pair.first);
        for (std::size_t i = 0; i < moves.size(); ++i) {
            const char byte = static_cast<char>(i);
            const Cell& cell = table.cell(pair.second, byte);
            const Outcome expected = outcomeOf(moves[i], byte);
            const Outcome actual = outcomeOf(table, cell);
            if (!(actual == expected)) {
                result.difference = printed(inputs[pair] + byte) + ": " + printed(actual) +
                                    ", not " + printed(expected);
                return result;
            }
            const Pair next{moves[i].places, cell.next};
            if (actual.goesOn && inputs.emplace(next, inputs[pair] + byte).second) {
                pairs.push(next);
            }
        }
    }
    return result;
}

TEST(SrtMarkupTable, DoesWhatTheLanguageSays) {
    const Comparison comparison = compare(markupMachine);
    EXPECT_EQ(comparison.difference, "");
    EXPECT_EQ(comparison.reached.size(), 112U) << "each state is reached";
}

TEST(SrtMarkupTable, AWrongCellIsFound) {
    for (State state = 1; state < Table::states; state += 9) {
        Table wrong = markupMachine;
        Cell& cell = wrong.cells[state][(state * 7U) % Table::classes];
        cell.next = cell.next == subtitles::byte_machine::error ? State{1} : State{0};
        EXPECT_NE(compare(wrong).difference, "") << "state " << state;
    }
}

TEST(SrtMarkupTable, TheShortestDifferenceIsTold) {
    Table wrong = markupMachine;
    wrong.cells[30][wrong.classOf('>')].next = 1;
    EXPECT_EQ(compare(wrong).difference, "<b>\\x00: goes on 0 last, not goes on 1 0 last");
}

TEST(SrtMarkupTable, TheOrderOfActionsIsCompared) {
    Table wrong = markupMachine;
    for (auto& list : wrong.lists) {
        if (list.count == 4) {  // Only one has so many: at the quote in state 94.
            std::swap(list.actions[0], list.actions[1]);
        }
    }
    EXPECT_EQ(compare(wrong).difference,
              R"(<fontcolor="></u>": goes on 8 6 10 0, not goes on 6 8 10 0)");
}

}  // namespace
