// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The printer of style sheets, and how a value is emptied. Reading is in style-sheet-parser.cpp.

#include "subtitles/style-sheet.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace subtitles {
namespace {

/// Truncates toward zero to 32 bits; what does not fit becomes the nearest number that does.
int truncate(double value) {
    constexpr double smallest = std::numeric_limits<std::int32_t>::min();
    constexpr double greatest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(std::max(value, smallest), greatest));
}

/// Tests the nearest whole number and prints by truncation, so that 2.99999999 is 2.
void appendNumber(fn::String& text, double value) {
    const bool whole = std::abs(value - std::floor(0.5 + value)) < 1e-7;
    text += whole ? fn::String::number(truncate(value), 0, ' ') : fn::String::number(value);
}

void appendChannels(fn::String& text, const char* name, const std::uint8_t (&channels)[4]) {
    text += name;
    text += '(';
    for (const std::uint8_t& channel : channels) {
        if (&channel != channels) {
            text += ',';
        }
        text += fn::String::number(channel, 0, ' ');
    }
    text += ')';
}

/// Written without quotes. An underscore or a byte above 127 is enough to want them.
bool isBareWord(const fn::String& text) {
    return std::all_of(text.begin(), text.end(), [](char byte) {
        return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
               (byte >= 'a' && byte <= 'z') || byte == '-';
    });
}

void appendQuoted(fn::String& text, const fn::String& string) {
    constexpr char controls[] = "abtnvfr";  // The letters of the bytes 7 to 13.
    text += '"';
    for (const char byte : string) {
        if (byte >= '\a' && byte <= '\r') {
            text += '\\';
            text += controls[byte - '\a'];
            continue;
        }
        if (byte == '\\') {
            text += '\\';
        } else if (byte == '"') {
            // The escape, and then the quote itself once more: three bytes, and meant so.
            text += "\\\"";
        }
        text += byte;
    }
    text += '"';
}

void appendString(fn::String& text, const StyleSheet::Value& value) {
    if (!value.braceName.empty()) {
        text += value.braceName + "(" + value.string + ")";
    } else if (isBareWord(value.string)) {
        text += value.string;
    } else {
        appendQuoted(text, value.string);
    }
}

void appendValue(fn::String& text, const StyleSheet::Value& value) {
    switch (value.type) {
        case StyleSheet::Value::RGB:
            appendChannels(text, "rgba", {value.red, value.green, value.blue, value.alpha});
            break;
        case StyleSheet::Value::HSV:
            appendChannels(text, "hsva",
                           {value.hue, value.saturation, value.brightness, value.alpha});
            break;
        case StyleSheet::Value::Number:
            appendNumber(text, value.number);
            text += value.unit;
            break;
        case StyleSheet::Value::Percentage:
            appendNumber(text, value.percentage);
            text += '%';
            break;
        case StyleSheet::Value::String: appendString(text, value); break;
        case StyleSheet::Value::None: break;
    }
}

void appendProperty(fn::String& text, const StyleSheet::Property& property) {
    text += property.name;
    text += ':';
    for (const StyleSheet::Value& value : property.values) {
        text += ' ';
        appendValue(text, value);
    }
}

void appendEach(fn::String& text, char mark, const std::vector<fn::String>& names) {
    for (const fn::String& name : names) {
        text += mark;
        text += name;
    }
}

void appendSegment(fn::String& text, const StyleSheet::SelectorSegment& segment) {
    text += segment.name;
    if (!segment.id.empty()) {
        text += '#';
        text += segment.id;
    }
    appendEach(text, '.', segment.classes);
    appendEach(text, ':', segment.pseudoClasses);
    for (const fn::String& attribute : segment.attributes) {
        text += '[';
        text += attribute;
        text += ']';
    }
}

void appendRuleSet(fn::String& text, const StyleSheet::RuleSet& ruleSet) {
    for (const StyleSheet::Selector& selector : ruleSet.selectors) {
        if (&selector != &ruleSet.selectors.front()) {
            text += ",\n";
        }
        for (const StyleSheet::SelectorSegment& segment : selector.segments) {
            appendSegment(text, segment);
        }
    }
    text += " {\n";
    for (const StyleSheet::Property& property : ruleSet.properties) {
        text += '\t';
        appendProperty(text, property);
        text += ";\n";
    }
    text += "}\n";
}

}  // namespace

StyleSheet::Value::Value() {
    reset(None);
}

void StyleSheet::Value::reset(Type newType) {
    type = newType;
    number = 0;
    string.clear();
    spare.clear();
    unit.clear();
    red = green = blue = 0;
    hue = saturation = brightness = 0;
    alpha = 0;
}

fn::String StyleSheet::toString() const {
    fn::String text;
    for (const RuleSet& ruleSet : ruleSets) {
        appendRuleSet(text, ruleSet);
    }
    for (const Property& property : properties) {
        appendProperty(text, property);
        text += ";\n";
    }
    return text;
}

}  // namespace subtitles
