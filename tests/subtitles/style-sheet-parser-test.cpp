// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the style sheet language reads as what. A case that tells a log lists its errors only, by
// their number: the whole log is compared elsewhere.

#include "subtitles/style-sheet-parser.h"

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/style-sheet-parser-state.h"
#include "subtitles/style-sheet-parser-table.h"
#include "subtitles/style-sheet.h"

#include "tests/support/describe-style-sheet.h"
#include "tests/support/log-recorder.h"

namespace subtitles {
namespace {

struct Case {
    const char* name;
    const char* text;
    const char* expected;
    int errors = 0;
};

void PrintTo(const Case& test, std::ostream* out) {
    *out << test.text;
}

class StyleSheetParser : public testing::TestWithParam<Case> {};

TEST_P(StyleSheetParser, Reads) {
    const test::LogRecorder log(fn::logging::Message::Priority::Error);
    StyleSheet sheet;
    sheet.parse(GetParam().text);
    EXPECT_EQ(describe(sheet), GetParam().expected);
    EXPECT_EQ(static_cast<int>(log.records().size()), GetParam().errors) << log.lines();
}

TEST_P(StyleSheetParser, ReadsTheSameGuarded) {
    StyleSheet sheet;
    sheet.parse(GetParam().text);
    StyleSheet guarded;
    parseStyleSheetGuarded(guarded, GetParam().text);
    EXPECT_TRUE(areSame(sheet, guarded)) << describe(guarded);
}

std::string nameOf(const testing::TestParamInfo<Case>& test) {
    return test.param.name;
}

// clang-format off
constexpr Case sheets[] = {
    {"EmptyTextIsAnEmptySheet", "", ""},
    {"BlankTextIsAnEmptySheet", " \t\n\v\f\r", ""},
    {"RuleSet", "a { color: red }", "[a]{color: 'red'}"},
    {"RuleSetWithoutProperties", "a {}", "[a]{}"},
    {"TwoRuleSets", "a{x:1}b{y:2}", "[a]{x: 1} [b]{y: 2}"},
    {"BareDeclarationsAreRootProperties", "color: red; font-size: 12px", "color: 'red'; font-size: 12px;"},
    {"RootPropertyThatLooksLikeAPseudoClass", "color:red", "color: 'red';"},
    {"RuleSetWithoutItsEndIsLost", "a { color: red", "", 1},
    {"RuleSetBeforeAnUnfinishedOneStays", "a{x:1}b{y:2", "[a]{x: 1}", 1},
    {"RuleSetAndRootPropertiesMix", "a{x:1} y: 2; b{z:3}", "[a]{x: 1} [b]{z: 3} y: 2;"},
    {"FaultyDeclarationIsSkipped", "a { b: ; c: 1 }", "[a]{c: 1}", 1},
    {"FaultyDeclarationBeforeTheEnd", "a { c: 1; b: }", "[a]{c: 1}", 1},
    {"TwoBlanksInASelectorAreAFault", "a  b {x:1}", "", 1},
    {"ChainHasASelectorForEachStart", "a b {x:1}", "[a][a b]{x: 1}"},
    {"LongerChain", "a b c{x:1}", "[a][a b][a b c]{x: 1}"},
    {"AttributesAloneAreNoSelector", "[foo]{a:b}", "a: 'b';"},
    {"LastIdWins", "#a#b{x:1}", "[#b]{x: 1}"},
    {"SeveralPseudoClasses", "a:b:c{x:1}", "[a:b:c]{x: 1}"},
    {"CommaInFrontOfTheFirstValueIsAFault", "a{x:,1}", "[a]{}", 1},
    {"CommaBetweenValues", "a{x:1,2}", "[a]{x: 1 2}"},
    {"EmptyStringIsNoValue", "a{x:\"\"}", "[a]{}"},
    {"EmptyStringBesideAValue", "a{x:\"\" 1}", "[a]{x: 1}"},
    {"EndOfTheTextCommitsARuleSet", "a{x:1}", "[a]{x: 1}"},
};

constexpr Case selectors[] = {
    {"Universal", "*{x:1}", "[*]{x: 1}"},
    {"UniversalWithAClass", "*.a{}", "[*.a]{}"},
    {"UniversalWithAnId", "*#a{}", "[*#a]{}"},
    {"UniversalWithAPseudoClass", "*:a{}", "[*:a]{}"},
    {"UniversalWithAnAttribute", "*[a]{}", "[*[a]]{}"},
    {"UniversalInAList", "*,*{}", "[*][*]{}"},
    {"UniversalBeforeBlank", "* {}", "[*]{}"},
    {"UniversalBeforeComment", "*/**/{}", "[*]{}"},
    {"NameBehindUniversalIsAFault", "*a{}", "", 1},
    {"EverythingAtOnce", "a#b.c:d[e]{}", "[a#b.c:d[e]]{}"},
    {"AllPartsInAnyOrder", "[e]:d.c#b[f]:g.h#i{}", "[#i.c.h:d:g[e][f]]{}"},
    {"IdBehindId", "a#b#c{}", "[a#c]{}"},
    {"ClassBehindId", "#a.b{}", "[#a.b]{}"},
    {"PseudoBehindId", "#a:b{}", "[#a:b]{}"},
    {"AttributeBehindId", "#a[b]{}", "[#a[b]]{}"},
    {"IdInAList", "#a,#b{}", "[#a][#b]{}"},
    {"IdBeforeBlank", "#a {}", "[#a]{}"},
    {"IdBeforeComment", "#a/**/{}", "[#a]{}"},
    {"IdWithoutName", "#{}", "", 1},
    {"IdThatBeginsWithADigit", "#1{}", "", 1},
    {"ClassBehindClass", ".a.b{}", "[.a.b]{}"},
    {"IdBehindClass", ".a#b{}", "[#b.a]{}"},
    {"PseudoBehindClass", ".a:b{}", "[.a:b]{}"},
    {"AttributeBehindClass", ".a[b]{}", "[.a[b]]{}"},
    {"ClassInAList", ".a,.b{}", "[.a][.b]{}"},
    {"ClassBeforeBlank", ".a {}", "[.a]{}"},
    {"ClassBeforeComment", ".a/**/{}", "[.a]{}"},
    {"NegatedClass", ".!a{}", "[.!a]{}"},
    {"NegatedClassThatBeginsWithAnEscape", ".!\\za{}", "[.!?a]{}"},
    {"NegationWithoutName", ".!{}", "", 1},
    {"NegationTwice", ".!!a{}", "", 1},
    {"ClassThatBeginsWithADigit", ".1{}", "", 1},
    {"PseudoBehindPseudo", ":a:b{}", "[:a:b]{}"},
    {"IdBehindPseudo", ":a#b{}", "[#b:a]{}"},
    {"ClassBehindPseudo", ":a.b{}", "[.b:a]{}"},
    {"AttributeBehindPseudo", ":a[b]{}", "[:a[b]]{}"},
    {"PseudoInAList", ":a,:b{}", "[:a][:b]{}"},
    {"PseudoBeforeBlank", ":a {}", "[:a]{}"},
    {"PseudoBeforeComment", ":a/**/{}", "[:a]{}"},
    {"NegatedPseudo", ":!a{}", "[:!a]{}"},
    {"DoubleColonKeepsOne", "a::b{}", "[a::b]{}"},
    {"DoubleColonNegated", "a::!b{}", "[a::!b]{}"},
    {"DoubleColonNegatedWithEscape", "a::!\\zb{}", "[a::!?b]{}"},
    {"DoubleColonWithEscape", "a::\\zb{}", "[a::?b]{}"},
    {"NegatedPseudoWithEscape", "a:!\\zb{}", "[a:!?b]{}"},
    {"PseudoThatBeginsWithAnEscape", "a:\\zb{}", "[a:?b]{}"},
    {"ThreeColons", "a:::b{}", "", 1},
    {"NegationBeforeTheSecondColon", "a:!:b{}", "", 1},
    {"DoubleColonWithoutName", "a::{}", "", 1},
    {"AttributeIsRawText", "a[b=\"c\" {;}]{}", "[a[b=\"c\" {;}]]{}"},
    {"BracketInAnAttributeIsText", "a[b[c]{}", "[a[b[c]]{}"},
    {"EmptyAttribute", "a[]{}", "[a[]]{}"},
    {"CommentInAnAttributeIsLeftOut", "a[b/*]*/c]{}", "[a[bc]]{}"},
    {"SlashInAnAttributeIsAFault", "a[b/c]{}", "", 1},
    {"AttributeBehindAttribute", "a[b][c]{}", "[a[b][c]]{}"},
    {"IdBehindAttribute", "a[b]#c{}", "[a#c[b]]{}"},
    {"ClassBehindAttribute", "a[b].c{}", "[a.c[b]]{}"},
    {"PseudoBehindAttribute", "a[b]:c{}", "[a:c[b]]{}"},
    {"AttributeInAList", "a[b],c[d]{}", "[a[b]][c[d]]{}"},
    {"AttributeBeforeBlank", "a[b] {}", "[a[b]]{}"},
    {"AttributeBeforeComment", "a[b]/**/{}", "[a[b]]{}"},
    {"NameBehindAttributeIsAFault", "a[b]c{}", "", 1},
    {"ChainOfIds", "a #b{}", "[a][a #b]{}"},
    {"ChainOfClasses", "a .b{}", "[a][a .b]{}"},
    {"ChainOfPseudoClasses", "a :b{}", "[a][a :b]{}"},
    {"ChainOfUniversals", "a *{}", "[a][a *]{}"},
    {"ChainWithAnAttributeRepeatsItsStart", "a [b]{}", "[a][a]{}"},
    {"ChainWithAnEscape", "a \\zb{}", "[a][a ?b]{}"},
    {"CommentSeparatesAChain", "a/**/b{}", "[a][a b]{}"},
    {"CommentAndBlankInAChainAreAFault", "a/**/ b{}", "", 1},
    {"BlankAndCommentInAChainAreAFault", "a /**/b{}", "", 1},
    {"TwoCommentsInAChainAreAFault", "a/**//**/b{}", "", 1},
    {"AnyBlanksBeforeTheBody", "a  \t/**/ /**/{}", "[a]{}"},
    {"AnyBlanksBeforeAComma", "a  ,b{}", "[a][b]{}"},
    {"BlankBeforeAComma", "a ,b{}", "[a][b]{}"},
    {"BlanksAndCommentsBehindAComma", "a, \n/**/ b{}", "[a][b]{}"},
    {"EachKindBehindAComma", "a,#b,.c,:d,*,[e],\\zf{}", "[a][#b][.c][:d][*][?f]{}"},
    {"BodyBehindAComma", "a,{}", "", 1},
    {"TwoCommas", "a,,b{}", "", 1},
    {"CommaAtTheStart", ",a{}", ""},
    {"StraySlashBehindAName", "a/b{}", "", 1},
    {"StraySlashInAGap", "a /b{}", "", 1},
    {"StraySlashInTheSecondGap", "a  /b{}", "", 1},
    {"StraySlashBehindAComma", "a,/b{}", "", 1},
    {"FaultInTheGap", "a ;", "", 1},
    {"CommentsEverywhere", "/*a*/a/*b*/,/*c*/b/*d*/{/*e*/x/*f*/:/*g*/1/*h*/2/*i*/;/*j*/}/*k*/", "[a][b]{x: 1 2}"},
    {"CommentOfStars", "/***/a{}/****/", "[a]{}"},
    {"StarsInAComment", "/* ** * / */a{}", "[a]{}"},
    {"CommentIsNotClosedByItsStart", "/*/a{}/**/b{}", "[b]{}"},
    {"UnfinishedCommentAtTheTop", "a{}/*b{}", "[a]{}"},
    {"StraySlashAtTheTopEndsTheText", "a{}/b{}", "[a]{}"},
    {"StraySlashBehindARuleSetCommitsIt", "a{}/", "[a]{}"},
    {"HighBytesAreNames", "\xed\x95\x9c.\x80{}", "[\xed\x95\x9c.\x80]{}"},
    {"NamesOfHyphensAndUnderscores", "-a-._b_-{}", "[-a-._b_-]{}"},
    {"DigitsInNames", "h1.c2#d3:e4{}", "[h1#d3.c2:e4]{}"},
};

constexpr Case escapes[] = {
    {"QuotesAreKept", "a\\\"\\'{}", "[a\"']{}"},
    {"LettersStandForControlBytes", "a\\n\\r\\t{}", "[a\n\r\t]{}"},
    {"OtherBytesAreQuestionMarks", "a\\\\\\.\\g\\ \\\x80{}", "[a?????]{}"},
    {"HexadecimalEscapeAddsNothing", "a\\62 c{}", "[ac]{}"},
    {"FIsAHexadecimalDigit", "a\\fz{}", "[az]{}"},
    {"SixDigitsAreTheMost", "a\\1234567{}", "[a7]{}"},
    {"BlankBehindSixDigitsBelongsToTheEscape", "a\\123456 b{}", "[ab]{}"},
    {"OneBlankBelongsToTheEscape", "a\\62  b{}", "[a][a b]{}"},
    {"EachBlankBelongsToTheEscape", "a\\1\tb\\1\nc\\1\vd\\1\fe\\1 f{}", "[abcdef]{}"},
    {"CarriageReturnAndLineFeedBelongToTheEscape", "a\\1\r\nb{}", "[ab]{}"},
    {"CarriageReturnAloneBelongsToTheEscape", "a\\1\rb{}", "[ab]{}"},
    {"CarriageReturnTwice", "a\\1\r\rb{}", "[a][a b]{}"},
    {"LineFeedTwice", "a\\1\n\nb{}", "[a][a b]{}"},
    {"EndOfTheNameBehindACarriageReturn", "a\\1\r{}", "[a]{}"},
    {"EscapeBehindAnEscape", "a\\62\\63 d{}", "[ad]{}"},
    {"EscapeBehindACarriageReturn", "a\\62\r\\zd{}", "[a?d]{}"},
    {"EndOfTheNameBehindAnEscape", "a\\62{}", "[a]{}"},
    {"LineFeedBehindABackslashIsAFault", "a\\\nb{}", "", 1},
    {"FormFeedBehindABackslashIsAFault", "a\\\fb{}", "", 1},
    {"CarriageReturnBehindABackslashIsAFault", "a\\\rb{}", "", 1},
    {"OtherBlanksBehindABackslashAreQuestionMarks", "a\\ \\\t\\\v{}", "[a???]{}"},
    {"NameOfOneEscape", "\\z{}", "[?]{}"},
    {"NameOfOneHexadecimalEscapeIsEmpty", "\\62 {x:1}", "x: 1;"},
    {"InAnId", "#a\\62 \\z{}", "[#a?]{}"},
    {"InAClass", ".\\za\\62 \\z{}", "[.?a?]{}"},
    {"InAPseudoClass", ":a\\62 \\z{}", "[:a?]{}"},
    {"IdOfAnEscape", "#\\z{}", "[#?]{}"},
    {"EndOfTheTextBehindABackslash", "a\\", "", 1},
    {"EndOfTheTextInAnEscape", "a\\6", "", 1},
    {"InAPropertyName", "a{x\\62 \\z:1}", "[a]{x?: 1}"},
    {"PropertyNameOfAnEscape", "a{\\zx:1}", "[a]{?x: 1}"},
    {"PropertyNameOfAHexadecimalEscapeIsEmpty", "a{\\62:1;y:2}", "[a]{y: 2}"},
    {"LineFeedInAPropertyName", "a{x\\\n:1;y:2}", "[a]{y: 2}", 1},
    {"InAWord", "a{x:b\\62 \\zc}", "[a]{x: 'b?c'}"},
    {"WordOfAnEscape", "a{x:\\zc}", "[a]{x: '?c'}"},
    {"WordOfAHexadecimalEscapeIsNoValue", "a{x:\\62 1}", "[a]{x: '1'}"},
    {"InAString", "a{x:\"b\\\"\\n\\62 \\zc\"}", "[a]{x: 'b\"\n?c'}"},
    {"InASingleQuotedString", "a{x:'b\\'\\n\\62 \\zc'}", "[a]{x: 'b'\n?c'}"},
    {"QuoteBehindAHexadecimalEscapeEndsTheString", "a{x:\"b\\62\";y:'c\\62'}", "[a]{x: 'b'; y: 'c'}"},
    {"EscapeBehindAHexadecimalEscapeInAString", "a{x:\"b\\62\\zc\"}", "[a]{x: 'b?c'}"},
    {"LineFeedBehindABackslashInAStringIsAFault", "a{x:\"b\\\nc\";y:1}", "[a]{y: 1}", 1},
    {"FormFeedBehindABackslashInAStringIsAFault", "a{x:'b\\\fc';y:1}", "[a]{y: 1}", 1},
    {"InAUnit", "a{x:1p\\62 \\zx}", "[a]{x: 1p?x}"},
    {"EndOfTheTextBehindABackslashInAName", "a{x\\", "", 1},
    {"EndOfTheTextBehindABackslashInAString", "a{x:'\\", "", 1},
};

constexpr Case values[] = {
    {"Word", "a{x:red}", "[a]{x: 'red'}"},
    {"Words", "a{x:red blue,green}", "[a]{x: 'red' 'blue' 'green'}"},
    {"AnyCommasBetweenValues", "a{x:1,,2, ,3,}", "[a]{x: 1 2 3}"},
    {"DoubleQuotedString", "a{x:\"b 'c' \n{;}\"}", "[a]{x: 'b 'c' \n{;}'}"},
    {"SingleQuotedString", "a{x:'b \"c\" {;}'}", "[a]{x: 'b \"c\" {;}'}"},
    {"StringBehindAValueWithoutABlankIsAFault", "a{x:b\"c\"}", "[a]{}", 1},
    {"ValueBehindAStringWithoutABlankIsAFault", "a{x:\"b\"c}", "[a]{}", 1},
    {"StringAndComma", "a{x:'b','c'}", "[a]{x: 'b' 'c'}"},
    {"StringAndComment", "a{x:'b'/**/'c'}", "[a]{x: 'b' 'c'}"},
    {"StringAndSemicolon", "a{x:'b';}", "[a]{x: 'b'}"},
    {"Integer", "a{x:12}", "[a]{x: 12}"},
    {"Fraction", "a{x:1.5}", "[a]{x: 1.5}"},
    {"FractionWithoutIntegerPart", "a{x:.5}", "[a]{x: 0.5}"},
    {"NegativeInteger", "a{x:-12}", "[a]{x: -12}"},
    {"NegativeFraction", "a{x:-1.5}", "[a]{x: -1.5}"},
    {"NegativeFractionWithoutIntegerPart", "a{x:-.5}", "[a]{x: -0.5}"},
    {"NumberThatEndsInItsPointIsAFault", "a{x:1.;y:2}", "[a]{y: 2}", 1},
    {"PointAloneIsAFault", "a{x:.;y:2}", "[a]{y: 2}", 1},
    {"TwoPointsAreAFault", "a{x:1.2.3;y:2}", "[a]{y: 2}", 1},
    {"MinusAloneIsAWord", "a{x:-}", "[a]{x: '-'}"},
    {"MinusAndABlank", "a{x:- 1}", "[a]{x: '-' 1}"},
    {"MinusAndASemicolon", "a{x:-;}", "[a]{x: '-'}"},
    {"MinusAndAComment", "a{x:-/**/}", "[a]{x: '-'}"},
    {"MinusAndLettersAreAWord", "a{x:-b}", "[a]{x: '-b'}"},
    {"TwoMinusesAreAWord", "a{x:--1}", "[a]{x: '--1'}"},
    {"MinusAndAnEscapeAreAWord", "a{x:-\\zb}", "[a]{x: '-?b'}"},
    {"PlusIsAFault", "a{x:+1}", "[a]{}", 1},
    {"Unit", "a{x:12px}", "[a]{x: 12px}"},
    {"UnitOfAFraction", "a{x:1.5em}", "[a]{x: 1.5em}"},
    {"UnitOfANegativeNumber", "a{x:-1.5em -2px}", "[a]{x: -1.5em -2px}"},
    {"UnitWithDigits", "a{x:1b2}", "[a]{x: 1b2}"},
    {"UnitThatIsAnEscape", "a{x:1\\zb 1.5\\zc -1.5\\zd}", "[a]{x: 1?b 1.5?c -1.5?d}"},
    {"UnitAndComma", "a{x:1px,2px}", "[a]{x: 1px 2px}"},
    {"UnitAndSemicolon", "a{x:1px;}", "[a]{x: 1px}"},
    {"UnitAndComment", "a{x:1px/**/}", "[a]{x: 1px}"},
    {"FractionAndSemicolon", "a{x:.5;y:1.5 2,3}", "[a]{x: 0.5; y: 1.5 2 3}"},
    {"IntegerAndComment", "a{x:1/**/2}", "[a]{x: 1 2}"},
    {"FractionAndComment", "a{x:1.5/**/2}", "[a]{x: 1.5 2}"},
    {"Percentage", "a{x:50%}", "[a]{x: 50%}"},
    {"PercentageOfAFraction", "a{x:12.5% -12.5% .5%}", "[a]{x: 12.5% -12.5% 0.5%}"},
    {"PercentageAndTerminators", "a{x:1%,2%;y:3%/**/4%}", "[a]{x: 1% 2%; y: 3% 4%}"},
    {"NegativePercentage", "a{x:-50%}", "[a]{x: -50%}"},
    {"LettersBehindAPercentageAreAFault", "a{x:50%a;y:1}", "[a]{y: 1}", 1},
    {"HexColorOfThreeDigits", "a{x:#abc}", "[a]{x: rgb(170,187,204,255)}"},
    {"HexColorOfSixDigits", "a{x:#0A1b2C}", "[a]{x: rgb(10,27,44,255)}"},
    {"HexColorOfOneDigitIsAFault", "a{x:#1;y:1}", "[a]{y: 1}", 1},
    {"HexColorOfTwoDigitsIsAFault", "a{x:#12;y:1}", "[a]{y: 1}", 1},
    {"HexColorOfFourDigitsIsAFault", "a{x:#1234;y:1}", "[a]{y: 1}", 1},
    {"HexColorOfFiveDigitsIsAFault", "a{x:#12345;y:1}", "[a]{y: 1}", 1},
    {"HexColorOfSevenDigitsIsAFault", "a{x:#1234567;y:1}", "[a]{y: 1}", 1},
    {"HexColorOfEightDigitsIsAFault", "a{x:#12345678;y:1}", "[a]{y: 1}", 1},
    {"HexColorWithoutDigitsIsAFault", "a{x:#;y:1}", "[a]{y: 1}", 1},
    {"HexColorWithOtherLettersIsAFault", "a{x:#12g;y:1}", "[a]{y: 1}", 1},
    {"HexColorsAndTerminators", "a{x:#123 #123,#123/**/#123456 #123456,#123456/**/1;y:#123;z:#123456;}",
     "[a]{x: rgb(17,34,51,255) rgb(17,34,51,255) rgb(17,34,51,255) rgb(18,52,86,255) rgb(18,52,86,255) "
     "rgb(18,52,86,255) 1; y: rgb(17,34,51,255); z: rgb(18,52,86,255)}"},
};

constexpr Case declarations[] = {
    {"BlanksAroundTheColon", "a{x \t:\n 1}", "[a]{x: 1}"},
    {"CommentsAroundTheColon", "a{x/**/ /**/:/**/ /**/1}", "[a]{x: 1}"},
    {"EmptyDeclarations", "a{;;x:1;;y:2;}", "[a]{x: 1; y: 2}"},
    {"LastDeclarationWithoutSemicolon", "a{x:1;y:2}", "[a]{x: 1; y: 2}"},
    {"TwoNamesAreAFault", "a{x y:1;z:2}", "[a]{z: 2}", 1},
    {"NameWithoutValueIsAFault", "a{x;z:2}", "[a]{z: 2}", 1},
    {"NameAndBracketIsAFault", "a{x}", "[a]{}", 1},
    {"TwoColonsAreAFault", "a{x::1;z:2}", "[a]{z: 2}", 1},
    {"PropertyThatBeginsWithADigitIsAFault", "a{1:1;z:2}", "[a]{z: 2}", 1},
    {"BracketInTheBodyIsAFault", "a{{x:1;z:2}", "[a]{z: 2}", 1},
    {"FaultIsSkippedToTheBracket", "a{x:)y:1}b{z:2}", "[a]{} [b]{z: 2}", 1},
    {"StraySlashInANameIsAFault", "a{x/y:1;z:2}", "[a]{z: 2}", 1},
    {"StraySlashInANameGapIsAFault", "a{x /y:1;z:2}", "[a]{z: 2}", 1},
    {"StraySlashBeforeAValueIsAFault", "a{x:/y;z:2}", "[a]{z: 2}", 1},
    {"StraySlashBehindAValueIsAFault", "a{x:1/2;z:2}", "[a]{z: 2}", 1},
    {"SemicolonBehindAStraySlashEndsTheDeclaration", "a{x:1/;z:2}", "[a]{z: 2}", 1},
    {"StraySlashBetweenDeclarationsDropsTheRuleSet", "a{x:1; /y:2;}", "", 1},
    {"ErrorsOfManyDeclarations", "a{1;2;3;x:1}", "[a]{x: 1}", 3},
    {"EndInTheBody", "a{", "", 1},
    {"EndInAName", "a{x", "", 1},
    {"EndInANameGap", "a{x ", "", 1},
    {"EndBeforeAValue", "a{x:", "", 1},
    {"EndInAString", "a{x:'b", "", 1},
    {"EndInADoubleQuotedString", "a{x:\"b", "", 1},
    {"EndBehindAString", "a{x:'b'", "", 1},
    {"EndInAHexColor", "a{x:#12", "", 1},
    {"EndInAComment", "a{x:1/*", "", 1},
    {"EndInACommentBeforeAValue", "a{x:/*", "", 1},
    {"EndInACommentBehindAName", "a{x/*", "", 1},
    {"EndInACommentBehindAStar", "a{x/**", "", 1},
    {"EndBehindASlash", "a{x/", "", 1},
    {"EndInACommentOfTheBodyFallsBack", "a{x:1;/*", "", 1},
    {"EndWhileSkipping", "a{x:)b", "", 1},
    {"EndInABraceValueIsSilent", "a{x:b(", ""},
    {"EndInABraceCommentIsSilent", "a{x:b(/*", ""},
    {"EndInBraceQuotesIsSilent", "a{x:b('", ""},
    {"EndInBraceDoubleQuotesIsSilent", "a{x:b(\"", ""},
    {"EndBehindABraceBackslashIsSilent", "a{x:b('\\", ""},
    {"EndBehindADoubleQuotedBraceBackslashIsSilent", "a{x:b(\"\\", ""},
};

constexpr Case braceValues[] = {
    {"Empty", "a{x:b()}", "[a]{x: b('')}"},
    {"Text", "a{x:url( a.png )}", "[a]{x: url('a.png')}"},
    {"NestedBracketsQuotesAndAComment", "a{x:f(g(1) \"b)\"/* ) */d)}", "[a]{x: f('g(1)\"b)\" d')}"},
    {"RunsOfBlanksAreOne", "a{x:f(1 \t\n 2)}", "[a]{x: f('1 2')}"},
    {"BlankBeforeACommaStaysAndOneBehindGoes", "a{x:f(1 , 2)}", "[a]{x: f('1 ,2')}"},
    {"NoBlankBehindBracketsColonsAndSemicolons", "a{x:f(( 1) 2: 3; 4)}", "[a]{x: f('(1)2:3;4')}"},
    {"NoBlankAtTheStart", "a{x:f(  /**/1)}", "[a]{x: f('1')}"},
    {"CommentsAreOneBlank", "a{x:f(1/**//**/2)}", "[a]{x: f('1 2')}"},
    {"CommentOfStars", "a{x:f(1/***/2)}", "[a]{x: f('1 2')}"},
    {"StraySlashStopsTheReading", "b{}a{x:f(1/2)}c{}", "[b]{}"},
    {"SingleQuoteInDoubleQuotesStopsTheReading", "b{}a{x:f(\"'\")}c{}", "[b]{}"},
    {"DoubleQuoteInSingleQuotesIsText", "a{x:f('\"')}", "[a]{x: f(''\"'')}"},
    {"BackslashInQuotesKeepsTheNextByte", "a{x:f(\"\\\"\\'\\\\\" '\\'\\\"')}", "[a]{x: f('\"\\\"\\'\\\\\" '\\'\\\"'')}"},
    {"BackslashOutsideQuotesIsText", "a{x:f(\\))}", "[a]{}", 1},
    {"SemicolonsAndBracesAreText", "a{x:f(;{}[]#.)}", "[a]{x: f(';{}[]#.')}"},
    {"ThenAnotherValue", "a{x:f(1) 2,f(3);y:f(4)}", "[a]{x: f('1') 2 f('3'); y: f('4')}"},
    {"ThenAComment", "a{x:f(1)/**/}", "[a]{x: f('1')}"},
    {"ThenLettersIsAFault", "a{x:f(1)b;y:1}", "[a]{y: 1}", 1},
    {"ThenABraceIsAFault", "a{x:f(1)(2);y:1}", "[a]{y: 1}", 1},
    {"NameWithAnEscape", "a{x:f\\z(1)}", "[a]{x: f?('1')}"},
    {"NameOfAMinus", "a{x:-(1)}", "[a]{x: -('1')}"},
    {"NameOfAMinusAndDigits", "a{x:-12(1)}", "[a]{x: -12('1')}"},
    {"NameOfLettersBehindAMinusAndDigits", "a{x:-12px(1)}", "[a]{x: px('1')}"},
    {"DigitsAndABracketAreAFault", "a{x:12(1);y:1}", "[a]{y: 1}", 1},
    {"DigitsLettersAndABracketAreAFault", "a{x:12px(1);y:1}", "[a]{y: 1}", 1},
    {"FractionAndABracketAreAFault", "a{x:-1.5(1);y:1}", "[a]{y: 1}", 1},
    {"FractionWithLettersAndABracketAreAFault", "a{x:-1.5px(1);y:1}", "[a]{y: 1}", 1},
    {"SignedUnitThatBeginsWithAnEscape", "a{x:-1\\zp(1)}", "[a]{x: ?p('1')}"},
    {"SignedUnitWithEscapes", "a{x:-1p\\zq\\62 r\\63\\64(1)}", "[a]{x: p?qr('1')}"},
    {"SignedUnitBehindAHexadecimalEscape", "a{x:-1\\62(1) -1\\62z(2)}", "[a]{x: '1' z('2')}"},
    {"BlankBehindAHexadecimalEscapeMakesAPlainUnit", "a{x:-1\\62 z(2);y:1}", "[a]{y: 1}", 1},
    {"LineEndBehindAHexadecimalEscapeMakesAPlainUnit", "a{x:-1\\62\r\nz(2);y:1}", "[a]{y: 1}", 1},
    {"BackslashBehindAHexadecimalEscapeMakesAPlainUnit", "a{x:-1\\62\\zp(2);y:1}", "[a]{y: 1}", 1},
    {"LaterBackslashMakesAPlainUnit", "a{x:-1\\62pq\\zp(2);y:1}", "[a]{y: 1}", 1},
    {"PlainUnitBehindASignedNumber", "a{x:-1\\62pq\\zp -1\\62 z}", "[a]{x: -1pq?p -1z}"},
    {"SignedNumbersAndTerminators", "a{x:-1 -1,-1/**/-1px,-1px/**/-1px;y:-1;z:-1px;w:-1\\62p,-1\\62p/**/-1\\62p;v:-1\\62p}",
     "[a]{x: -1 -1 -1 -1px -1px -1px; y: -1; z: -1px; w: -1p -1p -1p; v: -1p}"},
    {"Rgb", "a{x:rgb(1,2,3)}", "[a]{x: rgb(1,2,3,255)}"},
    {"EmptyRgb", "a{x:rgb()}", "[a]{x: rgb(0,0,0,255)}"},
    {"RgbaInCapitals", "a{x:RGBA(1 , 2 , 3 , 4)}", "[a]{x: rgb(1,2,3,4)}"},
    {"Hsv", "a{x:hsv(300, 50%, 1)}", "[a]{x: hsv(255,128,1,255)}"},
    {"Hsva", "a{x:Hsva(1,2,3,50%)}", "[a]{x: hsv(1,2,3,128)}"},
    {"MalformedTextHasItsAsciiBlanksTrimmed", "a{x:f( \x80\xff )}", "[a]{x: f('\x80\xff')}"},
    {"NoBreakSpacesStay", "a{x:f( \xc2\xa0 )}", "[a]{x: f('\xc2\xa0')}"},
};

constexpr Case rootProperties[] = {
    {"SeveralLines", "color: red;\nfont-size: 12px;\n", "color: 'red'; font-size: 12px;"},
    {"WithoutBlanks", "a:1;b:2;c:3", "a: 1; b: 2; c: 3;"},
    {"FontsAndColors", "font: 'Arial', 12px; color: #fff; w: 50% -1 -2px", 
     "font: 'Arial' 12px; color: rgb(255,255,255,255); w: 50% -1 -2px;"},
    {"BraceValues", "a: rgb(1,2,3) url(x);", "a: rgb(1,2,3,255) url('x');"},
    {"BehindARuleSet", "a{x:1}y:2", "[a]{x: 1} y: 2;"},
    {"NameGap", "x :1;", "x: 1;"},
    {"NameGapWithAComment", "x/**/ :1;", "x: 1;"},
    {"Comments", "x:/**/1/**/2/**/;", "x: 1 2;"},
    {"TwoValues", "x:1 2;", "x: 1 2;"},
    {"EndBehindABlank", "x:1 ", "x: 1;"},
    {"Escapes", "x\\zy:a\\zb '\\z' \"\\z\" 1\\z -1\\z -1\\62 b", "x?y: 'a?b' '?' '?' 1? -1? -1b;"},
    {"NameOfAnEscape", "\\zy: 1", "?y: 1;"},
    {"EmptyStringDropsTheProperty", "x:'';y:1;", "y: 1;"},
    {"ClosingBracketIsAFault", "x:1}y:2;", "y: 2;", 1},
    {"ClosingBracketBehindABlankIsAFault", "x: 1 }y:2;", "y: 2;", 1},
    {"FaultIsSkippedToTheSemicolon", "x: ); y: 1;", "y: 1;", 1},
    {"FaultIsSkippedToTheBracket", "x: ) } y: 1;", "y: 1;", 1},
    {"FaultAtTheEnd", "x: )", "", 1},
    {"EndWithoutAValue", "x:", "", 1},
    {"EndInAName", "x", "", 1},
    {"EndInANameGap", "x ", "", 1},
    {"EndInAString", "x:'1", "", 1},
    {"EndInAComment", "x:1/*", "", 1},
    {"EndInACommentBehindAName", "x/*", "", 1},
    {"EndBehindABackslash", "x:a\\", "", 1},
    {"EndInABraceValueIsSilent", "x: f(", ""},
    {"StraySlash", "x:1/2;y:3", "y: 3;", 1},
    {"StraySlashAndSemicolon", "x:1/;y:3", "y: 3;", 1},
    {"FaultsOfEveryKind", "x: #12; x: 1.; x: 'a'b; x: 1%a; x: 1(; x: f(1)a; x y; x: -1.5(; y: 3", "y: 3;", 8},
    {"LineFeedInAnEscape", "x: a\\\nb; y: 3", "y: 3;", 1},
    {"HexColors", "x: #123 #123456; y: #123; z: #123456", 
     "x: rgb(17,34,51,255) rgb(18,52,86,255); y: rgb(17,34,51,255); z: rgb(18,52,86,255);"},
};

constexpr Case faultsAtTheTop[] = {
    {"AtSignEndsTheText", "a{} @media{} b{}", "[a]{}"},
    {"BracketEndsTheText", "a{} {} b{}", "[a]{}"},
    {"DigitEndsTheText", "a{} 1{} b{}", "[a]{}"},
    {"ClosingBracketBehindABlankEndsTheText", "a{x:1} ) b{}", "[a]{x: 1}"},
    {"AtSignAtTheStart", "@import; a{}", ""},
    {"FallBackToAnId", "#a; b{}", "[b]{}", 1},
    {"FallBackToAClass", ".a; b{}", "[b]{}", 1},
    {"FallBackToAPseudoClass", ":a; b{}", "[b]{}", 1},
    {"FallBackToAnAttribute", "[a]; b{}", "[b]{}", 1},
    {"FallBackToAUniversal", "*; b{}", "[b]{}", 1},
    {"FallBackToAnUnfinishedAttribute", "a[;b{}", "[b]{}", 1},
    {"FallBackAtTheEndOfAComment", "a/*;*/", "", 1},
    {"FallBackBehindABracket", "a{/}b{y:2}", "[b]{y: 2}", 1},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Sheets, StyleSheetParser, testing::ValuesIn(sheets), nameOf);
INSTANTIATE_TEST_SUITE_P(Selectors, StyleSheetParser, testing::ValuesIn(selectors), nameOf);
INSTANTIATE_TEST_SUITE_P(Escapes, StyleSheetParser, testing::ValuesIn(escapes), nameOf);
INSTANTIATE_TEST_SUITE_P(Values, StyleSheetParser, testing::ValuesIn(values), nameOf);
INSTANTIATE_TEST_SUITE_P(Declarations, StyleSheetParser, testing::ValuesIn(declarations), nameOf);
INSTANTIATE_TEST_SUITE_P(BraceValues, StyleSheetParser, testing::ValuesIn(braceValues), nameOf);
INSTANTIATE_TEST_SUITE_P(RootProperties, StyleSheetParser, testing::ValuesIn(rootProperties),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(FaultsAtTheTop, StyleSheetParser, testing::ValuesIn(faultsAtTheTop),
                         nameOf);

// The loop's two switches have a case for each action and for each of its modes, which the compiler
// checks. That a value is none of them is the one branch of the loop that no text takes.
TEST(StyleSheetTable, HasNamedActionsOnlySoThatTheSwitchesNeedNoDefault) {
    const auto expectNamed = [](const byte_machine::ActionList& list) {
        for (const std::uint8_t action : list) {
            EXPECT_LE(action, static_cast<std::uint8_t>(style_sheet::Action::FallBack));
        }
    };
    for (const byte_machine::ActionList& list : style_sheet::machine.lists) {
        expectNamed(list);
    }
    for (const style_sheet::table::Group& group : style_sheet::table::groups) {
        for (const auto* const way :
             {&group.unlisted, &group.straySlash, &group.end, &group.endInComment}) {
            expectNamed(way->actions);
        }
        expectNamed(group.endOfComment);
    }
}

TEST(StyleSheetTable, BareListHasATwinOfEachDeclaration) {
    using style_sheet::Family;
    EXPECT_EQ(style_sheet::twin(style_sheet::PropertyName), style_sheet::ListPropertyName);
    EXPECT_EQ(style_sheet::twin(style_sheet::BraceClose), style_sheet::ListBraceClose);
    EXPECT_EQ(style_sheet::machine.states, style_sheet::ListBraceClose + 1u);
}

/// Ends the reading after some messages: what an action throws passes out of the reader.
class ImpatientSink final : public fn::logging::Sink {
public:
    struct Stop {};

    bool wants(fn::logging::Message::Priority /*priority*/) const override { return true; }
    void write(const fn::logging::Message& /*message*/) override {
        if (++written == 1000) {
            throw Stop();
        }
    }

private:
    int written = 0;
};

void parseImpatiently(StyleSheet& sheet, const char* text) {
    ParserState::_fn_getLoggingCategoryStatic();
    fn::logging::CategoryManager::instance().setSinkFactory(
        [](const fn::String&) { return std::make_unique<ImpatientSink>(); });
    EXPECT_THROW(sheet.parse(text), ImpatientSink::Stop);
    fn::logging::CategoryManager::instance().setSinkFactory(nullptr);
}

TEST(StyleSheetParserWithoutGuard, ReadsARootPropertyBeforeAFaultAgainAndAgain) {
    StyleSheet sheet;
    parseImpatiently(sheet, "color: red; )");
    EXPECT_GT(sheet.properties.size(), 50u);
    EXPECT_EQ(describe(sheet.properties.back()), "color: 'red'");
}

TEST(StyleSheetParserWithoutGuard, ReadsARuleSetBeforeAFaultAgainAndAgain) {
    StyleSheet sheet;
    parseImpatiently(sheet, "b{} a{x:1}@");
    EXPECT_EQ(describe(sheet), "[b]{}");
}

TEST(StyleSheetText, EndsAtItsFirstNul) {
    StyleSheet sheet;
    sheet.parse(fn::String("a{x:1}\0b{y:2}", 13));
    EXPECT_EQ(describe(sheet), "[a]{x: 1}");
}

TEST(StyleSheetModes, AreReadInEachOfThemSoThatTheSwitchOverThemHasNoOtherWay) {
    StyleSheet sheet;
    // An escape, a hexadecimal one, one that CR and LF end, a slash, a comment, a star in it.
    sheet.parse("a\\tb\\41 c\\42\r\nd /* e * f */ {x:1} ");
    EXPECT_EQ(describe(sheet), "[a\tbcd]{x: 1}");
}

}  // namespace
}  // namespace subtitles
