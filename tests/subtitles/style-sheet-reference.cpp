// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/subtitles/style-sheet-reference.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>

#include "foundation/string.h"
#include "foundation/utf8.h"

#include "tests/subtitles/style-sheet-reference-grammar.h"

using subtitles::StyleSheet;

namespace test {
namespace {

using Words = std::vector<std::string>;

/// "%f".
std::string fixed(double number) {
    char text[512];
    std::snprintf(text, sizeof text, "%f", number);
    return text;
}

constexpr std::size_t none = std::string::npos;

class Reader {
public:
    explicit Reader(const std::string& text) : bytes(text, 0, text.find('\0')) {}

    StyleSheetReading read(bool toTheEnd) {
        const std::size_t end = bytes.size() + (toTheEnd ? 1 : 0);
        while (state != "dead" && position < end && !reading.endless) {
            const int byte = at(position);
            reading.steps.emplace_back(state, static_cast<unsigned char>(byte));
            follow(state, byte);
            ++position;
            if (state != "dead" && position == bytes.size() + 1) {
                const Words actions = styleSheetState(state).endActions;
                state = "dead";
                run(actions, 0);
                ++position;
            }
        }
        reading.state = state;
        return reading;
    }

private:
    int at(std::size_t index) const {
        return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
    }

    void follow(const std::string& from, int byte) {
        const StyleSheetEntry& entry =
            styleSheetState(from).entries[static_cast<std::size_t>(byte)];
        state = entry.next;
        run(entry.actions, byte);
    }

    void run(const Words& actions, int byte) {
        for (std::size_t i = 0; i < actions.size(); ++i) {
            if (actions[i] == "As") {
                follow(actions[i + 1], byte);
                return;
            }
            perform(actions[i], byte);
        }
    }

    void say(const std::string& message) { reading.log.push_back("5 " + message); }
    void sayToken(const std::string& action) { say(action + " ('" + token + "')"); }

    void perform(const std::string& action, int byte) {
        if (action == "Clear") {
            token.clear();
            lastAppended = none;
        } else if (action == "Append") {
            if (lastAppended != position) {
                token += static_cast<char>(byte);
                lastAppended = position;
            }
        } else if (action == "AppendStar") {
            token += '*';
        } else if (action == "Convert") {
            number = fn::String(token).toFloat(0.0, nullptr);
        } else if (action == "Hold") {
            --position;
        } else if (action == "FallBack") {
            fallBack();
        } else if (!performOnSelector(action) && !performOnProperty(action) &&
                   !performOnToken(action, byte)) {
            throw std::logic_error(action);
        }
    }

    void fallBack() {
        if (ruleSetStart == none) {
            return;
        }
        if (ruleSetStart == lastFallBack) {
            reading.endless = true;
            return;
        }
        lastFallBack = ruleSetStart;
        say("beginRuleSet");
        ruleSet = StyleSheet::RuleSet();
        position = ruleSetStart - 1;
        state = "root start";
    }

    bool performOnSelector(const std::string& action) {
        if (action == "BRS") {
            say("beginRuleSet");
            ruleSetStart = position;
            ruleSet = StyleSheet::RuleSet();
        } else if (action == "ERS") {
            ruleSetStart = none;
            if (ruleSet.selectors.empty() && ruleSet.properties.empty()) {
                say("endRuleSet (empty - ignoring)");
            } else {
                say("endRuleSet");
                reading.sheet.ruleSets.push_back(ruleSet);
            }
        } else if (action == "BS") {
            say("beginSelector");
            selector = StyleSheet::Selector();
        } else if (action == "ES") {
            if (selector.segments.empty()) {
                say("endSelector (empty - ignoring");
            } else {
                say("endSelector");
                ruleSet.selectors.push_back(selector);
            }
        } else if (action == "BSS") {
            say("beginSelectorSegment");
            segment = StyleSheet::SelectorSegment();
        } else if (action == "ESS") {
            if (segment.name.empty() && segment.id.empty() && segment.classes.empty() &&
                segment.pseudoClasses.empty()) {
                say("endSelectorSegment (empty - ignoring)");
            } else {
                say("endSelectorSegment");
                selector.segments.push_back(segment);
            }
        } else {
            return performOnSegment(action);
        }
        return true;
    }

    bool performOnSegment(const std::string& action) {
        if (action == "setSelectorSegmentName") {
            segment.name = token;
        } else if (action == "setSelectorSegmentId") {
            segment.id = token;
        } else if (action == "addSelectorSegmentClass") {
            segment.classes.emplace_back(token.c_str());
        } else if (action == "addSelectorSegmentPseudoClass") {
            segment.pseudoClasses.emplace_back(token.c_str());
        } else if (action == "addSelectorSegmentAttribute") {
            segment.attributes.emplace_back(token.c_str());
        } else {
            return false;
        }
        sayToken(action);
        return true;
    }

    bool performOnProperty(const std::string& action) {
        if (action == "BP") {
            say("beginProperty");
            property = StyleSheet::Property();
        } else if (action == "setPropertyName") {
            sayToken(action);
            property.name = token;
        } else if (action == "EP") {
            endProperty();
        } else if (action == "logPropertyError") {
            reading.log.emplace_back(
                "2 Error parsing CSS property; will try to skip to next property.");
        } else if (action == "ASV") {
            if (!token.empty()) {
                sayToken("addStringPropertyValue");
                addValue(StyleSheet::Value::String).string = token;
            }
        } else if (action == "addNumberPropertyValue(false)") {
            addNumber("");
        } else if (action == "addNumberPropertyValue(true)") {
            addNumber(token);
        } else if (action == "addPercentagePropertyValue") {
            say("addPercentagePropertyValue (" + fixed(number) + ")");
            addValue(StyleSheet::Value::Percentage).percentage = number;
        } else if (action == "addHexPropertyValue") {
            addHexColor();
        } else if (action == "Brace") {
            braceName = token;
            token.clear();
            braceDepth = 1;
            returnState = state;
            state = "body";
        } else if (action == "endBraceValue") {
            endBraceValue();
        } else {
            return false;
        }
        return true;
    }

