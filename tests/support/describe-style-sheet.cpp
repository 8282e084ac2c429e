// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/support/describe-style-sheet.h"

#include <algorithm>
#include <vector>

#include "foundation/string.h"

namespace subtitles {
namespace {

std::string channels(const char* name, int a, int b, int c, int d) {
    return std::string(name) + "(" + std::to_string(a) + "," + std::to_string(b) + "," +
           std::to_string(c) + "," + std::to_string(d) + ")";
}

std::string describe(const StyleSheet::SelectorSegment& segment) {
    std::string text = segment.name;
    if (!segment.id.empty()) {
        text += "#" + segment.id;
    }
    for (const fn::String& name : segment.classes) {
        text += "." + name;
    }
    for (const fn::String& name : segment.pseudoClasses) {
        text += ":" + name;
    }
    for (const fn::String& attribute : segment.attributes) {
        text += "[" + attribute + "]";
    }
    return text;
}

template <class Item, class Same>
bool areAll(const std::vector<Item>& a, const std::vector<Item>& b, Same same) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

bool isSameValue(const StyleSheet::Value& a, const StyleSheet::Value& b) {
    return a.type == b.type && a.number == b.number && a.percentage == b.percentage &&
           a.string == b.string && a.spare == b.spare && a.unit == b.unit &&
           a.braceName == b.braceName && a.red == b.red && a.green == b.green && a.blue == b.blue &&
           a.hue == b.hue && a.saturation == b.saturation && a.brightness == b.brightness &&
           a.alpha == b.alpha;
}

bool isSameProperty(const StyleSheet::Property& a, const StyleSheet::Property& b) {
    return a.name == b.name && areAll(a.values, b.values, isSameValue);
}

bool isSameSegment(const StyleSheet::SelectorSegment& a, const StyleSheet::SelectorSegment& b) {
    return a.name == b.name && a.id == b.id && a.classes == b.classes &&
           a.pseudoClasses == b.pseudoClasses && a.attributes == b.attributes;
}

bool isSameRuleSet(const StyleSheet::RuleSet& a, const StyleSheet::RuleSet& b) {
    return areAll(a.selectors, b.selectors,
                  [](const StyleSheet::Selector& x, const StyleSheet::Selector& y) {
                      return areAll(x.segments, y.segments, isSameSegment);
                  }) &&
           areAll(a.properties, b.properties, isSameProperty);
}

}  // namespace

std::string describe(const StyleSheet::Value& value) {
    switch (value.type) {
        case StyleSheet::Value::RGB:
            return channels("rgb", value.red, value.green, value.blue, value.alpha);
        case StyleSheet::Value::HSV:
            return channels("hsv", value.hue, value.saturation, value.brightness, value.alpha);
        case StyleSheet::Value::Number: return fn::String::number(value.number) + value.unit;
        case StyleSheet::Value::Percentage: return fn::String::number(value.percentage) + "%";
        case StyleSheet::Value::String:
            return value.braceName.empty() ? "'" + value.string + "'"
                                           : value.braceName + "('" + value.string + "')";
        case StyleSheet::Value::None: break;
    }
    return "none";
}

std::string describe(const StyleSheet::Property& property) {
    std::string text = property.name + ":";
    for (const StyleSheet::Value& value : property.values) {
        text += " " + describe(value);
    }
    return text;
}

std::string describe(const StyleSheet::Selector& selector) {
    std::string text;
    for (const StyleSheet::SelectorSegment& segment : selector.segments) {
        text += (text.empty() ? "" : " ") + describe(segment);
    }
    return "[" + text + "]";
}

std::string describe(const StyleSheet& sheet) {
    std::string text;
    for (const StyleSheet::RuleSet& ruleSet : sheet.ruleSets) {
        text += text.empty() ? "" : " ";
        for (const StyleSheet::Selector& selector : ruleSet.selectors) {
            text += describe(selector);
        }
        std::string declarations;
        for (const StyleSheet::Property& property : ruleSet.properties) {
            declarations += (declarations.empty() ? "" : "; ") + describe(property);
        }
        text += "{" + declarations + "}";
    }
    for (const StyleSheet::Property& property : sheet.properties) {
        text += (text.empty() ? "" : " ") + describe(property) + ";";
    }
    return text;
}

bool areSame(const StyleSheet& a, const StyleSheet& b) {
    return areAll(a.ruleSets, b.ruleSets, isSameRuleSet) &&
           areAll(a.properties, b.properties, isSameProperty);
}

}  // namespace subtitles
