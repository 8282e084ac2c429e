// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The table of languages, filled once from its rows, and the search in it.
//
// The search walks the list, since anybody may add to it. It compares in place: the finder asks it
// for every file name, and mostly with text that is no code at all.

#include "subtitles/language.h"

#include <algorithm>

#include "foundation/ascii.h"

#include "subtitles/language-table.h"

namespace subtitles {
namespace {

bool equalIgnoringCase(const fn::String& left, const fn::String& right) {
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(), [](char a, char b) {
               return fn::ascii::toLower(a) == fn::ascii::toLower(b);
           });
}

void fillLanguages() {
    for (const LanguageRow& row : languageTable) {
        Language::add(row.name, row.codes[0], row.codes[1], row.codes[2]);
    }
    Language::_languages.push_back(Language::_unknown);
}

}  // namespace

std::list<Language> Language::_languages;
Language Language::_unknown("Unknown", "UND");
std::once_flag Language::_flag;

Language::Language(const fn::String& ownName, const fn::String& code)
    : name(ownName), codes{code} {}

Language::Language(const fn::String& ownName, const std::vector<fn::String>& ownCodes)
    : name(ownName), codes(ownCodes) {}

void Language::add(const fn::String& newName, const fn::String& firstCode,
                   const fn::String& secondCode, const fn::String& thirdCode) {
    std::vector<fn::String> newCodes{firstCode};
    for (const fn::String& code : {secondCode, thirdCode}) {
        if (!code.empty()) {
            newCodes.push_back(code);
        }
    }
    _languages.emplace_back(newName, newCodes);
}

const std::list<Language>& Language::languages() {
    std::call_once(_flag, fillLanguages);
    return _languages;
}

const Language& Language::forCode(const fn::String& code) {
    const std::list<Language>& all = languages();
    const auto found = std::find_if(
        all.begin(), all.end(), [&](const Language& language) { return language.matches(code); });
    return found != all.end() ? *found : _unknown;
}

bool Language::matches(const fn::String& code) const {
    return std::any_of(codes.begin(), codes.end(),
                       [&](const fn::String& own) { return equalIgnoringCase(own, code); });
}

}  // namespace subtitles
