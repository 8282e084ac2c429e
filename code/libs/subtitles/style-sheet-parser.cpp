// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The loop that runs the style sheet machine over a text.
//
// The table has the language, ParserState what is done with it. Between them stands only what every
// family has alike: which byte is read next, and the escapes and comments that can be open in it.
// The text's terminating NUL is its last input; the end of the text comes only behind it.

#include "subtitles/style-sheet-parser.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "subtitles/style-sheet-parser-state.h"
#include "subtitles/style-sheet-parser-table.h"

namespace subtitles {
namespace {

using byte_machine::ActionList;
using byte_machine::Cell;
using byte_machine::Transition;
using style_sheet::Action;
using style_sheet::Family;
using style_sheet::groupOf;
using style_sheet::machine;
using Position = ParserState::Position;

// What an action with its message takes, beside a byte that is read.
constexpr std::uint64_t stepsToLog = 16;

// What a value takes beside that: some three hundred bytes of memory, for a text of perhaps one.
constexpr std::uint64_t stepsToStore = 640;

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

/// How much of selectors there is.
struct Weight {
    std::uint64_t segments = 0;
    std::uint64_t names = 0;  ///< Without those that every segment has room for.
    std::uint64_t bytes = 0;

    Weight& operator+=(const Weight& other) {
        segments += other.segments;
        names += other.names;
        bytes += other.bytes;
        return *this;
    }
    std::uint64_t stepsToCopy() const { return 4 * segments + 4 * names + bytes / 16; }
    std::uint64_t memory() const { return sizeof(fn::String) * names + bytes; }
};

Weight weightOf(const StyleSheet::SelectorSegment& segment) {
    Weight weight = {1, 0, segment.name.size() + segment.id.size()};
    for (const auto* names : {&segment.classes, &segment.pseudoClasses, &segment.attributes}) {
        weight.names += names->size();
        for (const fn::String& name : *names) {
            weight.bytes += name.size();
        }
    }
    return weight;
}

/// What ends the reading of a text ahead of its end.
struct Bounds {
    bool mayRepeat;  ///< Whether a rule set may be read as a bare list again and again.
    std::uint64_t segments;
    std::uint64_t memory;  ///< Of the segments' names, in bytes.
};

class Recognizer {
public:
    Recognizer(StyleSheet& sheet, const fn::String& text, const Bounds& maximum,
               StyleSheetEffort& total)
        : state(sheet, reinterpret_cast<Position>(text.c_str())),
          bounds(maximum),
          effort(total),
          next(state.source),
          end(next + std::strlen(text.c_str()) + 1) {}

    void run() {
        while (family != style_sheet::Stopped && !isExhausted()) {
            step(next++);
            if (family != style_sheet::Stopped && next == end) {
                finish();
            }
        }
    }

private:
    /// What is open in the family.
    enum class Mode {
        Plain,
        Escape,       ///< Behind a backslash.
        HexEscape,    ///< Behind a backslash and hexadecimal digits.
        EscapeEnd,    ///< Behind a CR that ended those; an LF belongs to it.
        Slash,        ///< Behind a "/", which must begin a comment.
        Comment,      ///< Behind "/*".
        CommentStar,  ///< In a comment, behind "*".
    };

    void step(Position at) {
        ++effort.spent;
        switch (mode) {  // LCOV_EXCL_BR_LINE: there are no other modes.
            case Mode::Plain: plain(at); break;
            case Mode::Escape: escape(at); break;
            case Mode::HexEscape: hexEscape(at); break;
            case Mode::EscapeEnd: escapeEnd(at); break;
            case Mode::Slash: slash(at); break;
            case Mode::Comment: comment(at); break;
            case Mode::CommentStar: commentStar(at); break;
        }
    }

    void plain(Position at) {
        const auto& row = machine.cells[family];
        const Cell cell = row[machine.classOfByte[*at]];
        if (cell.next == family && cell.list == machine.appending) {
            // Most bytes are more of a name or a string: a stretch of them is taken at once.
            while (next != end && row[machine.classOfByte[*next]] == cell) {
                ++next;
            }
            effort.spent += static_cast<std::uint64_t>(next - at - 1);
            state.append(at, next);
            return;
        }
        follow(static_cast<Family>(cell.next), machine.lists[cell.list], at);
    }

