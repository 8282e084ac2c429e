// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The names of what stands in the style sheet machine's table: its actions and its states.

#pragma once

#include <cstdint>

#include "subtitles/byte-machine.h"

namespace subtitles::style_sheet {

/// What the machine does. All but the last group are operations of `ParserState`.
enum class Action : std::uint8_t {
    Clear,
    Append,
    AppendStar,
    Convert,
    AppendWhitespace,
    // Selectors and rule sets.
    BeginRuleSet,
    EndRuleSet,
    BeginSelector,
    EndSelector,
    BeginSegment,
    EndSegment,
    SetName,
    SetId,
    AddClass,
    AddPseudoClass,
    AddAttribute,
    // Properties and values.
    BeginProperty,
    EndProperty,
    LogPropertyError,
    SetPropertyName,
    AddString,
    AddHexColor,
    AddNumber,
    AddNumberWithUnit,
    AddPercentage,
    EndBraceValue,
    OpenBracket,
    // How the machine goes on. Each of these ends its list.
    CloseBracket,     ///< Of a brace value; the last one leaves it, and is read again behind it.
    Hold,             ///< The same byte is read again.
    OpenEscape,       ///< A backslash was read; its family goes on behind the escape.
    OpenComment,      ///< A "/" was read; its family goes on behind the comment.
    EnterBraceValue,  ///< The family goes on behind the closing bracket.
    FallBack,         ///< To the start of the rule set, as a bare list; ends where none is open.
};

/// Whether the action leaves a message in the log, and with it most of its cost.
constexpr bool isLogged(Action action) {
    return Action::BeginRuleSet <= action && action <= Action::EndBraceValue;
}

enum Family : byte_machine::State {
    Stopped = byte_machine::error,
    // The selector side.
    Top = byte_machine::start,
    AfterRule,
    Final,
    TypeName,
    IdStart,
    IdName,
    ClassStart,
    ClassBang,
    ClassName,
    PseudoStart,
    PseudoColon,
    PseudoBang,
    PseudoName,
    Universal,
    Attribute,
    AttributeEnd,
    FirstGap,
    SecondGap,
    CommaGap,
    // The rule body.
    RuleBody,
    Skip,
    // Declarations. The bare list has a twin of each of these.
    PropertyName,
    NameGap,
    ValueStart,
    ValueGap,
    DoubleQuoted,
    SingleQuoted,
    StringEnd,
    HexStart,
    HexDigit1,
    HexDigit2,
    HexDigit3,
    HexDigit4,
    HexDigit5,
    HexDigit6,
    Word,
    Minus,
    Integer,
    FractionStart,
    Fraction,
    Percent,
    Unit,
    SignedInteger,
    SignedUnit,
    EscapedSignedUnit,
    BraceClose,
    // Brace values.
    BraceBody,
    BraceDoubleQuoted,
    BraceDoubleEscape,
    BraceSingleQuoted,
    BraceSingleEscape,
    // The bare list.
    ListStart,
    ListSkip,
    ListPropertyName,
    ListBraceClose = ListPropertyName + (BraceClose - PropertyName),
};

/// The state of the bare list that does what `family` does in a rule set.
constexpr Family twin(Family family) {
    return static_cast<Family>(family - PropertyName + ListPropertyName);
}

constexpr bool isBetween(Family family, Family first, Family last) {
    return first <= family && family <= last;
}

/// Where a family goes on behind a backslash and one byte.
constexpr Family behindEscape(Family family) {
    return family == EscapedSignedUnit         ? SignedUnit
           : family == twin(EscapedSignedUnit) ? twin(SignedUnit)
                                               : family;
}

/// Where a family goes on behind the blank that ended a hexadecimal escape.
constexpr Family behindBlank(Family family) {
    return family == EscapedSignedUnit         ? Unit
           : family == twin(EscapedSignedUnit) ? twin(Unit)
                                               : family;
}

}  // namespace subtitles::style_sheet
