// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The states of the style sheet language, family by family.
//
// A family is a state together with the escapes and comments that can be open in it: what these do
// is the same everywhere, and so stands once in the loop. A row tells what a family does with each
// byte; the path of every byte that it does not name is told for its whole group, at the end.
//
//     the selector side   from the start of a text or a rule set up to "{"
//     the rule body       between declarations
//     declarations        name, values, and what ends them
//     brace values        between the brackets of name(...)
//     the bare list       declarations without a rule set, read when the selector side fails

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "subtitles/byte-machine.h"
#include "subtitles/style-sheet-parser-families.h"

namespace subtitles::style_sheet {

namespace table {

using byte_machine::ActionList;
using byte_machine::byte;
using byte_machine::ByteSet;
using byte_machine::everyByte;
using byte_machine::otherwise;
using byte_machine::range;
using byte_machine::Row;
using byte_machine::Transition;

// Characters stand for themselves.
constexpr auto Nul = byte('\0');
constexpr auto Space = range('\t', '\r') | byte(' ');
constexpr auto Digit = range('0', '9');
constexpr auto HexDigit = Digit | range('A', 'F') | range('a', 'f');
constexpr auto NameStart =
    byte('-') | range('A', 'Z') | byte('_') | range('a', 'z') | range(128, 255);
constexpr auto NameByte = NameStart | Digit;
constexpr auto BlankOrComma = Space | byte(',');
constexpr auto DeclarationEnd = byte(';') | byte('}');

constexpr auto Clear = Action::Clear;
constexpr auto Append = Action::Append;
constexpr auto AppendStar = Action::AppendStar;
constexpr auto Convert = Action::Convert;
constexpr auto AppendWhitespace = Action::AppendWhitespace;
constexpr auto BeginRuleSet = Action::BeginRuleSet;
constexpr auto EndRuleSet = Action::EndRuleSet;
constexpr auto BeginSelector = Action::BeginSelector;
constexpr auto EndSelector = Action::EndSelector;
constexpr auto BeginSegment = Action::BeginSegment;
constexpr auto EndSegment = Action::EndSegment;
constexpr auto SetName = Action::SetName;
constexpr auto SetId = Action::SetId;
constexpr auto AddClass = Action::AddClass;
constexpr auto AddPseudoClass = Action::AddPseudoClass;
constexpr auto AddAttribute = Action::AddAttribute;
constexpr auto BeginProperty = Action::BeginProperty;
constexpr auto EndProperty = Action::EndProperty;
constexpr auto LogPropertyError = Action::LogPropertyError;
constexpr auto SetPropertyName = Action::SetPropertyName;
constexpr auto AddString = Action::AddString;
constexpr auto AddHexColor = Action::AddHexColor;
constexpr auto AddNumber = Action::AddNumber;
constexpr auto AddNumberWithUnit = Action::AddNumberWithUnit;
constexpr auto AddPercentage = Action::AddPercentage;
constexpr auto EndBraceValue = Action::EndBraceValue;
constexpr auto OpenBracket = Action::OpenBracket;
constexpr auto CloseBracket = Action::CloseBracket;
constexpr auto Hold = Action::Hold;
constexpr auto OpenEscape = Action::OpenEscape;
constexpr auto OpenComment = Action::OpenComment;
constexpr auto EnterBraceValue = Action::EnterBraceValue;
constexpr auto FallBack = Action::FallBack;

// --- How rows are put together ---------------------------------------------------------------

constexpr ActionList operator+(ActionList list, Action action) {
    list.actions[list.count++] = static_cast<std::uint8_t>(action);
    return list;
}

constexpr ActionList operator+(ActionList list, const ActionList& more) {
    for (const std::uint8_t action : more) {
        list = list + static_cast<Action>(action);
    }
    return list;
}

/// Actions and lists of actions, in their order.
template <class... Parts>
constexpr ActionList list(const Parts&... parts) {
    return (ActionList() + ... + parts);
}

template <class... Parts>
constexpr Transition on(const ByteSet& input, Family next, const Parts&... actions) {
    return {input, next, list(actions...), true};
}

template <class... Parts>
constexpr Transition on(char input, Family next, const Parts&... actions) {
    return on(byte(input), next, actions...);
}

/// A backslash and what belongs to it, then `next`.
template <class... Parts>
constexpr Transition escape(Family next, const Parts&... actions) {
    return on('\\', next, actions..., OpenEscape);
}

/// A comment, then `next`. The "/" must be followed by "*"; the actions do not wait for that.
template <class... Parts>
constexpr Transition comment(Family next, const Parts&... actions) {
    return on('/', next, actions..., OpenComment);
}

/// Some transitions of a row. The first one that takes a byte has it.
struct Transitions {
    std::array<Transition, Row::limit> items = {};
    std::size_t count = 0;

