// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the style sheet machine does: the records under construction, the token, and how a token
// becomes a value. When it is done is the business of the machine's table.

#pragma once

#include <cstdint>

#include "foundation/logging.h"
#include "foundation/string.h"

#include "subtitles/style-sheet.h"

namespace subtitles {

/// Reads one text into one sheet. What was not committed is lost with the object.
///
/// The order of calls in a rule set: `beginRuleSet`; for each selector `beginSelector`, for each of
/// its segments `beginSelectorSegment`, what the segment is made of, `endSelectorSegment` and
/// `endSelector`; for each declaration `beginProperty`, `setPropertyName`, its values and
/// `endProperty`; at last `endRuleSet`. `beginRuleSet` may come again at any time.
class ParserState {
public:
    using Position = const unsigned char*;

    /// Where the machine goes when a brace value ends: a family of its table, 0 when none is open.
    using ReturnState = std::uint16_t;

    /// Both the sheet and the text that begins at `text` must outlive the object.
    ParserState(StyleSheet& sheet, Position text) : styleSheet(sheet), source(text) {}
    ParserState(const ParserState&) = delete;
    ParserState& operator=(const ParserState&) = delete;
    ~ParserState() = default;

    // The token.

    void clear();
    /// Adds the byte at the position, but never twice in a row from the same position.
    void append(Position position);
    /// Adds the bytes from `begin` up to `end`: `append` with each of them.
    void append(Position begin, Position end);
    /// Adds a byte that does not come from a position, or that counts twice.
    void appendByte(char byte);
    void convert();

    /// Adds what a backslash and the byte `c` stand for: "?" with any byte but LF, which adds
    /// nothing, the quotes, and "f", "n", "r" and "t". The backslash is not among them.
    void appendEscape(unsigned char c);
    /// A hexadecimal escape's digits stand between the positions. They add nothing: an escaped
    /// letter vanishes from its name.
    void appendUnicodeEscape(Position begin, Position end);
    /// One blank for white space or a comment; none at the start and none behind a blank or one of
    /// "(", ")", ",", ":" and ";". A blank in front of one of those stays.
    void appendBraceValueWhitespace();

    // Selectors.

    void beginSelectorSegment();
    void setSelectorSegmentName();
    void setSelectorSegmentId();
    void addSelectorSegmentClass();
    void addSelectorSegmentPseudoClass();
    void addSelectorSegmentAttribute();
    /// Drops a segment that has nothing but attributes.
    void endSelectorSegment();
    void beginSelector();
    /// Commits the selector and keeps it open: a further segment makes a second, longer one.
    void endSelector();

    // Rule sets.

    void beginRuleSet(Position position);
    void endRuleSet();

    // Properties.

    void beginProperty();
    void setPropertyName();
    /// Commits the property to the rule set; to the sheet where no selector of the rule set
    /// counted.
    void endProperty();
    void logPropertyError();

    // Values.

    void addNumberPropertyValue(bool hasUnit);
    void addPercentagePropertyValue();
    void addStringPropertyValue();
    /// A colour of 3, 6 or 8 digits; the machine lets no 8 come.
    void addHexPropertyValue();
    void beginBraceValue();
    void endBraceValue();

    static fn::logging::Category* _fn_getLoggingCategoryStatic();
    fn::logging::Tag _fn_getLoggingTag() const;

    std::int32_t braceDepth = 0;
    StyleSheet& styleSheet;
    Position source;  ///< The first byte of the text.
    StyleSheet::RuleSet ruleSet;
    StyleSheet::Selector selector;
    StyleSheet::SelectorSegment segment;
    StyleSheet::Property property;
    Position ruleSetStart = nullptr;  ///< Where the open rule set began; null when none is open.
    Position lastAppended = nullptr;  ///< Of the byte that `append` added last; null after `clear`.
    fn::String token;
    double number = 0;  ///< The last one that `convert` made.
    fn::String braceName;
    ReturnState returnState = 0;
};

}  // namespace subtitles
