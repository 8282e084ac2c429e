// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/value.h"

#include <climits>
#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"

namespace {

using fn::Value;

Value mapOf(std::initializer_list<std::pair<const char*, Value>> entries) {
    Value value;
    value.map();
    for (const auto& [key, entry] : entries) {
        value.map()[key] = entry;
    }
    return value;
}

Value listOf(std::initializer_list<Value> entries) {
    Value value;
    value.list() = entries;
    return value;
}

const double infinity = std::numeric_limits<double>::infinity();
constexpr const char* noNumber = "Value can not be implicitly converted to integral type";
constexpr const char* loss = "Value can not be converted to requested type without loss";

struct NumberCase {
    const char* name;
    Value value;
    int expected;
    const char* error;  // null where there is none
};

void PrintTo(const NumberCase& test, std::ostream* out) {
    *out << test.value.asString();
}

const std::vector<NumberCase> numberCases = {
    {"NilIsZero", Value(), 0, nullptr},
    {"FalseIsZero", Value(false), 0, nullptr},
    {"TrueIsOne", Value(true), 1, nullptr},
    {"Integer", Value(-5), -5, nullptr},
    {"GreatestInt", Value(2147483647LL), INT_MAX, nullptr},
    {"AboveInt", Value(2147483648LL), 0, loss},
    {"LeastInt", Value(-2147483648LL), INT_MIN, nullptr},
    {"BelowInt", Value(-2147483649LL), 0, loss},
    {"Unsigned", Value(7ULL), 7, nullptr},
    {"GreatestIntUnsigned", Value(2147483647ULL), INT_MAX, nullptr},
    {"AboveIntUnsigned", Value(2147483648ULL), 0, loss},
    {"GreatestUnsigned", Value(ULLONG_MAX), 0, loss},
    {"WholeDouble", Value(2.0), 2, nullptr},
    {"NegativeZero", Value(-0.0), 0, nullptr},
    {"Fraction", Value(1.5), 0, loss},
    {"NegativeFraction", Value(-0.5), 0, loss},
    {"GreatestIntDouble", Value(2147483647.0), INT_MAX, nullptr},
    {"AboveIntDouble", Value(2147483648.0), 0, loss},
    {"LeastIntDouble", Value(-2147483648.0), INT_MIN, nullptr},
    {"BelowIntDouble", Value(-2147483649.0), 0, loss},
    {"WrapsToZeroIn32Bits", Value(4294967296.0), 0, loss},
    {"HugeDouble", Value(1e300), 0, loss},
    {"Infinity", Value(infinity), 0, loss},
    {"NotANumber", Value(std::nan("")), 0, loss},
    {"Text", Value("1"), 0, noNumber},
    {"List", listOf({1}), 0, noNumber},
    {"Map", mapOf({}), 0, noNumber},
};

class ValueAsInt : public testing::TestWithParam<NumberCase> {};

TEST_P(ValueAsInt, GivesTheNumberOrRaises) {
    if (GetParam().error == nullptr) {
        EXPECT_EQ(GetParam().value.asNumber<int>(), GetParam().expected);
        return;
    }
    try {
        GetParam().value.asNumber<int>();
        FAIL() << "nothing raised";
    } catch (const fn::RangeException& exception) {
        EXPECT_EQ(exception.displayText(), GetParam().error);
        EXPECT_EQ(fn::getInfoDescription(exception, false, {}),
                  GetParam().value.detailInfo().text());
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, ValueAsInt, testing::ValuesIn(numberCases),
                         [](const auto& test) { return test.param.name; });

TEST(ValueAsDouble, TakesEveryNumber) {
    EXPECT_EQ(Value().asNumber<double>(), 0.0);
    EXPECT_EQ(Value(true).asNumber<double>(), 1.0);
    EXPECT_EQ(Value(-3).asNumber<double>(), -3.0);
    EXPECT_EQ(Value(ULLONG_MAX).asNumber<double>(), 18446744073709551616.0);
    EXPECT_EQ(Value(1.5).asNumber<double>(), 1.5);
    EXPECT_THROW(Value("1.5").asNumber<double>(), fn::RangeException);
}

TEST(ValueAsString, IsTheTextOfWhatHasOne) {
    EXPECT_EQ(Value().asString(), "");
    EXPECT_EQ(Value(fn::String("a\0b", 3)).asString(), fn::String("a\0b", 3));
    EXPECT_EQ(Value(true).asString(), "true");
    EXPECT_EQ(Value(false).asString(), "false");
    EXPECT_EQ(Value(-12).asString(), "-12");
    EXPECT_EQ(Value(ULLONG_MAX).asString(), "18446744073709551615");
    EXPECT_EQ(Value(1.5).asString(), "1.5");
    EXPECT_EQ(listOf({1, 2}).asString(), "");
    EXPECT_EQ(mapOf({{"a", 1}}).asString(), "");
}

TEST(ValueKind, FollowsWhatItIsBuiltFrom) {
    EXPECT_TRUE(Value().is(Value::NilType));
    EXPECT_TRUE(Value(true).is(Value::BoolType));
    EXPECT_TRUE(Value(1).is(Value::IntegerType));
    EXPECT_TRUE(Value(-1L).is(Value::IntegerType));
    EXPECT_TRUE(Value(1ULL).is(Value::UnsignedType));
    EXPECT_TRUE(Value(1.0F).is(Value::DoubleType));
    EXPECT_TRUE(Value("").is(Value::StringType));
    EXPECT_TRUE(Value(fn::String()).is(Value::StringType));
    EXPECT_TRUE(listOf({}).is(Value::ListType));
    EXPECT_TRUE(mapOf({}).is(Value::MapType));
    EXPECT_FALSE(Value(1).is(Value::MapType));
}

TEST(ValueKind, NumbersOfTheInterface) {
    EXPECT_EQ(static_cast<int>(Value::NilType), 0);
    EXPECT_EQ(static_cast<int>(Value::BoolType), 1);
    EXPECT_EQ(static_cast<int>(Value::IntegerType), 2);
    EXPECT_EQ(static_cast<int>(Value::UnsignedType), 3);
    EXPECT_EQ(static_cast<int>(Value::DoubleType), 4);
    EXPECT_EQ(static_cast<int>(Value::MapType), 7);
}

TEST(ValueNil, IsAConstantThatReadsAsNothing) {
    EXPECT_TRUE(Value::NIL.is(Value::NilType));
    EXPECT_EQ(Value::NIL.asNumber<int>(), 0);
    EXPECT_EQ(Value::NIL.asString(), "");
    EXPECT_THROW(Value::NIL.map(), fn::RangeException);
}

TEST(ValueMap, NilBecomesAMapAndAnythingElseRaises) {
    Value value;
    value.map()["b"] = 1;
    value.map()["a"] = fn::String("x");
    EXPECT_EQ(std::as_const(value).map().size(), 2U);
    EXPECT_EQ(value.map().begin()->first.asString(), "a");
    EXPECT_EQ(value.map()["missing"], Value::NIL);
    Value number(1);
    EXPECT_THROW(number.map(), fn::RangeException);
    EXPECT_THROW(std::as_const(number).map(), fn::RangeException);
    EXPECT_THROW(number.list(), fn::RangeException);
    EXPECT_EQ(number, Value(1));
}

TEST(ValueAssignment, TakesTextsNumbersAndPartsOfItself) {
    Value value(1);
    value = fn::String("text");
    EXPECT_EQ(value.asString(), "text");
    value = 2.5;
    EXPECT_EQ(value.asNumber<double>(), 2.5);
    value = mapOf({{"inner", mapOf({{"leaf", "x"}})}});
    value = value.map()["inner"];
    EXPECT_EQ(value, mapOf({{"leaf", "x"}}));
    value = std::move(value.map()["leaf"]);
    EXPECT_EQ(value, Value("x"));
    const Value& same = value;
    value = same;
    EXPECT_EQ(value, Value("x"));
}

TEST(ValueAssignment, CopiesAreDeepAndMovesLeaveNil) {
    Value value = mapOf({{"list", listOf({1, "two"})}});
    const Value copy = value;
    value.map()["list"].list().clear();
    EXPECT_EQ(copy, mapOf({{"list", listOf({1, "two"})}}));
    Value moved(std::move(value));
    EXPECT_EQ(moved, mapOf({{"list", listOf({})}}));
    EXPECT_TRUE(value.is(Value::NilType));  // NOLINT(bugprone-use-after-move): it is told
    moved.swap(value);
    EXPECT_TRUE(moved.is(Value::NilType));
    value.clear();
    EXPECT_TRUE(value.is(Value::NilType));
}

TEST(ValueOrder, IsByKindAndThenByContent) {
    const std::vector<Value> ascending = {
        Value(),
        false,
        true,
        -1,
        0,
        3,
        1ULL,
        ULLONG_MAX,
        std::nan(""),
        -infinity,
        0.5,
        1.0,
        "",
        "A",
        "a",
        "aa",
        "\xc3\xa4",
        listOf({}),
        listOf({1}),
        listOf({1, 1}),
        listOf({2}),
        mapOf({}),
        mapOf({{"a", 1}}),
        mapOf({{"a", 2}}),
        mapOf({{"b", 1}}),
    };
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t k = 0; k < ascending.size(); ++k) {
            EXPECT_EQ(ascending[i] < ascending[k], i < k) << i << " " << k;
            EXPECT_EQ(ascending[i] == ascending[k], i == k) << i << " " << k;
            EXPECT_EQ(ascending[i] != ascending[k], i != k) << i << " " << k;
        }
    }
}

