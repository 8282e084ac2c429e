// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/style-sheet.h"

#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/describe-style-sheet.h"

namespace subtitles {
namespace {

using Value = StyleSheet::Value;

Value number(double number, const char* unit = "") {
    Value value;
    value.reset(Value::Number);
    value.number = number;
    value.unit = unit;
    return value;
}

Value percentage(double number) {
    Value value;
    value.reset(Value::Percentage);
    value.percentage = number;
    return value;
}

Value string(const char* text, const char* braceName = "") {
    Value value;
    value.braceName = braceName;
    value.reset(Value::String);
    value.string = text;
    return value;
}

/// Every channel of every type, so that a mixed-up field shows.
Value color(Value::Type type) {
    Value value;
    value.reset(type);
    value.red = 1;
    value.green = 2;
    value.blue = 3;
    value.hue = 4;
    value.saturation = 5;
    value.brightness = 6;
    value.alpha = 255;
    return value;
}

struct PrintCase {
    const char* name;
    Value value;
    const char* expected;
};

const PrintCase printCases[] = {
    {"None", Value(), ""},
    {"RGB", color(Value::RGB), "rgba(1,2,3,255)"},
    {"HSVPrintsTheSameAlpha", color(Value::HSV), "hsva(4,5,6,255)"},
    {"WholeNumber", number(12.0), "12"},
    {"Fraction", number(1.5), "1.5"},
    {"Unit", number(12, "px"), "12px"},
    {"UnitAsItStands", number(-1.5, "\"x"), "-1.5\"x"},
    {"NegativeWholeNumber", number(-7), "-7"},
    {"AlmostZeroIsZero", number(-0.00000001), "0"},
    {"WholeByTheNearestPrintedByTruncation", number(2.99999999), "2"},
    {"NegativeTruncatesTowardZero", number(-2.99999999), "-2"},
    {"NotQuiteWhole", number(2.999), "2.999"},
    {"HalfIsNotWhole", number(0.5), "0.5"},
    {"GreatestInteger", number(2147483647.0), "2147483647"},
    {"BeyondTheGreatestInteger", number(3e9), "2147483647"},
    {"BelowTheSmallestInteger", number(-1e300), "-2147483648"},
    {"Percentage", percentage(50), "50%"},
    {"PercentageWithFraction", percentage(12.5), "12.5%"},
    {"EmptyString", string(""), ""},
    {"BareWord", string("Arial-9"), "Arial-9"},
    {"UnderscoreWantsQuotes", string("a_b"), "\"a_b\""},
    {"HighByteWantsQuotes", string("\xed\x95\x9c"), "\"\xed\x95\x9c\""},
    {"BlankWantsQuotes", string("a b"), "\"a b\""},
    {"EachNeighbourOfTheBareBytesWantsQuotes", string("/"), "\"/\""},
    {"Colon", string(":"), "\":\""},
    {"At", string("@"), "\"@\""},
    {"BracketOpen", string("["), "\"[\""},
    {"Backquote", string("`"), "\"`\""},
    {"BraceOpen", string("{"), "\"{\""},
    {"ControlBytesAreEscaped", string("\a\b\t\n\v\f\r"), "\"\\a\\b\\t\\n\\v\\f\\r\""},
    {"OtherControlBytesStand", string("\x06\x0e"), "\"\x06\x0e\""},
    {"BackslashIsDoubled", string("a\\b"), "\"a\\\\b\""},
    {"DoubleQuoteTakesThreeBytes", string("a\"b"), "\"a\\\"\"b\""},
    {"SingleQuoteStands", string("'"), "\"'\""},
    {"BraceValueIsNotEscaped", string("a \"\\\n", "url"), "url(a \"\\\n)"},
    {"EmptyBraceValue", string("", "f"), "f()"},
};

TEST(StyleSheetPrinter, PrintsValues) {
    for (const PrintCase& test : printCases) {
        SCOPED_TRACE(test.name);
        StyleSheet sheet;
        sheet.properties.push_back({"x", {test.value}});
        EXPECT_EQ(sheet.toString(), fn::String("x: ") + test.expected + ";\n");
    }
}

TEST(StyleSheetPrinter, EmptySheetIsTheEmptyString) {
    EXPECT_EQ(StyleSheet().toString(), "");
}

TEST(StyleSheetPrinter, PropertyWithoutValuesHasNoBlank) {
    StyleSheet sheet;
    sheet.properties.push_back({"x", {}});
    EXPECT_EQ(sheet.toString(), "x:;\n");
}

TEST(StyleSheetPrinter, SeparatesValuesByBlanks) {
    StyleSheet sheet;
    sheet.properties.push_back({"x", {number(1), Value(), string("a")}});
    EXPECT_EQ(sheet.toString(), "x: 1  a;\n");
}

TEST(StyleSheetPrinter, HexColorHasItsAlpha) {
    StyleSheet sheet;
    sheet.parse("x: #abc");
    EXPECT_EQ(sheet.toString(), "x: rgba(170,187,204,255);\n");
}

TEST(StyleSheetPrinter, PrintsRuleSetsBeforeRootProperties) {
    StyleSheet sheet;
    sheet.parse("x: 1; a, b.c { y: 2; z: 'q' } y: 3; * {}");
    EXPECT_EQ(sheet.toString(),
              "a,\nb.c {\n\ty: 2;\n\tz: q;\n}\n"
              "* {\n}\n"
              "x: 1;\ny: 3;\n");
}

TEST(StyleSheetPrinter, ChainsLoseTheirBlanks) {
    StyleSheet sheet;
    sheet.parse("a b{}");
    EXPECT_EQ(sheet.toString(), "a,\nab {\n}\n");
}

TEST(StyleSheetPrinter, PrintsEachPartOfASegment) {
    StyleSheet sheet;
    sheet.parse("[i]a{}");
    EXPECT_EQ(sheet.toString(), "");
    sheet.parse("a:g::h.d.e[i][j=\"k\"]#b{}");
    EXPECT_EQ(sheet.toString(), "a#b.d.e:g::h[i][j=\"k\"] {\n}\n");
}

TEST(StyleSheetPrinter, RuleSetWithoutSelectors) {
    StyleSheet sheet;
    sheet.ruleSets.push_back({{}, {{"x", {number(1)}}}});
    EXPECT_EQ(sheet.toString(), " {\n\tx: 1;\n}\n");
}

TEST(StyleSheetPrinter, PrintsWhatIsNoFiniteNumber) {
    StyleSheet sheet;
    sheet.properties.push_back({"x", {number(std::numeric_limits<double>::infinity())}});
    EXPECT_EQ(sheet.toString(),
              "x: " + fn::String::number(std::numeric_limits<double>::infinity()) + ";\n");
}

TEST(StyleSheetPrinter, UnknownTypeIsNothing) {
    Value value = color(Value::RGB);
    const int unknown = 7;
    std::memcpy(&value.type, &unknown, sizeof unknown);
    StyleSheet sheet;
    sheet.properties.push_back({"x", {value}});
    EXPECT_EQ(sheet.toString(), "x: ;\n");
}

TEST(StyleSheetValue, BeginsEmpty) {
    const Value value;
    EXPECT_EQ(value.type, Value::None);
    EXPECT_EQ(value.number, 0);
    EXPECT_EQ(value.percentage, 0);
    EXPECT_EQ(value.string + value.spare + value.unit + value.braceName, "");
    EXPECT_EQ(value.red + value.green + value.blue, 0);
    EXPECT_EQ(value.hue + value.saturation + value.brightness + value.alpha, 0);
}

TEST(StyleSheetValue, ResetLeavesPercentageAndBraceName) {
    Value value = color(Value::HSV);
    value.number = 1;
    value.percentage = 2;
    value.string = "a";
    value.spare = "b";
    value.unit = "c";
    value.braceName = "d";
    value.reset(Value::String);
    EXPECT_EQ(value.type, Value::String);
    EXPECT_EQ(value.number, 0);
    EXPECT_EQ(value.percentage, 2);
    EXPECT_EQ(value.string + value.spare + value.unit, "");
    EXPECT_EQ(value.braceName, "d");
    EXPECT_EQ(value.red + value.green + value.blue, 0);
    EXPECT_EQ(value.hue + value.saturation + value.brightness + value.alpha, 0);
}

TEST(StyleSheetValue, TypesHaveTheirNumbers) {
    EXPECT_EQ(Value::None, 0);
    EXPECT_EQ(Value::RGB, 1);
    EXPECT_EQ(Value::HSV, 2);
    EXPECT_EQ(Value::Number, 3);
    EXPECT_EQ(Value::Percentage, 4);
    EXPECT_EQ(Value::String, 5);
}

TEST(StyleSheet, CopiesAreDeep) {
    StyleSheet sheet;
    sheet.parse("a{x:1}");
    StyleSheet copy = sheet;
    copy.ruleSets[0].properties[0].values[0].number = 2;
    EXPECT_EQ(describe(sheet), "[a]{x: 1}");
    EXPECT_EQ(describe(copy), "[a]{x: 2}");
}

TEST(StyleSheet, ParsingAddsToWhatIsThere) {
    StyleSheet sheet;
    sheet.parse("a{x:1} y:2");
    sheet.parse("b{z:3} w:4");
    EXPECT_EQ(describe(sheet), "[a]{x: 1} [b]{z: 3} y: 2; w: 4;");
}

}  // namespace
}  // namespace subtitles