    template <class... Items>
    constexpr Transitions(const Items&... transitions)  // NOLINT(google-explicit-constructor): {}
        : items{transitions...}, count(sizeof...(transitions)) {}
    constexpr Transitions() = default;

    constexpr const Transition* begin() const { return items.data(); }
    constexpr const Transition* end() const { return items.data() + count; }
};

constexpr Transitions operator+(Transitions a, const Transitions& b) {
    for (const Transition& transition : b) {
        a.items[a.count++] = transition;
    }
    return a;
}

// --- Groups ----------------------------------------------------------------------------------

constexpr auto stop = otherwise(Stopped);
constexpr auto selectorError = otherwise(Stopped, FallBack);
constexpr auto propertyError = otherwise(Skip, LogPropertyError, Hold);
constexpr auto listError = otherwise(ListSkip, LogPropertyError, Hold);
constexpr auto unfinished = otherwise(Stopped, LogPropertyError);

/// What neighbouring families have in common.
struct Group {
    Family first;
    Family last;
    Transition unlisted;      ///< A byte that the family's row does not name; a bad escape.
    Transition straySlash;    ///< The byte behind a "/" that is no "*".
    Transition end;           ///< The end of the text, behind its NUL.
    Transition endInComment;  ///< The same while a comment is open.
    ActionList endOfComment = {};
};

// clang-format off
constexpr Group groups[] = {
    // First family   and last          unlisted       straySlash     end            endInComment
    {Top,              Final,           selectorError, stop,          stop,          stop},
    {TypeName,         CommaGap,        selectorError, selectorError, selectorError, selectorError},
    // A stray slash between declarations is a fault of the rule set, not of a declaration.
    {RuleBody,         RuleBody,        propertyError, selectorError, stop,          selectorError},
    {Skip,             Skip,            stop,          stop,          stop,          stop},
    {PropertyName,     BraceClose,      propertyError, propertyError, unfinished,    unfinished},
    {BraceBody,        BraceSingleEscape, stop,        stop,          stop,          stop,
     list(AppendWhitespace)},
    {ListStart,        ListStart,       listError,     listError,     unfinished,    unfinished},
    {ListSkip,         ListSkip,        stop,          stop,          stop,          stop},
    {ListPropertyName, ListBraceClose,  listError,     listError,     unfinished,    unfinished},
};
// clang-format on

constexpr const Group& groupOf(Family family) {
    std::size_t i = 0;
    while (!isBetween(family, groups[i].first, groups[i].last)) {
        ++i;
    }
    return groups[i];
}

/// A row whose unlisted bytes take the path of the family's group.
constexpr Row row(Family family, const Transitions& named) {
    Row row = {family, named.items};
    if (named.count == 0 || !(named.items[named.count - 1].input == everyByte)) {
        row.transitions[named.count] = groupOf(family).unlisted;
    }
    return row;
}

// --- The selector side -----------------------------------------------------------------------

// clang-format off

/// The start of a segment; `begin` is what begins with it.
constexpr Transitions segmentStart(const ActionList& begin) {
    return {
        on('#', IdStart, begin),
        on('.', ClassStart, begin),
        on(':', PseudoStart, begin),
        on('[', Attribute, begin, Clear),
        on('*', Universal, begin, Clear),
        escape(TypeName, begin, Clear),
        on(NameStart, TypeName, begin, Clear, Append),
    };
}

/// What may follow a part of a segment; `add` is what adds that part.
constexpr Transitions segmentEnd(const ActionList& add) {
    return {
        on('#', IdStart, add),
        on('.', ClassStart, add),
        on(':', PseudoStart, add),
        on('[', Attribute, add, Clear),
        on(',', CommaGap, add, EndSegment, EndSelector),
        on('{', RuleBody, add, EndSegment, EndSelector),
        // The selector is committed and yet goes on: a further segment makes a second, longer one.
        on(Space, FirstGap, add, EndSegment, EndSelector),
        comment(FirstGap, add, EndSegment, EndSelector),
    };
}

/// More of a name, of whatever kind.
constexpr Transitions name(Family family) {
    return {on(NameByte, family, Append), escape(family)};
}

/// The first byte of a name, behind the character that tells its kind.
constexpr Transitions nameStart(Family family) {
    return {escape(family, Clear), on(NameStart, family, Clear, Append)};
}

/// The same where the name's text has begun, with "!" or with the second ":".
constexpr Transitions nameGoesOn(Family family) {
    return {escape(family), on(NameStart, family, Append)};
}

/// The start of a rule set, or of the text; `before` commits the rule set in front of it.
constexpr Transitions top(const ActionList& before) {
    return Transitions{on(Nul, Final, before), on(Space, Top, before), comment(Top, before)} +
           segmentStart(list(before, BeginRuleSet, BeginSelector, BeginSegment));
}

constexpr Row selectorSide[] = {
    row(Top, top({})),
    // A rule set counts once there is a byte behind its "}".
    row(AfterRule, top(list(EndRuleSet))),
    row(Final, {}),
    row(TypeName, name(TypeName) + segmentEnd(list(SetName))),
    row(IdStart, nameStart(IdName)),
    row(IdName, name(IdName) + segmentEnd(list(SetId))),
    row(ClassStart, Transitions{on('!', ClassBang, Clear, Append)} + nameStart(ClassName)),
    row(ClassBang, nameGoesOn(ClassName)),
    row(ClassName, name(ClassName) + segmentEnd(list(AddClass))),
    row(PseudoStart, Transitions{on(':', PseudoColon, Clear, Append), on('!', PseudoBang, Clear, Append)} +
                     nameStart(PseudoName)),
    row(PseudoColon, Transitions{on('!', PseudoBang, Append)} + nameGoesOn(PseudoName)),
    row(PseudoBang, nameGoesOn(PseudoName)),
    row(PseudoName, name(PseudoName) + segmentEnd(list(AddPseudoClass))),
    row(Universal, segmentEnd(list(AppendStar, SetName))),
    row(Attribute, {on(']', AttributeEnd), comment(Attribute), on(everyByte, Attribute, Append)}),
    row(AttributeEnd, segmentEnd(list(AddAttribute))),
    row(FirstGap, segmentStart(list(BeginSegment)) +
                  Transitions{on(',', CommaGap), on('{', RuleBody), on(Space, SecondGap), comment(SecondGap)}),
    // No segment here: two blanks between two names are a fault.
    row(SecondGap, {on(',', CommaGap), on('{', RuleBody), on(Space, SecondGap), comment(SecondGap)}),
    row(CommaGap, segmentStart(list(BeginSelector, BeginSegment)) +
                  Transitions{on(Space, CommaGap), comment(CommaGap)}),
};

// --- The rule body ---------------------------------------------------------------------------

constexpr Row ruleBody[] = {
    row(RuleBody, {
        on(Space | byte(';'), RuleBody),
        on('}', AfterRule),
        comment(RuleBody),
        escape(PropertyName, BeginProperty, Clear),
        on(NameStart, PropertyName, BeginProperty, Clear, Append),
    }),
    // Behind a fault: to the declaration's end, which the rule body then reads.
    row(Skip, {on(DeclarationEnd, RuleBody, Hold), on(everyByte, Skip)}),
};

// --- Declarations ----------------------------------------------------------------------------

/// What ends a declaration in a rule set; `add` is what ends its last value.
constexpr Transitions declarationEnd(const ActionList& add) {
    return {
        on(';', RuleBody, add, EndProperty),
        on('}', AfterRule, add, EndProperty),
    };
}

/// What may follow a value; `add` is what adds it.
constexpr Transitions valueEnd(const ActionList& add) {
    return Transitions{on(BlankOrComma, ValueGap, add), comment(ValueGap, add)} + declarationEnd(add);
}

constexpr Transitions valueStart() {
    return {
        on('"', DoubleQuoted, Clear),
        on('\'', SingleQuoted, Clear),
        on('#', HexStart),
        on('-', Minus, Clear, Append),
        on('.', FractionStart, Clear, Append),
        on(Digit, Integer, Clear, Append),
        on(NameStart, Word, Clear, Append),
        escape(Word, Clear),
    };
}

/// "(" behind what is the brace value's name then.
constexpr Transitions brace() {
    return {on('(', BraceClose, EnterBraceValue)};
}

/// What may follow the digits of a number; `unit` is the family that its unit is.
constexpr Transitions numberEnd(Family unit) {
    return {on('%', Percent, Convert), on(NameStart, unit, Convert, Clear, Append)};
}

constexpr Row declarations[] = {
    row(PropertyName, name(PropertyName) + Transitions{
        on(':', ValueStart, SetPropertyName),
        on(Space, NameGap, SetPropertyName),
        comment(NameGap, SetPropertyName),
    }),
    row(NameGap, {on(':', ValueStart), on(Space, NameGap), comment(NameGap)}),
    row(ValueStart, Transitions{on(Space, ValueStart), comment(ValueStart)} + valueStart()),
    row(ValueGap, Transitions{on(BlankOrComma, ValueGap), comment(ValueGap)} + valueStart() +
                  declarationEnd({})),
    row(DoubleQuoted, {on('"', StringEnd), escape(DoubleQuoted), on(everyByte, DoubleQuoted, Append)}),
    row(SingleQuoted, {on('\'', StringEnd), escape(SingleQuoted), on(everyByte, SingleQuoted, Append)}),
    row(StringEnd, valueEnd(list(AddString))),
    row(HexStart, {on(HexDigit, HexDigit1, Clear, Append)}),
    row(HexDigit1, {on(HexDigit, HexDigit2, Append)}),
    row(HexDigit2, {on(HexDigit, HexDigit3, Append)}),
    row(HexDigit3, Transitions{on(HexDigit, HexDigit4, Append)} + valueEnd(list(AddHexColor))),
    row(HexDigit4, {on(HexDigit, HexDigit5, Append)}),
    row(HexDigit5, {on(HexDigit, HexDigit6, Append)}),
    row(HexDigit6, valueEnd(list(AddHexColor))),
    row(Word, name(Word) + brace() + valueEnd(list(AddString))),
    row(Minus, Transitions{on('.', FractionStart, Append), on(Digit, SignedInteger, Append)} +
               name(Word) + brace() + valueEnd(list(AddString))),
    row(Integer, Transitions{on(Digit, Integer, Append), on('.', FractionStart, Append)} +
                 numberEnd(Unit) + Transitions{escape(Unit, Convert, Clear)} +
                 valueEnd(list(Convert, AddNumber))),
    row(FractionStart, {on(Digit, Fraction, Append)}),
    row(Fraction, Transitions{on(Digit, Fraction, Append)} +
                  numberEnd(Unit) + Transitions{escape(Unit, Convert, Clear)} +
                  valueEnd(list(Convert, AddNumber))),
    row(Percent, valueEnd(list(AddPercentage))),
    row(Unit, name(Unit) + valueEnd(list(AddNumberWithUnit))),
    // A minus and digits may still be a word, which only "(" decides. Otherwise the number has
    // emptied the token, and AddString adds nothing.
    row(SignedInteger, Transitions{on(Digit, SignedInteger, Append), on('.', FractionStart, Append)} +
                       numberEnd(SignedUnit) + Transitions{escape(EscapedSignedUnit, Convert, Clear)} +
                       brace() + valueEnd(list(Convert, AddNumber, AddString))),
    row(SignedUnit, name(SignedUnit) + brace() + valueEnd(list(AddNumberWithUnit, AddString))),
    // A hexadecimal escape stands right behind the digits: a later backslash makes a plain unit.
    row(EscapedSignedUnit, Transitions{on(NameByte, EscapedSignedUnit, Append), escape(Unit)} +
                           brace() + valueEnd(list(AddNumberWithUnit, AddString))),
    row(BraceClose, {on(')', StringEnd, EndBraceValue)}),
};

// --- Brace values ----------------------------------------------------------------------------

constexpr Row braceValues[] = {
    row(BraceBody, {
        on('(', BraceBody, OpenBracket),
        on(')', BraceBody, CloseBracket),
        on(Space, BraceBody, AppendWhitespace),
        on('"', BraceDoubleQuoted, Append),
        on('\'', BraceSingleQuoted, Append),
        comment(BraceBody),
        on(everyByte, BraceBody, Append),
    }),
    // A single quote in double quotes stops the reading, and not the other way round.
    row(BraceDoubleQuoted, {
        on('"', BraceBody, Append),
        on('\\', BraceDoubleEscape, Append),
        on('\'', Stopped),
        on(everyByte, BraceDoubleQuoted, Append),
    }),
    row(BraceDoubleEscape, {on(everyByte, BraceDoubleQuoted, Append)}),
    row(BraceSingleQuoted, {
        on('\'', BraceBody, Append),
        on('\\', BraceSingleEscape, Append),
        on(everyByte, BraceSingleQuoted, Append),
    }),
    row(BraceSingleEscape, {on(everyByte, BraceSingleQuoted, Append)}),
};

// --- The bare list ---------------------------------------------------------------------------

constexpr Row listStart[] = {
    row(ListStart, {
        escape(ListPropertyName, BeginProperty, Clear),
        on(NameStart, ListPropertyName, BeginProperty, Clear, Append),
    }),
    row(ListSkip, {on(DeclarationEnd, Top), on(everyByte, ListSkip)}),
};

// clang-format on

/// A transition of a declaration as it is in the bare list, which differs in what a fault and what
/// the end of a property lead to. The "}" gives its place to NUL, which is then read at the top.
constexpr Transition inList(const Transition& transition) {
    const auto next = static_cast<Family>(transition.next);
    Transition result = transition;
    if (isBetween(next, PropertyName, BraceClose)) {
        result.next = twin(next);
    } else if (next == Skip) {
        result.next = ListSkip;
    } else if (next == RuleBody) {
        result.next = Top;
    } else if (next == AfterRule) {
        result = on(Nul, Top, transition.actions, Hold);
    }
    return result;
}

constexpr Row inList(const Row& row) {
    Row result = {twin(static_cast<Family>(row.state)), {}};
    for (std::size_t i = 0; i < Row::limit; ++i) {
        result.transitions[i] = inList(row.transitions[i]);
    }
    return result;
}

// --- All of them -----------------------------------------------------------------------------

constexpr auto allRows() {
    std::array<Row, ListBraceClose> rows = {};
    std::size_t count = 0;
    for (const Row& row : selectorSide) {
        rows[count++] = row;
    }
    for (const Row& row : ruleBody) {
        rows[count++] = row;
    }
    for (const Row& row : declarations) {
        rows[count++] = row;
    }
    for (const Row& row : braceValues) {
        rows[count++] = row;
    }
    for (const Row& row : listStart) {
        rows[count++] = row;
    }
    for (const Row& row : declarations) {
        rows[count++] = inList(row);
    }
    return rows;
}

inline constexpr auto rows = allRows();

constexpr auto groupNumbers() {
    std::array<std::uint8_t, ListBraceClose + 1> numbers = {};
    for (const Row& row : rows) {
        const Group& group = groupOf(static_cast<Family>(row.state));
        numbers[row.state] = static_cast<std::uint8_t>(&group - groups);
    }
    return numbers;
}

}  // namespace table

/// The machine. The text's terminating NUL is part of its input.
inline constexpr auto machine = byte_machine::compile<table::rows>(Action::Append);
static_assert(machine.classes == 25, "bytes that no row tells apart share a class");

/// Which of the groups each family belongs to.
inline constexpr auto groupNumbers = table::groupNumbers();

inline const table::Group& groupOf(Family family) {
    return table::groups[groupNumbers[family]];
}

}  // namespace subtitles::style_sheet