TEST(ValueOrder, OfDeeplyNestedValuesIsLinear) {
    const auto nest = [](Value value) {
        for (int depth = 0; depth < 100; ++depth) {
            value = depth % 2 == 0 ? listOf({value}) : mapOf({{"a", value}});
        }
        return value;
    };
    EXPECT_EQ(nest(1), nest(1));
    EXPECT_LT(nest(1), nest(2));
}

TEST(ValueOrder, OfTextsIsByteOrderWithNulBytes) {
    EXPECT_LT(Value(fn::String("a\0a", 3)), Value(fn::String("a\0b", 3)));
    EXPECT_LT(Value("\x7f"), Value("\x80"));
}

struct DetailCase {
    const char* name;
    Value value;
    const char* expected;
};

void PrintTo(const DetailCase& test, std::ostream* out) {
    *out << test.expected;
}

const std::vector<DetailCase> detailCases = {
    {"Nil", Value(), "nil"},
    {"Bool", Value(true), "true"},
    {"Integer", Value(-3), "the number -3"},
    {"Double", Value(1.5), "the number 1.5"},
    {"Text", Value("abc"), "the text \"abc\""},
    {"List", listOf({1, 2}), "a list with 2 entries"},
    {"Map", mapOf({{"a", 1}, {"b", 2}, {"c", 3}}), "a map with 3 entries"},
};

class ValueDetail : public testing::TestWithParam<DetailCase> {};

TEST_P(ValueDetail, SaysWhatItIs) {
    EXPECT_EQ(GetParam().value.detailInfo().text(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ValueDetail, testing::ValuesIn(detailCases),
                         [](const auto& test) { return test.param.name; });

TEST(ValueDetail, LongTextIsCutBetweenCodePoints) {
    const fn::String text = std::string(59, 'x') + "\xc3\xa4" + std::string(1000000, 'y');
    EXPECT_EQ(Value(text).detailInfo().text(),
              "a text of 1000061 bytes, \"" + std::string(59, 'x') + "...\"");
}

}  // namespace
