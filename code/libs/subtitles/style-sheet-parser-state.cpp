// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The actions of the style sheet machine.
//
// Nothing here fails on content: what is no number is 0, and a record without content is dropped
// where it ends. A record that is committed for the last time is moved, since the action that
// follows begins it anew.

#include "subtitles/style-sheet-parser-state.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "foundation/utf8.h"

#include "subtitles/gst-logging.h"

namespace subtitles {
namespace {

using Channels = std::array<unsigned char, 4>;

/// On the scale of 0 to 255, whatever the component means: an alpha of 0.5 is 1, and of 50% is 128.
unsigned char parseComponent(fn::String text) {
    const bool percent = text.endsWith("%", 1);
    if (percent) {
        text.pop_back();
    }
    double value = text.toFloat(0.0);
    if (percent) {
        value = value * 255.0 / 100.0;
    }
    // Clamped first: a component may be far greater than any integer.
    return static_cast<unsigned char>(std::clamp(std::floor(value + 0.5), 0.0, 255.0));
}

/// The first four components. One that is empty is left out, so that those behind it move up.
Channels parseComponents(const fn::String& text) {
    Channels channels = {0, 0, 0, 255};
    const std::vector<fn::String> pieces = text.split(',', fn::String::TrimAndSkipEmptyParts, -1);
    const std::size_t count = std::min(pieces.size(), channels.size());
    for (std::size_t i = 0; i < count; ++i) {
        channels[i] = parseComponent(pieces[i]);
    }
    return channels;
}

unsigned char parseHex(const fn::String& text) {
    return static_cast<unsigned char>(text.toUInt(0, 16));
}

/// "abc" is "aa", "bb", "cc". A length that is no colour's gives black.
Channels parseHexColor(const fn::String& digits) {
    const std::size_t size = digits.size();
    if (size == 3) {
        return {parseHex(fn::String(2, digits[0])), parseHex(fn::String(2, digits[1])),
                parseHex(fn::String(2, digits[2])), 255};
    }
    if (size != 6 && size != 8) {
        return {0, 0, 0, 255};
    }
    const auto pair = [&](std::size_t at) { return parseHex(fn::String(digits, at, 2)); };
    return {pair(0), pair(2), pair(4), size == 8 ? pair(6) : static_cast<unsigned char>(255)};
}

void setRGB(StyleSheet::Value& value, const Channels& channels) {
    value.reset(StyleSheet::Value::RGB);
    value.red = channels[0];
    value.green = channels[1];
    value.blue = channels[2];
    value.alpha = channels[3];
}

void setHSV(StyleSheet::Value& value, const Channels& channels) {
    value.reset(StyleSheet::Value::HSV);
    value.hue = channels[0];
    value.saturation = channels[1];
    value.brightness = channels[2];
    value.alpha = channels[3];
}

/// Malformed text has its ASCII white space trimmed: content raises nothing.
fn::String trim(const fn::String& text) {
    return text.trim(fn::utf8::isValid(fn::to_string_view(text)));
}

}  // namespace

// --- The token -------------------------------------------------------------------------------

void ParserState::clear() {
    token.clear();
    lastAppended = nullptr;
}

void ParserState::append(Position position) {
    if (lastAppended != position) {
        token += static_cast<char>(*position);
        lastAppended = position;
    }
}

void ParserState::append(Position begin, Position end) {
    token.append(begin, end);
    lastAppended = end - 1;
}

void ParserState::appendByte(char byte) {
    token += byte;
}

void ParserState::convert() {
    number = token.toFloat(0.0);
}

void ParserState::appendEscape(unsigned char c) {
    switch (c) {
        case '\n': break;
        case '"':
        case '\'': token += static_cast<char>(c); break;
        case 'f': token += '\f'; break;  // Never from a text, where "f" is a hexadecimal digit.
        case 'n': token += '\n'; break;
        case 'r': token += '\r'; break;
        case 't': token += '\t'; break;
        default: token += '?'; break;
    }
}

void ParserState::appendUnicodeEscape(Position /*begin*/, Position /*end*/) {}

void ParserState::appendBraceValueWhitespace() {
    constexpr fn::StringView noneBehind = " (),:;";
    if (!token.empty() && noneBehind.find(token.back()) == fn::StringView::npos) {
        token += ' ';
    }
}

// --- Selectors -------------------------------------------------------------------------------

void ParserState::beginSelectorSegment() {
    FN_LOG(Trace, FormatterF)("beginSelectorSegment");
    segment = StyleSheet::SelectorSegment();
}

void ParserState::setSelectorSegmentName() {
    FN_LOG(Trace, FormatterF)("setSelectorSegmentName ('%s')", token.c_str());
    segment.name = token;
}

void ParserState::setSelectorSegmentId() {
    FN_LOG(Trace, FormatterF)("setSelectorSegmentId ('%s')", token.c_str());
    segment.id = token;
}

void ParserState::addSelectorSegmentClass() {
    FN_LOG(Trace, FormatterF)("addSelectorSegmentClass ('%s')", token.c_str());
    segment.classes.push_back(token);
}

void ParserState::addSelectorSegmentPseudoClass() {
    FN_LOG(Trace, FormatterF)("addSelectorSegmentPseudoClass ('%s')", token.c_str());
    segment.pseudoClasses.push_back(token);
}

void ParserState::addSelectorSegmentAttribute() {
    FN_LOG(Trace, FormatterF)("addSelectorSegmentAttribute ('%s')", token.c_str());
    segment.attributes.push_back(token);
}

void ParserState::endSelectorSegment() {
    // Attributes do not count: a segment of attributes alone is no segment.
    if (segment.name.empty() && segment.id.empty() && segment.classes.empty() &&
        segment.pseudoClasses.empty()) {
        FN_LOG(Trace, FormatterF)("endSelectorSegment (empty - ignoring)");
        return;
    }
    FN_LOG(Trace, FormatterF)("endSelectorSegment");
    selector.segments.push_back(std::move(segment));
}

void ParserState::beginSelector() {
    FN_LOG(Trace, FormatterF)("beginSelector");
    selector = StyleSheet::Selector();
}

void ParserState::endSelector() {
    if (selector.segments.empty()) {
        FN_LOG(Trace, FormatterF)("endSelector (empty - ignoring");  // Known without a ")".
        return;
    }
    FN_LOG(Trace, FormatterF)("endSelector");
    ruleSet.selectors.push_back(selector);
}

// --- Rule sets -------------------------------------------------------------------------------

void ParserState::beginRuleSet(Position position) {
    FN_LOG(Trace, FormatterF)("beginRuleSet");
    ruleSetStart = position;
    ruleSet = StyleSheet::RuleSet();
}

void ParserState::endRuleSet() {
    ruleSetStart = nullptr;
    if (ruleSet.selectors.empty() && ruleSet.properties.empty()) {
        FN_LOG(Trace, FormatterF)("endRuleSet (empty - ignoring)");
        return;
    }
    FN_LOG(Trace, FormatterF)("endRuleSet");
    styleSheet.ruleSets.push_back(std::move(ruleSet));
}

// --- Properties ------------------------------------------------------------------------------

void ParserState::beginProperty() {
    FN_LOG(Trace, FormatterF)("beginProperty");
    property = StyleSheet::Property();
}

void ParserState::setPropertyName() {
    FN_LOG(Trace, FormatterF)("setPropertyName ('%s')", token.c_str());
    property.name = token;
}

void ParserState::endProperty() {
    if (property.name.empty() || property.values.empty()) {
        FN_LOG(Trace, FormatterF)("endProperty (empty - ignoring)");
        return;
    }
    // What counts is whether there are selectors, not where the text is: a rule set whose selectors
    // were all empty gives its declarations to the sheet.
    if (ruleSet.selectors.empty()) {
        FN_LOG(Trace, FormatterF)("endProperty (adding root property)");
        styleSheet.properties.push_back(std::move(property));
    } else {
        FN_LOG(Trace, FormatterF)("endProperty");
        ruleSet.properties.push_back(std::move(property));
    }
}

void ParserState::logPropertyError() {
    FN_LOG(Error, FormatterF)("Error parsing CSS property; will try to skip to next property.");
}

// --- Values ----------------------------------------------------------------------------------

void ParserState::addNumberPropertyValue(bool hasUnit) {
    StyleSheet::Value value;
    value.reset(StyleSheet::Value::Number);
    value.number = number;
    if (hasUnit) {
        value.unit = token;
    }
    FN_LOG(Trace, FormatterF)
    ("addNumberPropertyValue (%f, unit: '%s')", number, value.unit.c_str());
    property.values.push_back(std::move(value));
    // A signed number may still have been a word, and its end adds that word next: nothing then.
    token.clear();
}

void ParserState::addPercentagePropertyValue() {
    FN_LOG(Trace, FormatterF)("addPercentagePropertyValue (%f)", number);
    StyleSheet::Value value;
    value.reset(StyleSheet::Value::Percentage);
    value.percentage = number;
    property.values.push_back(std::move(value));
}

void ParserState::addStringPropertyValue() {
    if (token.empty()) {
        return;
    }
    FN_LOG(Trace, FormatterF)("addStringPropertyValue ('%s')", token.c_str());
    StyleSheet::Value& value = property.values.emplace_back();
    value.reset(StyleSheet::Value::String);
    value.string = token;
}

void ParserState::addHexPropertyValue() {
    FN_LOG(Trace, FormatterF)("addHexPropertyValue (#%s)", token.c_str());
    StyleSheet::Value value;
    setRGB(value, parseHexColor(token));
    property.values.push_back(std::move(value));
}

void ParserState::beginBraceValue() {
    braceName = token;
    token.clear();
}

void ParserState::endBraceValue() {
    StyleSheet::Value value;
    const fn::String name = braceName.toLowerCase();
    if (name == "rgb" || name == "rgba") {
        const Channels c = parseComponents(token);
        setRGB(value, c);
        FN_LOG(Trace, FormatterF)("Have RGB Value (%i,%i,%i,%i)", c[0], c[1], c[2], c[3]);
    } else if (name == "hsv" || name == "hsva") {
        const Channels c = parseComponents(token);
        setHSV(value, c);
        FN_LOG(Trace, FormatterF)("Have HSV Value (%i,%i,%i,%i)", c[0], c[1], c[2], c[3]);
    } else {
        value.braceName = braceName;
        value.reset(StyleSheet::Value::String);
        value.string = trim(token);
        FN_LOG(Trace, FormatterF)
        ("Have Brace Value: %s(%s)", value.braceName.c_str(), value.string.c_str());
    }
    property.values.push_back(std::move(value));
    token.clear();
}

fn::logging::Category* ParserState::_fn_getLoggingCategoryStatic() {
    static auto* const category = loggingCategory("subtitle.parser");  // LCOV_EXCL_BR_LINE: a race
    return category;
}

fn::logging::Tag ParserState::_fn_getLoggingTag() const {
    return {fn::String(), 0};
}

}  // namespace subtitles