    void escape(Position at) {
        if (*at == '\n' || *at == '\f' || *at == '\r') {
            follow(groupOf(family).unlisted, at);
        } else if (isHexDigit(*at)) {
            escapeStart = at;
            mode = Mode::HexEscape;
        } else {
            state.appendEscape(*at);
            goOn(behindEscape(family));
        }
    }

    void hexEscape(Position at) {
        constexpr std::ptrdiff_t mostDigits = 6;
        if (isHexDigit(*at) && at - escapeStart < mostDigits) {
            return;
        }
        state.appendUnicodeEscape(escapeStart, at);
        if (style_sheet::table::Space.contains(*at)) {
            // One blank behind the digits belongs to the escape.
            goOn(behindBlank(family));
            mode = *at == '\r' ? Mode::EscapeEnd : Mode::Plain;
        } else {
            goOn(family);
            plain(at);
        }
    }

    void escapeEnd(Position at) {
        goOn(family);
        if (*at != '\n') {
            plain(at);
        }
    }

    void slash(Position at) {
        if (*at == '*') {
            mode = Mode::Comment;
        } else {
            follow(groupOf(family).straySlash, at);
        }
    }

    void comment(Position at) {
        if (*at == '*') {
            mode = Mode::CommentStar;
        }
    }

    void commentStar(Position at) {
        if (*at == '/') {
            follow(family, groupOf(family).endOfComment, at);
        } else if (*at != '*') {
            mode = Mode::Comment;
        }
    }

    /// The end of the text, with its NUL consumed.
    void finish() {
        const bool inComment = mode == Mode::Comment;
        follow(inComment ? groupOf(family).endInComment : groupOf(family).end, end - 1);
    }

    void follow(const Transition& transition, Position at) {
        follow(static_cast<Family>(transition.next), transition.actions, at);
    }

    void follow(Family nextFamily, const ActionList& actions, Position at) {
        goOn(nextFamily);
        for (const std::uint8_t action : actions) {
            perform(static_cast<Action>(action), at);
        }
    }

    void goOn(Family nextFamily) {
        family = nextFamily;
        mode = Mode::Plain;
    }

    void perform(Action action, Position at) {
        effort.spent += style_sheet::isLogged(action) ? stepsToLog : 0;
        effort.spent += addsValue(action) ? stepsToStore : 0;
        switch (action) {  // LCOV_EXCL_BR_LINE: the table has no other actions.
            case Action::Clear: state.clear(); break;
            case Action::Append: state.append(at); break;
            case Action::AppendStar: state.appendByte('*'); break;
            case Action::Convert: state.convert(); break;
            case Action::AppendWhitespace: state.appendBraceValueWhitespace(); break;
            case Action::BeginRuleSet: beginRuleSet(at); break;
            case Action::EndRuleSet: endRuleSet(); break;
            case Action::BeginSelector: beginSelector(); break;
            case Action::EndSelector: endSelector(); break;
            case Action::BeginSegment: state.beginSelectorSegment(); break;
            case Action::EndSegment: endSegment(); break;
            case Action::SetName: state.setSelectorSegmentName(); break;
            case Action::SetId: state.setSelectorSegmentId(); break;
            case Action::AddClass: state.addSelectorSegmentClass(); break;
            case Action::AddPseudoClass: state.addSelectorSegmentPseudoClass(); break;
            case Action::AddAttribute: state.addSelectorSegmentAttribute(); break;
            case Action::BeginProperty: state.beginProperty(); break;
            case Action::EndProperty: state.endProperty(); break;
            case Action::LogPropertyError: state.logPropertyError(); break;
            case Action::SetPropertyName: state.setPropertyName(); break;
            case Action::AddString: state.addStringPropertyValue(); break;
            case Action::AddHexColor: state.addHexPropertyValue(); break;
            case Action::AddNumber: state.addNumberPropertyValue(false); break;
            case Action::AddNumberWithUnit: state.addNumberPropertyValue(true); break;
            case Action::AddPercentage: state.addPercentagePropertyValue(); break;
            case Action::EndBraceValue: state.endBraceValue(); break;
            case Action::OpenBracket: openBracket(); break;
            case Action::CloseBracket: closeBracket(); break;
            case Action::Hold: --next; break;
            case Action::OpenEscape: mode = Mode::Escape; break;
            case Action::OpenComment: mode = Mode::Slash; break;
            case Action::EnterBraceValue: enterBraceValue(); break;
            case Action::FallBack: fallBack(); break;
        }
    }

