// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Machines that read bytes, written as rows of data.
//
// A row is a state: which input leads where, and what is done on the way. The compiler turns the
// rows into a small table of cells: bytes that no row tells apart share a class, lists of actions
// are kept once each. The loop at the end runs any such table. It knows neither the language, which
// is in the rows, nor the actions, which are members of the class that it is given.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "foundation/string-view.h"

namespace subtitles::byte_machine {

/// A set of bytes, for the inputs of a row.
struct ByteSet {
    std::array<std::uint64_t, 4> words = {};

    constexpr bool contains(unsigned char byte) const {
        return ((words[byte / 64U] >> (byte % 64U)) & 1U) != 0;
    }
    constexpr bool operator==(const ByteSet& other) const {
        return words[0] == other.words[0] && words[1] == other.words[1] &&
               words[2] == other.words[2] && words[3] == other.words[3];
    }
};

/// The bytes from `first` to `last`, both among them.
constexpr ByteSet range(unsigned char first, unsigned char last) {
    ByteSet set;
    for (unsigned byte = first; byte <= last; ++byte) {
        set.words[byte / 64U] |= std::uint64_t{1} << (byte % 64U);
    }
    return set;
}

constexpr ByteSet byte(char value) {
    return range(static_cast<unsigned char>(value), static_cast<unsigned char>(value));
}

constexpr ByteSet operator|(ByteSet a, const ByteSet& b) {
    for (std::size_t i = 0; i < a.words.size(); ++i) {
        a.words[i] |= b.words[i];
    }
    return a;
}

constexpr ByteSet operator~(ByteSet set) {
    for (std::uint64_t& word : set.words) {
        word = ~word;
    }
    return set;
}

/// States are numbered from 1 by the order of their rows. State 0 has no row: it ends the run.
using State = std::uint16_t;
constexpr State error = 0;
constexpr State start = 1;

/// The actions of one transition, in the order in which they run. They are numbered from 0.
struct ActionList {
    // NOLINTNEXTLINE(readability-identifier-naming): read with the name of its class
    static constexpr std::size_t limit = 6;
    std::array<std::uint8_t, limit> actions = {};
    std::uint8_t count = 0;

    constexpr bool operator==(const ActionList& other) const {
        bool equal = count == other.count;
        for (std::size_t i = 0; equal && i < count; ++i) {
            equal = actions[i] == other.actions[i];
        }
        return equal;
    }
    constexpr const std::uint8_t* begin() const { return actions.data(); }
    constexpr const std::uint8_t* end() const { return actions.data() + count; }
};

struct Transition {
    ByteSet input;
    State next = error;
    ActionList actions;
    bool used = false;  ///< Rows have room for more transitions than most of them need.
};

/// A state. Its transitions are tried in the order in which they stand, so that a set may hold
/// bytes of one before it; the last transition takes every byte that is left.
struct Row {
    // NOLINTNEXTLINE(readability-identifier-naming): read with the name of its class
    static constexpr std::size_t limit = 13;
    State state;
    std::array<Transition, limit> transitions;
};

template <class... Actions>
constexpr Transition on(const ByteSet& input, State next, Actions... actions) {
    static_assert(sizeof...(actions) <= ActionList::limit, "a longer list needs a higher limit");
    return {input, next, {{static_cast<std::uint8_t>(actions)...}, sizeof...(actions)}, true};
}

template <class... Actions>
constexpr Transition on(char input, State next, Actions... actions) {
    return on(byte(input), next, actions...);
}

constexpr ByteSet everyByte = ~ByteSet{};

/// Every byte that no transition before it took.
template <class... Actions>
constexpr Transition otherwise(State next, Actions... actions) {
    return on(everyByte, next, actions...);
}

/// Up to `limit` different values, each kept once and numbered by the order in which they came.
template <class Value, std::size_t limit>
struct Interned {
    std::array<Value, limit> values = {};
    std::size_t count = 0;

