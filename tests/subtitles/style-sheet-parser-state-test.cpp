// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What each action does and logs, called by hand.

#include "subtitles/style-sheet-parser-state.h"

#include <array>
#include <functional>
#include <future>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/style-sheet.h"

#include "tests/support/describe-style-sheet.h"
#include "tests/support/log-recorder.h"

namespace subtitles {
namespace {

const unsigned char text[] = "abc";

class StyleSheetParserState : public testing::Test {
protected:
    /// The messages since the last call, each with its priority in front.
    std::string logged() {
        std::string lines;
        const auto records = log.records();
        for (; seen < records.size(); ++seen) {
            EXPECT_EQ(records[seen].category, "subtitle.parser");
            lines += std::to_string(records[seen].priority) + " " + records[seen].text + "\n";
        }
        return lines;
    }

    /// The value that `add` makes of a token.
    std::string valueOf(const char* token, const std::function<void()>& add) {
        state.property.values.clear();
        state.token = token;
        add();
        return describe(state.property);
    }

    std::string braceValueOf(const char* name, const char* content) {
        state.token = name;
        state.beginBraceValue();
        EXPECT_EQ(state.token, "");
        std::string value = valueOf(content, [this] { state.endBraceValue(); });
        EXPECT_EQ(state.token, "");
        return value;
    }

