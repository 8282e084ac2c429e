// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Style sheets: every text ends, within its effort, and is read as the slow reader reads it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/string.h"

#include "subtitles/style-sheet-parser.h"
#include "subtitles/style-sheet.h"

#include "fuzz/fuzz-require.h"
#include "tests/subtitles/style-sheet-reference.h"
#include "tests/support/describe-style-sheet.h"

namespace {

using subtitles::StyleSheet;

// The reference reads slowly, and knows of no effort.
constexpr std::size_t referenceLimit = 256;

bool areWhole(const std::vector<StyleSheet::Property>& properties) {
    for (const StyleSheet::Property& property : properties) {
        if (property.name.empty() || property.values.empty()) {
            return false;
        }
        for (const StyleSheet::Value& value : property.values) {
            if (value.type == StyleSheet::Value::None) {
                return false;
            }
        }
    }
    return true;
}

bool areWhole(const std::vector<StyleSheet::RuleSet>& ruleSets) {
    for (const StyleSheet::RuleSet& ruleSet : ruleSets) {
        if (ruleSet.selectors.empty() || !areWhole(ruleSet.properties)) {
            return false;
        }
        for (const StyleSheet::Selector& selector : ruleSet.selectors) {
            if (selector.segments.empty()) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(reinterpret_cast<const char*>(data), size);
    StyleSheet sheet;
    subtitles::StyleSheetEffort effort;
    subtitles::parseStyleSheetGuarded(sheet, text, effort);
    FUZZ_REQUIRE(areWhole(sheet.ruleSets) && areWhole(sheet.properties));
    FUZZ_REQUIRE(sheet.toString().empty() == (sheet.ruleSets.empty() && sheet.properties.empty()));
    if (size <= referenceLimit) {
        const test::StyleSheetReading expected = test::readStyleSheet(text);
        FUZZ_REQUIRE(areSame(sheet, expected.sheet));
        if (!expected.endless) {
            StyleSheet trusted;
            trusted.parse(text);
            FUZZ_REQUIRE(areSame(trusted, sheet));
        }
    }
    return 0;
}