    constexpr std::size_t add(const Value& value) {
        std::size_t i = 0;
        while (i < count && !(values[i] == value)) {
            ++i;
        }
        if (i == count) {
            values[count++] = value;  // Over the limit, the table does not compile.
        }
        return i;
    }
};

/// Which bytes the rows tell apart. Two bytes are of one class if they are in the same sets.
struct Classes {
    std::array<std::uint8_t, 256> ofByte = {};
    std::array<std::uint8_t, 256> example = {};  ///< A byte of each class.
    std::size_t count = 0;
};

template <class Rows>
constexpr Classes classify(const Rows& rows) {
    Interned<ByteSet, 64> sets;
    for (const Row& row : rows) {
        for (const Transition& transition : row.transitions) {
            if (transition.used) {
                sets.add(transition.input);
            }
        }
    }
    Classes classes;
    Interned<std::uint64_t, 256> memberships;
    for (unsigned byte = 0; byte < 256; ++byte) {
        std::uint64_t membership = 0;
        for (std::size_t i = 0; i < sets.count; ++i) {
            const bool contained = sets.values[i].contains(static_cast<unsigned char>(byte));
            membership = (membership << 1U) | (contained ? 1U : 0U);
        }
        const std::size_t number = memberships.add(membership);
        classes.ofByte[byte] = static_cast<std::uint8_t>(number);
        classes.example[number] = static_cast<std::uint8_t>(byte);
    }
    classes.count = memberships.count;
    return classes;
}

/// True where the rows are numbered in their order, each takes every byte, and none leads to a
/// state without a row.
template <class Rows>
constexpr bool areComplete(const Rows& rows) {
    State number = start;
    for (const Row& row : rows) {
        bool complete = false;
        for (const Transition& transition : row.transitions) {
            if (transition.next > std::size(rows) || (complete && transition.used)) {
                return false;
            }
            complete = complete || (transition.used && transition.input == everyByte);
        }
        if (row.state != number++ || !complete) {
            return false;
        }
    }
    return true;
}

/// What is to be done at a class of bytes in a state.
struct Cell {
    State next = error;
    std::uint16_t list = 0;  ///< Which of the machine's action lists.

    constexpr bool operator==(const Cell& other) const {
        return next == other.next && list == other.list;
    }
};

/// The bytes that end a stretch of appended ones, where there are only a few.
struct StretchEnds {
    static constexpr std::size_t limit = 3;  // NOLINT(readability-identifier-naming): as in Row

    bool areFew = false;
    std::array<std::uint64_t, limit> words = {};  ///< A byte each, in all eight places of the word.
};

/// A compiled machine.
template <std::size_t stateCount, std::size_t classCount>
struct Machine {
    // NOLINTBEGIN(readability-identifier-naming): read as what the machine has
    static constexpr std::size_t states = stateCount;  ///< State 0 among them.
    static constexpr std::size_t classes = classCount;
    // NOLINTEND(readability-identifier-naming)

    std::array<std::uint8_t, 256> classOfByte = {};
    std::array<std::array<Cell, classCount>, stateCount> cells = {};
    std::array<ActionList, 256> lists = {};
    std::uint16_t appending = 0;  ///< The list that does nothing but append the byte.
    std::array<StretchEnds, stateCount> stretchEnds = {};  ///< Of the stretches in each state.