    test::LogRecorder log;
    std::size_t seen = 0;
    StyleSheet sheet;
    ParserState state{sheet, text};
};

TEST_F(StyleSheetParserState, BeginsEmpty) {
    EXPECT_EQ(state.braceDepth, 0);
    EXPECT_EQ(&state.styleSheet, &sheet);
    EXPECT_EQ(state.source, text);
    EXPECT_EQ(state.ruleSetStart, nullptr);
    EXPECT_EQ(state.lastAppended, nullptr);
    EXPECT_EQ(state.token, "");
    EXPECT_EQ(state.number, 0);
    EXPECT_EQ(state.braceName, "");
    EXPECT_EQ(state.returnState, 0);
}

TEST_F(StyleSheetParserState, AppendsEachPositionOnce) {
    state.append(text);
    state.append(text);
    state.append(text + 1);
    EXPECT_EQ(state.token, "ab");
    EXPECT_EQ(state.lastAppended, text + 1);
    state.clear();
    EXPECT_EQ(state.token, "");
    EXPECT_EQ(state.lastAppended, nullptr);
    state.append(text + 1);
    EXPECT_EQ(state.token, "b");
}

TEST_F(StyleSheetParserState, AppendsStretches) {
    state.append(text, text + 3);
    EXPECT_EQ(state.token, "abc");
    state.append(text + 2);
    EXPECT_EQ(state.token, "abc");
}

TEST_F(StyleSheetParserState, AppendsBytesThatHaveNoPosition) {
    state.append(text);
    state.appendByte('*');
    state.appendByte('*');
    EXPECT_EQ(state.token, "a**");
    EXPECT_EQ(state.lastAppended, text);
}

TEST_F(StyleSheetParserState, ConvertsTheToken) {
    state.token = "-1.5";
    state.convert();
    EXPECT_EQ(state.number, -1.5);
    state.token = "x";
    state.convert();
    EXPECT_EQ(state.number, 0);
}

TEST_F(StyleSheetParserState, EscapesKnowFewBytes) {
    state.append(text);
    for (const char byte : {'\n', '"', '\'', 'f', 'n', 'r', 't', '\\', 'a', '\0', '\x80', '\r'}) {
        state.appendEscape(static_cast<unsigned char>(byte));
    }
    EXPECT_EQ(state.token, "a\"'\f\n\r\t?????");
    EXPECT_EQ(state.lastAppended, text);
}

TEST_F(StyleSheetParserState, UnicodeEscapesAddNothing) {
    state.token = "x";
    state.appendUnicodeEscape(text, text + 3);
    EXPECT_EQ(state.token, "x");
    EXPECT_EQ(state.lastAppended, nullptr);
}

TEST_F(StyleSheetParserState, WhitespaceInABraceValueIsOneBlankAtMost) {
    state.appendBraceValueWhitespace();
    EXPECT_EQ(state.token, "");
    for (const char* before : {" ", "(", ")", ",", ":", ";"}) {
        state.token = std::string("a") + before;
        state.appendBraceValueWhitespace();
        EXPECT_EQ(state.token, std::string("a") + before);
    }
    state.token = "a";
    state.appendBraceValueWhitespace();
    EXPECT_EQ(state.token, "a ");
    state.token = "\t";
    state.appendBraceValueWhitespace();
    EXPECT_EQ(state.token, "\t ");
}

TEST_F(StyleSheetParserState, SegmentsAreBuiltAndLogged) {
    state.beginSelector();
    state.beginSelectorSegment();
    state.token = "a";
    state.setSelectorSegmentName();
    state.token = "b";
    state.setSelectorSegmentId();
    state.token = "c";
    state.addSelectorSegmentClass();
    state.token = "d";
    state.addSelectorSegmentPseudoClass();
    state.token = "e";
    state.addSelectorSegmentAttribute();
    state.endSelectorSegment();
    state.endSelector();
    EXPECT_EQ(logged(),
              "5 beginSelector\n"
              "5 beginSelectorSegment\n"
              "5 setSelectorSegmentName ('a')\n"
              "5 setSelectorSegmentId ('b')\n"
              "5 addSelectorSegmentClass ('c')\n"
              "5 addSelectorSegmentPseudoClass ('d')\n"
              "5 addSelectorSegmentAttribute ('e')\n"
              "5 endSelectorSegment\n"
              "5 endSelector\n");
    ASSERT_EQ(state.ruleSet.selectors.size(), 1u);
    EXPECT_EQ(describe(state.ruleSet.selectors[0]), "[a#b.c:d[e]]");
}

TEST_F(StyleSheetParserState, NamesAndIdsOverwriteAndClassesAdd) {
    for (const char* token : {"a", "b"}) {
        state.token = token;
        state.setSelectorSegmentName();
        state.setSelectorSegmentId();
        state.addSelectorSegmentClass();
        state.addSelectorSegmentPseudoClass();
        state.addSelectorSegmentAttribute();
    }
    state.endSelectorSegment();
    EXPECT_EQ(describe(state.selector), "[b#b.a.b:a:b[a][b]]");
}

TEST_F(StyleSheetParserState, SegmentsWithoutContentAreIgnored) {
    state.beginSelectorSegment();
    state.token = "a";
    state.addSelectorSegmentAttribute();
    logged();
    state.endSelectorSegment();
    state.endSelector();
    EXPECT_EQ(logged(),
              "5 endSelectorSegment (empty - ignoring)\n"
              "5 endSelector (empty - ignoring\n");
    EXPECT_TRUE(state.selector.segments.empty());
    EXPECT_TRUE(state.ruleSet.selectors.empty());
}

TEST_F(StyleSheetParserState, EachKindOfContentMakesASegment) {
    using Set = void (ParserState::*)();
    for (const Set set :
         {&ParserState::setSelectorSegmentName, &ParserState::setSelectorSegmentId,
          &ParserState::addSelectorSegmentClass, &ParserState::addSelectorSegmentPseudoClass}) {
        state.beginSelector();
        state.beginSelectorSegment();
        state.token = "a";
        (state.*set)();
        state.endSelectorSegment();
        EXPECT_EQ(state.selector.segments.size(), 1u);
    }
}

TEST_F(StyleSheetParserState, SelectorsGoOnBehindTheirEnd) {
    for (const char* token : {"a", "b"}) {
        state.beginSelectorSegment();
        state.token = token;
        state.setSelectorSegmentName();
        state.endSelectorSegment();
        state.endSelector();
    }
    ASSERT_EQ(state.ruleSet.selectors.size(), 2u);
    EXPECT_EQ(describe(state.ruleSet.selectors[0]), "[a]");
    EXPECT_EQ(describe(state.ruleSet.selectors[1]), "[a b]");
}

TEST_F(StyleSheetParserState, BeginningARuleSetDropsTheOpenOne) {
    state.ruleSet.selectors.resize(1);
    state.ruleSet.properties.resize(1);
    state.beginRuleSet(text + 1);
    EXPECT_EQ(logged(), "5 beginRuleSet\n");
    EXPECT_EQ(state.ruleSetStart, text + 1);
    EXPECT_TRUE(state.ruleSet.selectors.empty());
    EXPECT_TRUE(state.ruleSet.properties.empty());
}

TEST_F(StyleSheetParserState, EmptyRuleSetsAreIgnored) {
    state.beginRuleSet(text);
    logged();
    state.endRuleSet();
    EXPECT_EQ(logged(), "5 endRuleSet (empty - ignoring)\n");
    EXPECT_EQ(state.ruleSetStart, nullptr);
    EXPECT_TRUE(sheet.ruleSets.empty());
}

TEST_F(StyleSheetParserState, RuleSetsOfSelectorsOrPropertiesAreKept) {
    state.beginRuleSet(text);
    state.ruleSet.selectors.resize(1);
    logged();
    state.endRuleSet();
    EXPECT_EQ(logged(), "5 endRuleSet\n");
    EXPECT_EQ(state.ruleSetStart, nullptr);
    state.beginRuleSet(text);
    state.ruleSet.properties.resize(1);
    state.endRuleSet();
    EXPECT_EQ(describe(sheet), "[]{} {:}");
}

TEST_F(StyleSheetParserState, PropertiesOfARuleSet) {
    state.ruleSet.selectors.resize(1);
    state.beginProperty();
    state.token = "x";
    state.setPropertyName();
    state.addStringPropertyValue();
    state.endProperty();
    EXPECT_EQ(logged(),
              "5 beginProperty\n"
              "5 setPropertyName ('x')\n"
              "5 addStringPropertyValue ('x')\n"
              "5 endProperty\n");
    ASSERT_EQ(state.ruleSet.properties.size(), 1u);
    EXPECT_EQ(describe(state.ruleSet.properties[0]), "x: 'x'");
    EXPECT_TRUE(sheet.properties.empty());
}

TEST_F(StyleSheetParserState, PropertiesOfTheRoot) {
    state.token = "x";
    state.setPropertyName();
    state.addStringPropertyValue();
    logged();
    state.endProperty();
    EXPECT_EQ(logged(), "5 endProperty (adding root property)\n");
    EXPECT_EQ(describe(sheet), "x: 'x';");
    EXPECT_TRUE(state.ruleSet.properties.empty());
}

TEST_F(StyleSheetParserState, PropertiesWithoutNameOrValueAreIgnored) {
    state.token = "x";
    state.setPropertyName();
    logged();
    state.endProperty();
    EXPECT_EQ(logged(), "5 endProperty (empty - ignoring)\n");
    state.beginProperty();
    state.addStringPropertyValue();
    logged();
    state.endProperty();
    EXPECT_EQ(logged(), "5 endProperty (empty - ignoring)\n");
    EXPECT_EQ(describe(sheet), "");
}

TEST_F(StyleSheetParserState, BeginningAPropertyDropsTheOpenOne) {
    state.property.name = "x";
    state.property.values.resize(1);
    state.beginProperty();
    EXPECT_EQ(describe(state.property), ":");
}

TEST_F(StyleSheetParserState, ErrorsAreLoggedAsErrors) {
    state.logPropertyError();
    EXPECT_EQ(logged(), "2 Error parsing CSS property; will try to skip to next property.\n");
}

TEST_F(StyleSheetParserState, NumbersEmptyTheToken) {
    state.append(text);
    state.number = 1.5;
    EXPECT_EQ(valueOf("px", [this] { state.addNumberPropertyValue(true); }), ": 1.5px");
    EXPECT_EQ(logged(), "5 addNumberPropertyValue (1.500000, unit: 'px')\n");
    EXPECT_EQ(state.token, "");
    EXPECT_EQ(state.lastAppended, text);
    EXPECT_EQ(valueOf("px", [this] { state.addNumberPropertyValue(false); }), ": 1.5");
    EXPECT_EQ(logged(), "5 addNumberPropertyValue (1.500000, unit: '')\n");
    EXPECT_EQ(state.token, "");
}

TEST_F(StyleSheetParserState, PercentagesAreNotScaled) {
    state.number = 5;
    EXPECT_EQ(valueOf("5", [this] { state.addPercentagePropertyValue(); }), ": 5%");
    EXPECT_EQ(logged(), "5 addPercentagePropertyValue (5.000000)\n");
    EXPECT_EQ(state.property.values[0].number, 0);
    EXPECT_EQ(state.property.values[0].percentage, 5);
    EXPECT_EQ(state.token, "5");
}

TEST_F(StyleSheetParserState, EmptyStringsAreNoValues) {
    EXPECT_EQ(valueOf("", [this] { state.addStringPropertyValue(); }), ":");
    EXPECT_EQ(logged(), "");
    EXPECT_EQ(valueOf("a b", [this] { state.addStringPropertyValue(); }), ": 'a b'");
    EXPECT_EQ(logged(), "5 addStringPropertyValue ('a b')\n");
    EXPECT_EQ(state.token, "a b");
}

TEST_F(StyleSheetParserState, HexColors) {
    const auto add = [this] { state.addHexPropertyValue(); };
    EXPECT_EQ(valueOf("abc", add), ": rgb(170,187,204,255)");
    EXPECT_EQ(logged(), "5 addHexPropertyValue (#abc)\n");
    EXPECT_EQ(valueOf("0A1b2C", add), ": rgb(10,27,44,255)");
    EXPECT_EQ(valueOf("0A1b2C80", add), ": rgb(10,27,44,128)");
    EXPECT_EQ(valueOf("", add), ": rgb(0,0,0,255)");
    EXPECT_EQ(valueOf("1234", add), ": rgb(0,0,0,255)");
    EXPECT_EQ(valueOf("xyz", add), ": rgb(0,0,0,255)");
}

TEST_F(StyleSheetParserState, BraceValuesOfColors) {
    EXPECT_EQ(braceValueOf("rgb", "1,2,3"), ": rgb(1,2,3,255)");
    EXPECT_EQ(logged(), "5 Have RGB Value (1,2,3,255)\n");
    EXPECT_EQ(braceValueOf("hsva", "1,2,3,4"), ": hsv(1,2,3,4)");
    EXPECT_EQ(logged(), "5 Have HSV Value (1,2,3,4)\n");
    EXPECT_EQ(braceValueOf("RGB", ""), ": rgb(0,0,0,255)");
    EXPECT_EQ(braceValueOf("rgba", "1"), ": rgb(1,0,0,255)");
    EXPECT_EQ(braceValueOf("HSV", "1"), ": hsv(1,0,0,255)");
    EXPECT_EQ(state.property.values[0].braceName, "");
}

TEST_F(StyleSheetParserState, OtherBraceValues) {
    EXPECT_EQ(braceValueOf("url", " a.png "), ": url('a.png')");
    EXPECT_EQ(logged(), "5 Have Brace Value: url(a.png)\n");
    EXPECT_EQ(braceValueOf("Url", "\xe3\x80\x80 a"), ": Url('a')");
    EXPECT_EQ(braceValueOf("", ""), ": ''");
    EXPECT_EQ(braceValueOf("f", " \xff "), ": f('\xff')");
    EXPECT_EQ(braceValueOf("f", " \xff\xe3\x80\x80 "), ": f('\xff\xe3\x80\x80')");
}

struct ComponentCase {
    const char* name;
    const char* text;
    const char* expected;
};

constexpr ComponentCase componentCases[] = {
    {"Empty", "", "0,0,0,255"},
    {"One", "7", "7,0,0,255"},
    {"Four", "1,2,3,4", "1,2,3,4"},
    {"FifthIsIgnored", "1,2,3,4,5", "1,2,3,4"},
    {"EmptyPiecesAreLeftOut", "1,,3", "1,3,0,255"},
    {"BlankPiecesAreLeftOut", " 1 , , 3 ", "1,3,0,255"},
    {"OnlyCommas", ",,,", "0,0,0,255"},
    {"ClampedAndRounded", "300,-5,127.5", "255,0,128,255"},
    {"Percent", "100%,0%,50%", "255,0,128,255"},
    {"PercentAboveHundred", "200%,-10%,0.2%", "255,0,1,255"},
    {"BlankBeforePercent", "50 %", "128,0,0,255"},
    {"PercentAlone", "%,1", "0,1,0,255"},
    {"TwoPercentSigns", "50%%", "128,0,0,255"},
    {"RoundedToTheNearest", "0.4,0.5,1.49,254.5", "0,1,1,255"},
    {"NegativeThatRoundsToZero", "-0.4,-0.6", "0,0,0,255"},
    {"AlphaHasTheScaleOfTheColors", "0,0,0,0.5", "0,0,0,1"},
    {"AlphaInPercent", "0,0,0,50%", "0,0,0,128"},
    {"NoNumber", "a,b,1", "0,0,1,255"},
    {"GreaterThanAnyInteger", "99999999999999999999,-99999999999999999999,4294967296",
     "255,0,255,255"},
    {"MalformedPieces",
     "\xff"
     "1,2",
     "0,2,0,255"},
};

TEST_F(StyleSheetParserState, Components) {
    for (const ComponentCase& test : componentCases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(braceValueOf("rgba", test.text), std::string(": rgb(") + test.expected + ")");
        EXPECT_EQ(braceValueOf("hsva", test.text), std::string(": hsv(") + test.expected + ")");
    }
}

TEST_F(StyleSheetParserState, ComponentWithAThousandDigits) {
    EXPECT_EQ(braceValueOf("rgb", (std::string(1000, '9') + ",1").c_str()).substr(0, 6), ": rgb(");
}

TEST_F(StyleSheetParserState, CategoryAndTag) {
    EXPECT_EQ(ParserState::_fn_getLoggingCategoryStatic()->name(), "subtitle.parser");
    EXPECT_EQ(ParserState::_fn_getLoggingCategoryStatic(),
              ParserState::_fn_getLoggingCategoryStatic());
    EXPECT_EQ(state._fn_getLoggingTag().name, "");
    EXPECT_EQ(state._fn_getLoggingTag().number, 0);
}

TEST(StyleSheetParserStateCategory, IsOneForAllThreadsWhoeverWinsTheRaceWhichNoTestCanForce) {
    std::array<std::future<fn::logging::Category*>, 8> categories;
    for (auto& category : categories) {
        category = std::async(std::launch::async, &ParserState::_fn_getLoggingCategoryStatic);
    }
    for (auto& category : categories) {
        EXPECT_EQ(category.get(), ParserState::_fn_getLoggingCategoryStatic());
    }
}

}  // namespace
}  // namespace subtitles
