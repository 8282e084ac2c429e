// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/json.h"

#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/utf8.h"

namespace {

using fn::Value;

std::string toText(const Value& value, bool indented = false) {
    fn::ByteArrayOutputStream stream;
    fn::json::serialize(value, stream, indented);
    return std::string(stream.byteArray().view());
}

Value read(const std::string& text) {
    return fn::json::deserialize(text, "");
}

struct ReadCase {
    const char* name;
    const char* text;
    const char* expected;  // written again
};

void PrintTo(const ReadCase& test, std::ostream* out) {
    *out << test.text;
}

constexpr ReadCase readCases[] = {
    {"KeysComeOutInByteOrder", R"({"b":1,"a":2,"B":3,"":4})", R"({"":4,"B":3,"a":2,"b":1})"},
    {"LastOfEqualKeysCounts", R"({"a":1,"b":2,"a":{"c":3}})", R"({"a":{"c":3},"b":2})"},
    {"WhiteSpaceGoes", " { \"a\" :\t[ 1 ,\r\n 2 ] } ", R"({"a":[1,2]})"},
    {"EveryKind", R"([null,true,false,0,-1,1.5,"x",[],{}])",
     R"([null,true,false,0,-1,1.5,"x",[],{}])"},
    {"NestedArrays", R"([[[1],[2,[3]]],4])", R"([[[1],[2,[3]]],4])"},
    {"MapInAListInAMap", R"({"a":[{"b":[]},{"c":1}],"d":2})", R"({"a":[{"b":[]},{"c":1}],"d":2})"},
    {"Escapes", R"("\"\\\/\b\f\n\r\t\u0041\u00e4")",
     "\"\\\"\\\\/\\u0008\\u000c\\n\\r\\tA\xc3\xa4\""},
    {"SurrogatePair", R"("\ud83d\ude00")", "\"\xf0\x9f\x98\x80\""},
    {"LoneNulIsANul", R"("a\u0000b")", R"("a\u0000\u0000b")"},
    {"NulAtTheEnd", R"("a\u0000")", R"("a\u0000\u0000")"},
    {"NulBeforeAWideCodePoint", "\"\\u0000\\u0100\"", "\"\\u0000\\u0000\xc4\x80\""},
    {"EscapedByte", R"("\u0000\u00ff")", R"("\u0000\u00ff")"},
    {"UnescapedByte", "\"\\u0000\xc3\xbf\"", R"("\u0000\u00ff")"},
    {"EscapedBytesOfASequenceJoin", R"("\u0000\u00c3\u0000\u00a4")", "\"\xc3\xa4\""},
    {"ByteOrderMark", "\xef\xbb\xbf{}", "{}"},
    {"ScalarDocument", "\"x\"", "\"x\""},
};

class JsonRead : public testing::TestWithParam<ReadCase> {};

