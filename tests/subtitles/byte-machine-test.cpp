// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/byte-machine.h"

#include <array>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "foundation/string-view.h"

namespace {

using namespace subtitles::byte_machine;  // NOLINT(google-build-using-namespace): rows read as such

enum class ToyAction : unsigned char { Append, Open, Close };

constexpr auto letter = range('a', 'z') | range('A', 'Z');
constexpr auto vowel = byte('a') | byte('e') | byte('i') | byte('o') | byte('u');

// Text, in which "[" letters "]" opens and closes something and "!" is an error. Vowels are told
// apart from other letters in brackets alone, where they lead to a state that only ends at "]".
// clang-format off
constexpr Row rows[] = {
    {1, {on('[', 2, ToyAction::Open), on('!', error, ToyAction::Close),
         otherwise(1, ToyAction::Append)}},
    {2, {on(vowel, 3), on(letter, 2), on(']', 1, ToyAction::Close, ToyAction::Append),
         otherwise(error)}},
    {3, {on(']', 1, ToyAction::Append, ToyAction::Close), otherwise(3, ToyAction::Append)}},
};
// clang-format on

constexpr auto machine = compile<rows>(ToyAction::Append);
static_assert(machine.states == 4, "three rows, and the error state");
static_assert(machine.classes == 6, "[ ! ] vowels, other letters, the rest");

/// Writes down what the loop asks for: "x" for a byte that is appended, "(xyz)" for a stretch.
class ToyActions {
public:
    using Action = ToyAction;

    void perform(Action action, const char* at) {
        switch (action) {
            case Action::Append: log += *at; break;
            case Action::Open: log += std::string("open") + *at + " "; break;
            case Action::Close: log += std::string("close") + *at + " "; break;
        }
    }
    void append(const char* begin, const char* end) {
        log += '(';
        log.append(begin, end);
        log += ')';
    }