    void beginRuleSet(Position at) {
        state.beginRuleSet(at);
        open = Weight();
    }

    void endRuleSet() {
        state.endRuleSet();
        committed += open;
        open = Weight();
    }

    void beginSelector() {
        state.beginSelector();
        selector = Weight();
    }

    void endSegment() {
        const Weight segment = weightOf(state.segment);
        const std::size_t before = state.selector.segments.size();
        state.endSelectorSegment();
        if (state.selector.segments.size() > before) {
            selector += segment;
        }
    }

    void endSelector() {
        state.endSelector();
        open += selector;
        effort.spent += selector.stepsToCopy();
    }

    void openBracket() {
        ++state.braceDepth;
        state.appendByte('(');
    }

    void closeBracket() {
        if (state.braceDepth > 1) {
            --state.braceDepth;
            state.appendByte(')');
            return;
        }
        state.braceDepth = 0;
        --next;
        family = static_cast<Family>(state.returnState);
    }

    void enterBraceValue() {
        state.beginBraceValue();
        state.braceDepth = 1;
        state.returnState = family;
        family = style_sheet::BraceBody;
    }

    /// Reads the open rule set once more, as a bare list. Where none is open, nothing is read.
    void fallBack() {
        const Position start = state.ruleSetStart;
        if (start == nullptr || (start == lastFallBack && !bounds.mayRepeat)) {
            return;
        }
        lastFallBack = start;
        beginRuleSet(start);
        effort.spent += stepsToLog;
        next = start;
        family = style_sheet::ListStart;
    }

    bool isExhausted() const {
        return effort.spent > effort.allowed ||
               open.segments + committed.segments > bounds.segments ||
               open.memory() + committed.memory() > bounds.memory;
    }

    static bool addsValue(Action action) {
        return action == Action::AddString || action == Action::AddHexColor ||
               action == Action::AddNumber || action == Action::AddNumberWithUnit ||
               action == Action::AddPercentage || action == Action::EndBraceValue;
    }

    static bool isHexDigit(unsigned char byte) {
        return style_sheet::table::HexDigit.contains(byte);
    }

    ParserState state;
    const Bounds bounds;
    StyleSheetEffort& effort;
    Position next;  ///< The byte that is read next.
    Position end;   ///< Behind the NUL.
    Family family = style_sheet::Top;
    Mode mode = Mode::Plain;
    Position escapeStart = nullptr;   ///< The first digit of the hexadecimal escape.
    Position lastFallBack = nullptr;  ///< A rule set is never left again once another has begun.
    Weight selector;                  ///< The open selector.
    Weight open;                      ///< The open rule set's selectors.
    Weight committed;
};

}  // namespace

void StyleSheet::parse(const fn::String& text) {
    parseStyleSheet(*this, text);
}

void parseStyleSheet(StyleSheet& sheet, const fn::String& text) {
    StyleSheetEffort effort = {0, unlimited};
    Recognizer(sheet, text, {true, unlimited, unlimited}, effort).run();
}

void parseStyleSheetGuarded(StyleSheet& sheet, const fn::String& text, StyleSheetEffort& effort) {
    constexpr std::uint64_t stepsPerByte = 64;
    constexpr std::uint64_t segments = 200000;
    constexpr std::uint64_t memory = 256U << 20U;
    effort.allowed += stepsPerByte * text.size();
    Recognizer(sheet, text, {false, segments, memory}, effort).run();
}

void parseStyleSheetGuarded(StyleSheet& sheet, const fn::String& text) {
    StyleSheetEffort effort;
    parseStyleSheetGuarded(sheet, text, effort);
}

}  // namespace subtitles