TEST_P(JsonRead, IsWrittenAgain) {
    EXPECT_EQ(toText(read(GetParam().text)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, JsonRead, testing::ValuesIn(readCases),
                         [](const auto& test) { return test.param.name; });

struct NumberCase {
    const char* name;
    const char* text;
    Value::Type type;
    const char* expected;  // as a text of the value
};

void PrintTo(const NumberCase& test, std::ostream* out) {
    *out << test.text;
}

constexpr NumberCase numberCases[] = {
    {"Integer", "12", Value::IntegerType, "12"},
    {"NegativeZero", "-0", Value::IntegerType, "0"},
    {"GreatestSigned", "9223372036854775807", Value::IntegerType, "9223372036854775807"},
    {"LeastSigned", "-9223372036854775808", Value::IntegerType, "-9223372036854775808"},
    {"AboveSigned", "9223372036854775808", Value::UnsignedType, "9223372036854775808"},
    {"GreatestUnsigned", "18446744073709551615", Value::UnsignedType, "18446744073709551615"},
    {"AboveUnsigned", "18446744073709551616", Value::DoubleType, "18446744073709551616"},
    {"BelowSigned", "-9223372036854775809", Value::DoubleType, "-9223372036854775808"},
    {"Fraction", "1.5", Value::DoubleType, "1.5"},
    {"WholeFraction", "2.0", Value::DoubleType, "2"},
    {"Exponent", "1e2", Value::DoubleType, "100"},
};

class JsonNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(JsonNumber, HasItsKind) {
    const Value value = read(GetParam().text);
    EXPECT_EQ(value.type(), GetParam().type);
    EXPECT_EQ(value.asString(), GetParam().expected);
    EXPECT_EQ(read(toText(value)), value) << toText(value);
    EXPECT_EQ(read(toText(value)).type(), value.type()) << toText(value);
}

INSTANTIATE_TEST_SUITE_P(Cases, JsonNumber, testing::ValuesIn(numberCases),
                         [](const auto& test) { return test.param.name; });

TEST(JsonNumber, ConvertsToIntegerWhereNothingIsLost) {
    EXPECT_THROW(read("1.5").asNumber<int>(), fn::RangeException);
    EXPECT_EQ(read("2.0").asNumber<int>(), 2);
    EXPECT_EQ(read("1.0").asNumber<int>(), 1);
    EXPECT_EQ(read("-2147483648").asNumber<int>(), INT_MIN);
    EXPECT_THROW(read("2147483648").asNumber<int>(), fn::RangeException);
    EXPECT_THROW(read("\"1\"").asNumber<int>(), fn::RangeException);
    EXPECT_THROW(read("[]").asNumber<int>(), fn::RangeException);
    EXPECT_EQ(read("null").asNumber<int>(), 0);
}

struct WriteCase {
    const char* name;
    Value value;
    const char* expected;
};

void PrintTo(const WriteCase& test, std::ostream* out) {
    *out << test.expected;
}

const std::vector<WriteCase> writeCases = {
    {"Nil", Value(), "null"},
    {"WholeDoubleKeepsItsFraction", Value(2.0), "2.0"},
    {"NegativeZero", Value(-0.0), "-0.0"},
    {"SmallDouble", Value(1e-7), "1e-07"},
    {"NoInfinity", Value(std::numeric_limits<double>::infinity()), "null"},
    {"NoNotANumber", Value(std::nan("")), "null"},
    {"ControlCharacters", Value("\x01\x1f\x7f"), "\"\\u0001\\u001f\x7f\""},
    {"Nul", Value(fn::String("a\0b", 3)), R"("a\u0000\u0000b")"},
    {"NulBeforeABadByte", Value(fn::String("\0\xff", 2)), R"("\u0000\u0000\u0000\u00ff")"},
    {"BadByte", Value("/f/\xff.srt"), R"("/f/\u0000\u00ff.srt")"},
    {"Latin1Name", Value("caf\xe9.srt"), R"("caf\u0000\u00e9.srt")"},
    {"CutSequenceIsBytes", Value("\xe2\x82"), R"("\u0000\u00e2\u0000\u0082")"},
    {"SurrogateIsBytes", Value("\xed\xa0\x80"), R"("\u0000\u00ed\u0000\u00a0\u0000\u0080")"},
    {"OverlongIsBytes", Value("\xc0\x80"), R"("\u0000\u00c0\u0000\u0080")"},
    {"TextStays", Value("\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"),
     "\"\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80\""},
};

class JsonWrite : public testing::TestWithParam<WriteCase> {};

TEST_P(JsonWrite, Gives) {
    EXPECT_EQ(toText(GetParam().value), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, JsonWrite, testing::ValuesIn(writeCases),
                         [](const auto& test) { return test.param.name; });

TEST(JsonWrite, KeyThatIsNoStringIsItsText) {
    Value value;
    value.map()[1] = "one";
    EXPECT_EQ(toText(value), R"({"1":"one"})");
}

TEST(JsonWrite, ReferenceReadsAsAPlayerStoresIt) {
    Value value;
    value.map()["type"] = 0;
    value.map()["path"] = "/films/a.en.srt";
    value.map()["name"] = "";
    value.map()["mime-type"] = "application/x-srt";
    value.map()["language-code"] = "en";
    EXPECT_EQ(toText(value), R"({"language-code":"en","mime-type":"application/x-srt","name":"",)"
                             R"("path":"/films/a.en.srt","type":0})");
}

TEST(JsonWrite, Indented) {
    EXPECT_EQ(toText(read(R"({"a":[1,{}],"b":[]})"), true),
              "{\n"
              "  \"a\": [\n"
              "    1,\n"
              "    {}\n"
              "  ],\n"
              "  \"b\": []\n"
              "}");
}

struct MalformedCase {
    const char* name;
    const char* text;
};

void PrintTo(const MalformedCase& test, std::ostream* out) {
    *out << test.text;
}

constexpr MalformedCase malformedCases[] = {
    {"Empty", ""},
    {"Blank", " "},
    {"Unclosed", "{"},
    {"UnclosedText", "\"abc"},
    {"TwoDocuments", "{}{}"},
    {"TextBehind", "{} x"},
    {"TrailingComma", "[1,]"},
    {"MissingColon", "{\"a\" 1}"},
    {"KeyIsNoText", "{1:2}"},
    {"WrongBracket", "[1}"},
    {"SingleQuotes", "{'a':1}"},
    {"BareWord", "abc"},
    {"LeadingZero", "01"},
    {"Comment", "[1/*x*/]"},
    {"LoneSurrogate", R"("\ud800")"},
    {"BadEscape", R"("\x")"},
    {"RawLineFeed", "\"a\nb\""},
    {"MalformedUTF8", "\"\xff\""},
    {"NotANumber", "NaN"},
    {"BeyondDouble", "1e999"},
};

class JsonMalformed : public testing::TestWithParam<MalformedCase> {};

TEST_P(JsonMalformed, Raises) {
    EXPECT_THROW(read(GetParam().text), fn::DataFormatException);
}

INSTANTIATE_TEST_SUITE_P(Cases, JsonMalformed, testing::ValuesIn(malformedCases),
                         [](const auto& test) { return test.param.name; });

TEST(JsonMalformed, NulByteEndsNoText) {
    EXPECT_THROW(read(std::string("{}\0", 3)), fn::DataFormatException);
    EXPECT_THROW(read(std::string("{}\0rubbish", 10)), fn::DataFormatException);
    EXPECT_THROW(read(std::string("\"a\0b\"", 5)), fn::DataFormatException);
}

TEST(JsonMalformed, TextSaysWhereAndWhyInAFewWords) {
    try {
        fn::json::deserialize("{\"a\":\n" + std::string(1000000, 'x'), "settings");
        FAIL() << "nothing raised";
    } catch (const fn::DataFormatException& exception) {
        const fn::String& text = exception.displayText();
        EXPECT_EQ(text.find("settings: Malformed JSON: "), 0U) << text;
        EXPECT_NE(text.find("line 2"), fn::String::npos) << text;
        EXPECT_LT(text.size(), 300U);
    }
}

std::string nested(const std::string& open, const std::string& close, int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) {
        text += open;
    }
    text += "1";
    for (int i = 0; i < depth; ++i) {
        text += close;
    }
    return text;
}

TEST(JsonDepth, OfOneHundredIsReadAndWritten) {
    EXPECT_EQ(toText(read(nested("[", "]", 100))), nested("[", "]", 100));
    EXPECT_EQ(toText(read(nested("{\"a\":", "}", 100))), nested("{\"a\":", "}", 100));
}

TEST(JsonDepth, OfMoreRaises) {
    EXPECT_THROW(read(nested("[", "]", 101)), fn::DataFormatException);
    EXPECT_THROW(read(nested("{\"a\":", "}", 101)), fn::DataFormatException);
    EXPECT_THROW(read(std::string(8U << 20U, '[')), fn::DataFormatException);
    Value value(1);
    for (int i = 0; i < 101; ++i) {
        Value outer;
        outer.list().push_back(std::move(value));
        value = std::move(outer);
    }
    EXPECT_THROW(toText(value), fn::DataFormatException);
}

TEST(JsonDepth, CountsOpenContainersOnly) {
    std::string text = "[";
    for (int i = 0; i < 1000; ++i) {
        text += "[[]],";
    }
    EXPECT_EQ(read(text + "0]").list().size(), 1001U);
}

TEST(JsonLong, TextsAndListsOfAMegabyteAreRead) {
    constexpr std::size_t size = 1U << 20U;
    EXPECT_EQ(read("\"" + std::string(size, 'x') + "\"").asString().size(), size);
    EXPECT_THROW(read("\"" + std::string(size, 'x')), fn::DataFormatException);
    EXPECT_THROW(read(std::string(size, '9')), fn::DataFormatException);
    std::string list = "[0";
    for (std::size_t i = 1; i < size / 4; ++i) {
        list += ",\"\"";
    }
    EXPECT_EQ(read(list + "]").list().size(), size / 4);
    const fn::String bad(std::string(size / 8, '\xff'));
    EXPECT_EQ(read(toText(bad)).asString(), bad);
}

TEST(JsonRoundTrip, AnyBytesComeBack) {
    std::mt19937 random(7);
    // Bytes that build, break and imitate sequences, and what the writer makes of them.
    const std::string alphabet(
        "\0\x01\"\\ua0\x7f\x80\xbf\xc2\xc3\xe2\x82\xac\xed\xa0\xf0\x9f\xf4\xff", 21);
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    for (int round = 0; round < 20000; ++round) {
        fn::String bytes;
        for (std::size_t i = 0; i < 8; ++i) {
            bytes += alphabet[pick(random)];
        }
        Value value;
        value.map()[bytes] = bytes;
        const std::string text = toText(value);
        ASSERT_TRUE(fn::utf8::isValid(text)) << text;
        ASSERT_EQ(read(text), value) << text;
    }
}

}  // namespace
