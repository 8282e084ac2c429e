// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What a style sheet says of languages. Colours, fonts and sizes of a sheet are not used: the look
// of the text comes from its inline tags alone.

#include <algorithm>

#include "subtitles/language.h"
#include "subtitles/smi-loader.h"

namespace subtitles {

namespace {

/// The first class of the first segment that has one; null where none has.
const fn::String* classOf(const StyleSheet::Selector& selector) {
    for (const StyleSheet::SelectorSegment& segment : selector.segments) {
        if (!segment.classes.empty()) {
            return &segment.classes.front();
        }
    }
    return nullptr;
}

/// The class that a rule defines: the last of its selectors that has one decides.
fn::String classOf(const StyleSheet::RuleSet& ruleSet) {
    fn::String name;
    for (const StyleSheet::Selector& selector : ruleSet.selectors) {
        if (const fn::String* const found = classOf(selector)) {
            name = *found;
        }
    }
    return name;
}

bool isUnknown(const Language& language) {
    return std::find(language.codes.begin(), language.codes.end(), "UND") != language.codes.end();
}

}  // namespace

void SMILoader::parseStylesheet(const StyleSheet& sheet) {
    for (const StyleSheet::RuleSet& ruleSet : sheet.ruleSets) {
        const fn::String name = classOf(ruleSet);
        if (name.empty()) {
            continue;
        }
        LanguageEntry entry;
        entry.className = name.toLowerCase();
        for (const StyleSheet::Property& property : ruleSet.properties) {
            const fn::String propertyName = property.name.toLowerCase();
            if (propertyName == "name") {
                entry.languageName = getStringValue(property);
            } else if (propertyName == "lang") {
                entry.languageCode = getStringValue(property);
            } else {
                continue;
            }
            // After each of the two: so "lang" may come before or behind "name".
            normalize(entry);
        }
        languages[entry.className] = entry;
    }
}

/// Leaves one of code and name: a known code, whose name the table has, or a name to show, which an
/// unknown code serves as where there is no other.
void SMILoader::normalize(LanguageEntry& entry) {
    entry.languageCode = entry.languageCode.substr(0, entry.languageCode.find('-'));
    if (isLanguage(entry.languageCode)) {
        entry.languageName.clear();
        return;
    }
    if (entry.languageName.empty()) {
        entry.languageName = entry.languageCode;
    }
    entry.languageCode.clear();
}

/// Whether the table of languages has the code. Sheets ask for the same few codes over and over,
/// and a search for one that is not there goes through the whole table.
bool SMILoader::isLanguage(const fn::String& code) {
    constexpr std::size_t mostCodes = 1000;
    const auto asked = askedCodes.find(code);
    if (asked != askedCodes.end()) {
        return asked->second;
    }
    const bool isKnown = !isUnknown(Language::forCode(code));
    if (askedCodes.size() < mostCodes) {
        askedCodes.emplace(code, isKnown);
    }
    return isKnown;
}

// By value, as the property is little more than one string.
fn::String SMILoader::getStringValue(StyleSheet::Property property) const {
    if (property.values.empty() || property.values.front().type != StyleSheet::Value::String) {
        return {};
    }
    return property.values.front().string;
}

std::list<SMILoader::LanguageEntry> SMILoader::getLanguages() const {
    std::list<LanguageEntry> result;
    for (const fn::String& name : classes) {
        const auto defined = languages.find(name);
        result.push_back(defined != languages.end() ? defined->second
                                                    : LanguageEntry{name, {}, name.toUpperCase()});
    }
    return result;
}

}  // namespace subtitles