    constexpr std::size_t classOf(char byte) const {
        return classOfByte[static_cast<unsigned char>(byte)];
    }
    constexpr const Cell& cell(State state, char byte) const { return cells[state][classOf(byte)]; }
};

/// The first transition of a complete row that takes the byte.
constexpr const Transition& transitionOf(const Row& row, unsigned char byte) {
    std::size_t i = 0;
    while (!row.transitions[i].input.contains(byte)) {
        ++i;
    }
    return row.transitions[i];
}

/// What ends a stretch in a state. `sizes` are the numbers of bytes of the classes.
template <class Machine, class Sizes>
constexpr StretchEnds stretchEndsOf(const Machine& machine, State state, const Sizes& sizes) {
    const Cell stay = {state, machine.appending};
    std::size_t count = 0;
    for (std::size_t i = 0; i < Machine::classes; ++i) {
        count += machine.cells[state][i] == stay ? 0U : sizes[i];
    }
    StretchEnds ends;
    if (count == 0 || count > StretchEnds::limit) {
        return ends;
    }
    ends.areFew = true;
    std::size_t found = 0;
    for (unsigned byte = 0; found < count; ++byte) {
        if (!(machine.cells[state][machine.classOfByte[byte]] == stay)) {
            ends.words[found++] = byte * 0x0101010101010101U;
        }
    }
    for (; found < StretchEnds::limit; ++found) {
        ends.words[found] = ends.words[0];
    }
    return ends;
}

/// Compiles rows, which are a constant with static storage. `append` is the action that appends the
/// byte at hand to some text.
template <const auto& rows, class Action>
constexpr auto compile(Action append) {
    static_assert(areComplete(rows), "rows in order, each with an otherwise() at its end");
    constexpr Classes classes = classify(rows);
    Machine<std::size(rows) + 1, classes.count> machine;
    machine.classOfByte = classes.ofByte;
    Interned<ActionList, 256> lists;
    machine.appending =
        static_cast<std::uint16_t>(lists.add(ActionList{{static_cast<std::uint8_t>(append)}, 1}));
    for (const Row& row : rows) {
        // Each list is looked up once for its transition, not once for each cell: a compiler gives
        // up on a constant that takes too many steps.
        std::array<Cell, Row::limit> cells = {};
        for (std::size_t i = 0; i < Row::limit && row.transitions[i].used; ++i) {
            const auto list = static_cast<std::uint16_t>(lists.add(row.transitions[i].actions));
            cells[i] = {row.transitions[i].next, list};
        }
        for (std::size_t i = 0; i < classes.count; ++i) {
            const Transition* const taken = &transitionOf(row, classes.example[i]);
            machine.cells[row.state][i] =
                cells[static_cast<std::size_t>(taken - row.transitions.data())];
        }
    }
    machine.lists = lists.values;
    std::array<std::size_t, classes.count> sizes = {};
    for (const std::uint8_t number : classes.ofByte) {
        ++sizes[number];
    }
    for (const Row& row : rows) {
        machine.stretchEnds[row.state] = stretchEndsOf(machine, row.state, sizes);
    }
    return machine;
}

/// Passes over whole words in which none of the bytes stands, and gives the first one that has any
/// or the rest that is no word.
inline const char* passWords(const StretchEnds& ends, const char* at, const char* end) {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    while (static_cast<std::size_t>(end - at) >= sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, sizeof word);
        std::uint64_t found = 0;
        for (const std::uint64_t each : ends.words) {
            // A byte that is equal is zero now, and a zero is what borrows into its highest bit.
            const std::uint64_t difference = word ^ each;
            found |= (difference - ones) & ~difference;
        }
        if ((found & highBits) != 0) {
            return at;
        }
        at += sizeof word;
    }
    return at;
}

/// Runs the machine over `input` until its end or until it comes to the error state, and gives the
/// state in which it stopped.
///
/// For each byte: its class, the cell, the actions in their order, the next state. `actions` has a
/// type `Action` and two members, `perform(Action, position)` and `append(begin, end)`.
///
/// Nearly all bytes of a text keep the machine in its state and are only appended, so that a
/// stretch of them is looked for and appended at once. Where a few bytes end it, eight are looked
/// at together.
template <class Machine, class Actions>
State run(const Machine& machine, fn::StringView input, Actions& actions) {
    State state = start;
    const char* at = input.data();
    const char* const end = at + input.size();
    while (at != end && state != error) {
        const auto& row = machine.cells[state];
        const Cell cell = row[machine.classOf(*at)];
        if (cell.next == state && cell.list == machine.appending) {
            const char* const stretch = at++;
            if (machine.stretchEnds[state].areFew) {
                at = passWords(machine.stretchEnds[state], at, end);
            }
            while (at != end && row[machine.classOf(*at)] == cell) {
                ++at;
            }
            actions.append(stretch, at);
            continue;
        }
        for (const std::uint8_t action : machine.lists[cell.list]) {
            actions.perform(static_cast<typename Actions::Action>(action), at);
        }
        state = cell.next;
        ++at;
    }
    return state;
}

}  // namespace subtitles::byte_machine