    void endProperty() {
        if (property.name.empty() || property.values.empty()) {
            say("endProperty (empty - ignoring)");
        } else if (ruleSet.selectors.empty()) {
            say("endProperty (adding root property)");
            reading.sheet.properties.push_back(property);
        } else {
            say("endProperty");
            ruleSet.properties.push_back(property);
        }
    }

    StyleSheet::Value& addValue(StyleSheet::Value::Type type) {
        property.values.emplace_back();
        property.values.back().type = type;
        return property.values.back();
    }

    void addNumber(const std::string& unit) {
        say("addNumberPropertyValue (" + fixed(number) + ", unit: '" + unit + "')");
        StyleSheet::Value& value = addValue(StyleSheet::Value::Number);
        value.number = number;
        value.unit = unit;
        token.clear();
    }

    void addHexColor() {
        say("addHexPropertyValue (#" + token + ")");
        std::string digits;
        for (const char digit : token) {
            digits += std::string(token.size() == 3 ? 2 : 1, digit);
        }
        StyleSheet::Value& value = addValue(StyleSheet::Value::RGB);
        const unsigned long color = std::strtoul(digits.c_str(), nullptr, 16);
        value.red = static_cast<unsigned char>(color >> 16);
        value.green = static_cast<unsigned char>(color >> 8);
        value.blue = static_cast<unsigned char>(color);
        value.alpha = 255;
    }

    void endBraceValue() {
        const fn::String name = fn::String(braceName).toLowerCase();
        StyleSheet::Value value;
        if (name == "rgb" || name == "rgba" || name == "hsv" || name == "hsva") {
            unsigned char c[4] = {0, 0, 0, 255};
            components(c);
            const bool rgb = name[0] == 'r';
            value.type = rgb ? StyleSheet::Value::RGB : StyleSheet::Value::HSV;
            (rgb ? value.red : value.hue) = c[0];
            (rgb ? value.green : value.saturation) = c[1];
            (rgb ? value.blue : value.brightness) = c[2];
            value.alpha = c[3];
            std::string numbers;
            for (const int channel : c) {
                numbers += (numbers.empty() ? "" : ",") + std::to_string(channel);
            }
            say(std::string("Have ") + (rgb ? "RGB" : "HSV") + " Value (" + numbers + ")");
        } else {
            value.type = StyleSheet::Value::String;
            value.braceName = braceName;
            value.string = fn::String(token).trim(fn::utf8::isValid(token));
            say("Have Brace Value: " + braceName + "(" + value.string + ")");
        }
        property.values.push_back(value);
        token.clear();
    }

    void components(unsigned char* out) const {
        std::istringstream pieces(token);
        int count = 0;
        for (std::string piece; count < 4 && std::getline(pieces, piece, ',');) {
            const std::vector<fn::String> trimmed =
                fn::String(piece).split(',', fn::String::TrimAndSkipEmptyParts);
            if (trimmed.empty()) {
                continue;
            }
            std::string text = trimmed[0];
            const bool percent = text.back() == '%';
            double v = fn::String(text).toFloat(0.0, nullptr);
            v = std::floor((percent ? v * 255.0 / 100.0 : v) + 0.5);
            out[count++] = static_cast<unsigned char>(v < 0 ? 0 : v > 255 ? 255 : v);
        }
    }

    bool performOnToken(const std::string& action, int byte) {
        if (action == "appendEscape") {
            const std::map<int, std::string> escapes = {{10, ""},    {'"', "\""}, {'\'', "'"},
                                                        {'n', "\n"}, {'r', "\r"}, {'t', "\t"}};
            const auto found = escapes.find(byte);
            token += found == escapes.end() ? "?" : found->second;
        } else if (action == "BraceUp") {
            ++braceDepth;
            token += '(';
        } else if (action == "BraceDown") {
            if (--braceDepth == 0) {
                --position;
                state = returnState;
            } else {
                token += ')';
            }
        } else if (action == "appendBraceValueWhitespace") {
            if (!token.empty() && std::string(" (),:;").find(token.back()) == std::string::npos) {
                token += ' ';
            }
        } else {
            return action == "EscapeStart" || action == "appendUnicodeEscape";
        }
        return true;
    }

    const std::string bytes;
    StyleSheetReading reading;
    std::size_t position = 0;
    std::string state = "top";
    StyleSheet::RuleSet ruleSet;
    StyleSheet::Selector selector;
    StyleSheet::SelectorSegment segment;
    StyleSheet::Property property;
    std::size_t ruleSetStart = none;
    std::size_t lastFallBack = none;
    std::size_t lastAppended = none;
    std::string token;
    double number = 0;
    std::string braceName;
    int braceDepth = 0;
    std::string returnState;
};

}  // namespace

StyleSheetReading readStyleSheet(const std::string& text) {
    return Reader(text).read(true);
}

StyleSheetReading readStyleSheetPart(const std::string& text) {
    return Reader(text).read(false);
}

}  // namespace test