    std::string log;
};

struct Case {
    const char* name;
    const char* text;
    const char* expected;
    State stop;
};

constexpr Case cases[] = {
    {"NothingFromNothing", "", "", start},
    {"AStretchIsAppendedAtOnce", "Abc-\xFF\x80", "(Abc-\xFF\x80)", 1},
    {"AStretchEndsAtAnotherCell", "ab[", "(ab)open[ ", 2},
    {"AByteThatChangesTheStateIsNoStretch", "[a]b[e]", "open[ ]close] (b)open[ ]close] ", 1},
    {"StatesWithoutActionsAppendNothing", "[xyz", "open[ ", 2},
    {"ActionsRunInTheirOrder", "[x]", "open[ close] ]", 1},
    {"TheFirstTransitionThatFitsIsTaken", "[xa]x", "open[ ]close] (x)", 1},
    {"OtherwiseTakesTheRest", "[a!?x]", "open[ (!?x)]close] ", 1},
    {"TheErrorStateEndsTheRun", "a[x?b", "(a)open[ ", error},
    {"ActionsOnTheWayToTheErrorStateRun", "a!b", "(a)close! ", error},
    {"AnErrorAtTheLastByteIsTold", "[-", "open[ ", error},
};

class ByteMachine : public testing::TestWithParam<Case> {};

TEST_P(ByteMachine, Runs) {
    ToyActions actions;
    EXPECT_EQ(run(machine, GetParam().text, actions), GetParam().stop);
    EXPECT_EQ(actions.log, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ByteMachine, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(ByteMachineInput, TheByteZeroIsAByteLikeOthers) {
    ToyActions actions;
    EXPECT_EQ(run(machine, fn::StringView("a\0b", 3), actions), 1);
    EXPECT_EQ(actions.log, std::string("(a\0b)", 5));
}

std::string logOf(const std::string& text) {
    ToyActions actions;
    run(machine, text, actions);
    return actions.log;
}

// Where one to three bytes end a stretch, eight bytes are looked at together.
TEST(ByteMachineInput, AStretchEndsAtEveryPlaceOfAWord) {
    static_assert(machine.stretchEnds[1].areFew, "two bytes, of two classes");
    static_assert(!machine.stretchEnds[2].areFew, "every byte");
    static_assert(machine.stretchEnds[3].areFew, "one byte");
    for (std::size_t size = 0; size < 40; ++size) {
        for (const char filling : {'x', 'Z', '\xDB', '\xDD', '\xFF', '\x80', '\0', '\x01'}) {
            const std::string stretch(size, filling);
            const std::string appended = size == 0 ? "" : "(" + stretch + ")";
            EXPECT_EQ(logOf(stretch + "[]abcdefghijk"), appended + "open[ close] ](abcdefghijk)");
            EXPECT_EQ(logOf(stretch + "!abcdefghijk"), appended + "close! ");
            EXPECT_EQ(logOf(std::string("[a").append(stretch) + "]"),
                      std::string("open[ ").append(appended) + "]close] ");
        }
    }
}

TEST(ByteMachineSets, HoldWhatTheyName) {
    for (unsigned value = 0; value < 256; ++value) {
        const auto byteValue = static_cast<unsigned char>(value);
        const bool isLetter = (value >= 'a' && value <= 'z') || (value >= 'A' && value <= 'Z');
        EXPECT_EQ(letter.contains(byteValue), isLetter) << value;
        EXPECT_EQ((~letter).contains(byteValue), !isLetter) << value;
        EXPECT_EQ(byte('\xFF').contains(byteValue), value == 255) << value;
        EXPECT_TRUE(everyByte.contains(byteValue)) << value;
    }
}

TEST(ByteMachineClasses, BytesThatNoRowTellsApartShareOne) {
    EXPECT_EQ(machine.classOf('a'), machine.classOf('u'));
    EXPECT_EQ(machine.classOf('b'), machine.classOf('Z'));
    EXPECT_EQ(machine.classOf('\0'), machine.classOf('\xFF'));
    EXPECT_NE(machine.classOf('a'), machine.classOf('b'));
    EXPECT_NE(machine.classOf('['), machine.classOf(']'));
    EXPECT_NE(machine.classOf('!'), machine.classOf('?'));
}

TEST(ByteMachineCells, EqualListsAreKeptOnce) {
    EXPECT_EQ(machine.cell(1, 'x').list, machine.appending);
    EXPECT_EQ(machine.cell(3, 'x').list, machine.appending);
    EXPECT_EQ(machine.cell(2, 'x').list, machine.cell(2, 'a').list);
    EXPECT_NE(machine.cell(2, ']').list, machine.cell(3, ']').list);
}

TEST(ByteMachineCells, EachByteGoesWhereTheRowSays) {
    for (unsigned value = 0; value < 256; ++value) {
        for (const Row& row : rows) {
            const Transition& expected = transitionOf(row, static_cast<unsigned char>(value));
            const Cell& cell = machine.cell(row.state, static_cast<char>(value));
            EXPECT_EQ(cell.next, expected.next) << row.state << ' ' << value;
            EXPECT_EQ(machine.lists[cell.list], expected.actions) << row.state << ' ' << value;
        }
    }
}

TEST(ByteMachineRows, AreRefusedWhereTheyAreIncomplete) {
    EXPECT_TRUE(areComplete(rows));
    constexpr std::array<Row, 2> outOfOrder = {{{2, {otherwise(1)}}, {1, {otherwise(1)}}}};
    EXPECT_FALSE(areComplete(outOfOrder));
    constexpr std::array<Row, 1> withoutOtherwise = {{{1, {on('a', 1)}}}};
    EXPECT_FALSE(areComplete(withoutOtherwise));
    constexpr std::array<Row, 1> behindOtherwise = {{{1, {otherwise(1), on('a', 1)}}}};
    EXPECT_FALSE(areComplete(behindOtherwise));
    constexpr std::array<Row, 1> toNowhere = {{{1, {on('a', 2), otherwise(1)}}}};
    EXPECT_FALSE(areComplete(toNowhere));
}

}  // namespace
