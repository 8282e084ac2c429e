// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Style sheets from anywhere: where the guarded reader stops, and that it works no longer than the
// text is long.

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/style-sheet-parser.h"
#include "subtitles/style-sheet.h"

#include "tests/subtitles/style-sheet-reference.h"
#include "tests/support/describe-style-sheet.h"
#include "tests/support/style-sheets.h"

namespace subtitles {
namespace {

std::string guarded(const std::string& text) {
    StyleSheet sheet;
    parseStyleSheetGuarded(sheet, text);
    return describe(sheet);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

const test::StyleSheetKind& kindOf(const std::string& name) {
    for (const test::StyleSheetKind& kind : test::styleSheetKinds) {
        if (kind.name == name) {
            return kind;
        }
    }
    throw std::out_of_range(name);
}

TEST(StyleSheetGuard, RootPropertyBeforeAFaultIsReadOnce) {
    EXPECT_EQ(guarded("color: red; )"), "color: 'red';");
    EXPECT_EQ(guarded("color: red; size: 1; )"), "color: 'red'; size: 1;");
    EXPECT_EQ(guarded("color: red; @"), "color: 'red';");
}

TEST(StyleSheetGuard, FaultRightBehindARuleSetEndsTheText) {
    EXPECT_EQ(guarded("a{x:1})"), "");
    EXPECT_EQ(guarded("a{x:1}@import"), "");
    EXPECT_EQ(guarded("b{}a{x:1})"), "[b]{}");
}

TEST(StyleSheetGuard, LaterFallBackGoesOn) {
    EXPECT_EQ(guarded("x:1; y:2; z:3"), "x: 1; y: 2; z: 3;");
    EXPECT_EQ(guarded("x:1; a[; y:2; )"), "x: 1; y: 2;");
}

TEST(StyleSheetGuard, WhatIsCommittedBeforeAStopStands) {
    const std::string rule = ".krcc{lang:ko}";
    EXPECT_EQ(guarded(rule + repeated("a[;", 30000)), "[.krcc]{lang: 'ko'}");
    EXPECT_EQ(guarded(rule + repeated("a ", 100000) + "{x:1}"), "[.krcc]{lang: 'ko'}");
    EXPECT_EQ(guarded(rule + repeated("a{;", 30000) + "/"), "[.krcc]{lang: 'ko'}");
}

TEST(StyleSheetGuard, NothingIsReadBehindAStop) {
    EXPECT_EQ(guarded(repeated("a ", 100000) + "{x:1}.krcc{lang:ko}"), "");
}

TEST(StyleSheetGuard, DeclarationsAreKeptInSheetsOfUsualSizes) {
    for (const std::string& text :
         {".a{" + repeated("b:c;", 20000) + "}", repeated("b:c;", 20000)}) {
        StyleSheet expected;
        expected.parse(text);
        StyleSheet sheet;
        parseStyleSheetGuarded(sheet, text);
        EXPECT_TRUE(areSame(sheet, expected));
    }
}

TEST(StyleSheetGuard, DeclarationsAreNotKeptWithoutEnd) {
    const std::size_t count = 200000;
    StyleSheet sheet;
    parseStyleSheetGuarded(sheet, repeated("b:c;", count));
    EXPECT_GT(sheet.properties.size(), count / 4);
    EXPECT_LT(sheet.properties.size(), count / 2);
    // As long as they are written out, they are no burden.
    StyleSheet written;
    parseStyleSheetGuarded(written, repeated("background-color: white;\n", count));
    EXPECT_EQ(written.properties.size(), count);
}

// 632 names make 200,028 segments.
TEST(StyleSheetGuard, ChainsAreKeptUpTo200000Segments) {
    StyleSheet kept;
    parseStyleSheetGuarded(kept, repeated("a ", 631) + "{x:1}");
    ASSERT_EQ(kept.ruleSets.size(), 1u);
    EXPECT_EQ(kept.ruleSets[0].selectors.size(), 631u);
    StyleSheet trusted;
    trusted.parse(repeated("a ", 631) + "{x:1}");
    EXPECT_TRUE(areSame(kept, trusted));
    EXPECT_EQ(guarded(repeated("a ", 632) + "{x:1}"), "");
}

TEST(StyleSheetGuard, SegmentsOfAllRuleSetsCount) {
    StyleSheet sheet;
    parseStyleSheetGuarded(sheet, repeated("a{}", 200100));
    EXPECT_EQ(sheet.ruleSets.size(), 200000u);
    StyleSheet list;
    parseStyleSheetGuarded(list, repeated("a,", 199999) + "a{x:1}");
    ASSERT_EQ(list.ruleSets.size(), 1u);
    EXPECT_EQ(list.ruleSets[0].selectors.size(), 200000u);
}

TEST(StyleSheetGuard, SegmentsOfDroppedRuleSetsDoNotCount) {
    const std::string dropped = repeated("a,", 70000) + "a ;";
    EXPECT_EQ(guarded(dropped + dropped + dropped + "b{x:1}"), "[b]{x: 1}");
}

TEST(StyleSheetGuard, LongNamesAreNotCopiedWithoutEnd) {
    const std::string name(4U << 20U, 'a');
    EXPECT_EQ(guarded(name + repeated(" b", 30) + "{x:1}").size(),
              guarded(name + "{x:1}").size() * 31 - 30 * 6 + 31 * 15 * 2);
    EXPECT_EQ(guarded(name + repeated(" b", 70) + "{x:1}"), "");
}

TEST(StyleSheetGuard, ManyNamesAreNotCopiedWithoutEnd) {
    const std::string classes = repeated(".a", 1U << 20U);
    EXPECT_EQ(guarded(classes + repeated(" b", 3) + "{x:1}").size(),
              (classes.size() + 2) * 4 + 12 + 6);
    EXPECT_EQ(guarded(classes + repeated(" b", 9) + "{x:1}"), "");
}

TEST(StyleSheetGuard, SheetsBelowTheStopsAreReadAsEver) {
    for (const test::StyleSheetKind& kind : test::styleSheetKinds) {
        const std::string text = kind.text(900);
        if (test::readStyleSheet(text).endless) {
            continue;
        }
        StyleSheet expected;
        expected.parse(text);
        StyleSheet sheet;
        parseStyleSheetGuarded(sheet, text);
        EXPECT_TRUE(areSame(sheet, expected)) << kind.name;
    }
}

TEST(StyleSheetGuard, EffortIsBoundedByTheLength) {
    for (const test::StyleSheetKind& kind : test::styleSheetKinds) {
        const std::string text = kind.text(32768);
        StyleSheet sheet;
        StyleSheetEffort effort;
        parseStyleSheetGuarded(sheet, text, effort);
        // The last step may copy a selector.
        EXPECT_LE(effort.spent, StyleSheetEffort().allowed + (64 + 4) * text.size()) << kind.name;
    }
}

// Kinds that no stop touches cost twice as much at twice the length.
TEST(StyleSheetGuard, EffortGrowsWithTheLength) {
    for (const char* const name :
         {"Rules", "ShortRules", "EmptyRules", "Declarations", "Values", "Colors", "Components",
          "LongString", "LongComment", "Blanks", "RootProperties", "ShortRootProperties",
          "RootPropertyFaults", "List", "Classes", "OpenRules", "OpenBraces", "NestedBraces"}) {
        std::uint64_t spent[2];
        for (const std::size_t i : {0U, 1U}) {
            StyleSheet sheet;
            StyleSheetEffort effort;
            parseStyleSheetGuarded(sheet, kindOf(name).text(std::size_t{16384} << i), effort);
            spent[i] = effort.spent;
        }
        // Some kinds have one long value, which is kept once.
        EXPECT_GT(spent[1] * 100, spent[0] * 190) << name;
        EXPECT_LT(spent[1] * 100, spent[0] * 202) << name;
    }
}

TEST(StyleSheetGuard, RootPropertiesAreReadTwiceAndNotMore) {
    const std::string text = kindOf("RootProperties").text(16384);
    EXPECT_LE(test::readStyleSheet(text).steps.size(), 2 * text.size() + 1);
    StyleSheet sheet;
    parseStyleSheetGuarded(sheet, text);
    EXPECT_EQ(sheet.properties.size(), text.size() / 10);
}

TEST(StyleSheetGuard, TextsOfOneDocumentShareTheirEffort) {
    const std::string text = repeated("a[;", 2000);
    StyleSheetEffort effort;
    const std::uint64_t alone = effort.allowed + 64 * text.size();
    for (int i = 0; i < 10; ++i) {
        StyleSheet sheet;
        parseStyleSheetGuarded(sheet, text, effort);
    }
    EXPECT_EQ(effort.allowed, StyleSheetEffort().allowed + 10 * 64 * text.size());
    EXPECT_LE(effort.spent, effort.allowed + 10 * text.size());
    EXPECT_GT(effort.spent, alone);
}

}  // namespace
}  // namespace subtitles
