// SPDX-License-Identifier: LGPL-2.1-or-later
//
// That a query is remembered until the next change cannot be seen from outside, so what is tested
// is that queries in a row agree and that every change shows.

#include "subtitles/text-attributes-stack.h"

#include <cstdint>
#include <list>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/text-attributes-fields.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

constexpr int weightBit = TextAttributes::FONT_WEIGHT;
constexpr int styleBit = TextAttributes::FONT_STYLE;
constexpr int spacingBit = TextAttributes::LETTER_SPACING;
constexpr int gravityBit = TextAttributes::GRAVITY;

TextAttributes weight(int value) {
    TextAttributes attributes;
    attributes.fontWeight = static_cast<TextAttributes::FontWeight>(value);
    attributes.attributeMask = TextAttributes::FONT_WEIGHT;
    return attributes;
}

TextAttributes italic() {
    TextAttributes attributes;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.attributeMask = TextAttributes::FONT_STYLE;
    return attributes;
}

TextAttributes gravity(int value, int letterSpacing, int mask) {
    TextAttributes attributes;
    attributes.gravity = static_cast<TextAttributes::Gravity>(value);
    attributes.letterSpacing = letterSpacing;
    attributes.attributeMask = static_cast<std::uint32_t>(mask);
    return attributes;
}

TextAttributes family(const char* name) {
    TextAttributes attributes;
    attributes.fontFamily = name;
    attributes.attributeMask = TextAttributes::FONT_FAMILY;
    return attributes;
}

std::string now(const TextAttributesStack& stack) {
    return describe(stack.cummulativeAttributes());
}

std::string allFields(const TextAttributesStack& stack) {
    return describeFields(stack.cummulativeAttributes());
}

const std::string defaults = describeFields(TextAttributes());

TEST(TextAttributesStack, EmptyGivesADefaultRecord) {
    EXPECT_EQ(allFields(TextAttributesStack()), defaults);
}

TEST(TextAttributesStack, NewestWinsAndRemovingTakesAll) {
    TextAttributesStack stack;
    stack.pushAttributes(weight(700));
    stack.pushAttributes(weight(400));
    EXPECT_EQ(now(stack), "weight=400");
    stack.removeAttributes(weightBit);
    EXPECT_EQ(allFields(stack), defaults);
    stack.popAttributes();
    stack.pushAttributes(italic());
    EXPECT_EQ(now(stack), "style=2");
}

// Both entries are gone after the first removal, so that one pop empties the stack.
TEST(TextAttributesStack, RemovingDropsEmptyEntriesFromTheTop) {
    TextAttributesStack stack;
    stack.pushAttributes(italic());
    stack.pushAttributes(weight(700));
    stack.pushAttributes(weight(400));
    stack.removeAttributes(weightBit);
    EXPECT_EQ(now(stack), "style=2");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "");
}

// The emptied entry stays below, and a pop takes the one above it.
TEST(TextAttributesStack, EmptyEntryFurtherInStays) {
    TextAttributesStack stack;
    stack.pushAttributes(weight(700));
    stack.pushAttributes(italic());
    stack.removeAttributes(weightBit);
    EXPECT_EQ(now(stack), "style=2");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "");
    stack.pushAttributes(italic());
    stack.popAttributes();  // Takes the new one: the emptied entry is still there, and no more.
    EXPECT_EQ(now(stack), "");
}

TEST(TextAttributesStack, EmptyEntryGoesOnceNothingIsAboveIt) {
    TextAttributesStack stack;
    stack.pushAttributes(family("Serif"));
    stack.pushAttributes(weight(700));
    stack.pushAttributes(italic());
    stack.removeAttributes(weightBit);
    stack.removeAttributes(styleBit);
    EXPECT_EQ(now(stack), "family='Serif'");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "");
}

TEST(TextAttributesStack, PopTakesTheNewestEntryAlsoWhereItIsEmpty) {
    TextAttributesStack stack;
    stack.pushAttributes(weight(700));
    stack.pushAttributes(TextAttributes());
    EXPECT_EQ(now(stack), "weight=700");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "weight=700");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "");
}

TEST(TextAttributesStack, PopBringsTheOlderValueBack) {
    TextAttributesStack stack;
    stack.pushAttributes(weight(700));
    stack.pushAttributes(weight(400));
    stack.popAttributes();
    EXPECT_EQ(now(stack), "weight=700");
}

TEST(TextAttributesStack, PopOfAnEmptyStackDoesNothing) {
    TextAttributesStack stack;
    stack.popAttributes();
    EXPECT_EQ(allFields(stack), defaults);
    stack.popAttributes();
    EXPECT_EQ(allFields(stack), defaults);
    stack.pushAttributes(weight(700));
    EXPECT_EQ(now(stack), "weight=700");
}

TEST(TextAttributesStack, RemovingNothingDropsEmptyEntriesFromTheTop) {
    TextAttributesStack stack;
    stack.pushAttributes(weight(700));
    stack.pushAttributes(TextAttributes());
    stack.pushAttributes(TextAttributes());
    stack.removeAttributes(0);
    EXPECT_EQ(now(stack), "weight=700");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "");
}

TEST(TextAttributesStack, QueriesInARowAgree) {
    TextAttributesStack stack;
    stack.pushAttributes(weight(700));
    stack.pushAttributes(family("Serif"));
    const std::string first = allFields(stack);
    EXPECT_EQ(allFields(stack), first);
    stack.removeAttributes(0);
    EXPECT_EQ(allFields(stack), first);
}

TEST(TextAttributesStack, SeveralAttributesGoAtOnce) {
    TextAttributesStack stack;
    TextAttributes both = weight(700);
    both.applyTextAttributes(italic());
    stack.pushAttributes(both);
    stack.pushAttributes(family("Serif"));
    stack.removeAttributes(weightBit | styleBit);
    EXPECT_EQ(now(stack), "family='Serif'");
    stack.removeAttributes(-1);
    EXPECT_EQ(allFields(stack), defaults);
}

TEST(TextAttributesStack, BitsWithoutMeaningKeepAnEntry) {
    TextAttributesStack stack;
    TextAttributes odd = weight(700);
    odd.attributeMask |= 0x80000000;
    stack.pushAttributes(italic());
    stack.pushAttributes(odd);
    stack.removeAttributes(-1);
    EXPECT_EQ(allFields(stack), defaults);
    stack.pushAttributes(italic());
    stack.popAttributes();
    stack.popAttributes();  // The odd entry.
    EXPECT_EQ(now(stack), "");
}

TEST(TextAttributesStack, LetterSpacingAloneDoesNotCount) {
    TextAttributesStack stack;
    stack.pushAttributes(gravity(0, 9, spacingBit));
    EXPECT_EQ(allFields(stack), defaults);
}

TEST(TextAttributesStack, GravityBringsItsRecordsLetterSpacing) {
    TextAttributesStack stack;
    stack.pushAttributes(gravity(2, 9, gravityBit));
    EXPECT_EQ(now(stack), "spacing=9 gravity=2");
    stack.pushAttributes(gravity(0, 5, spacingBit));
    EXPECT_EQ(now(stack), "spacing=9 gravity=2");
    stack.pushAttributes(gravity(3, 1, gravityBit | spacingBit));
    EXPECT_EQ(now(stack), "spacing=1 gravity=3");
    // The bit goes; the field stays as it is, and gravity carries it on.
    stack.removeAttributes(spacingBit);
    EXPECT_EQ(now(stack), "spacing=1 gravity=3");
    stack.popAttributes();
    EXPECT_EQ(now(stack), "spacing=9 gravity=2");
    stack.removeAttributes(gravityBit);
    EXPECT_EQ(allFields(stack), defaults);
}

TEST(TextAttributesStack, CopiesGoTheirOwnWays) {
    TextAttributesStack stack;
    stack.pushAttributes(family("Serif"));
    TextAttributesStack copy = stack;
    copy.pushAttributes(family("Sans"));
    stack.popAttributes();
    EXPECT_EQ(now(stack), "");
    EXPECT_EQ(now(copy), "family='Sans'");
}

// The same in the obvious way: a list of records, laid over each other at every query.
class ListOfRecords {
public:
    void pushAttributes(const TextAttributes& attributes) { entries.push_back(attributes); }
    void popAttributes() {
        if (!entries.empty()) {
            entries.pop_back();
        }
    }
    void removeAttributes(int mask) {
        for (TextAttributes& entry : entries) {
            entry.attributeMask &= ~(static_cast<std::uint32_t>(mask) & allAttributes);
        }
        while (!entries.empty() && entries.back().attributeMask == 0) {
            entries.pop_back();
        }
    }
    TextAttributes cummulativeAttributes() const {
        TextAttributes result;
        for (const TextAttributes& entry : entries) {
            result.applyTextAttributes(entry);
        }
        return result;
    }

private:
    std::list<TextAttributes> entries;
};

class Random {
public:
    explicit Random(unsigned int seed) : engine(seed) {}

    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(engine()) % limit;
    }

    // A few bits, now and then one that means nothing.
    std::uint32_t mask() {
        std::uint32_t mask = 0;
        for (std::uint32_t count = below(4); count > 0; --count) {
            mask |= 1U << below(21);
        }
        return mask;
    }

    TextAttributes record() {
        TextAttributes record;
        forEachAttribute([this, &record](TextAttributes::Attribute, const char*, auto field) {
            fill(&(record.*field));
        });
        record.attributeMask = mask();
        return record;
    }

private:
    void fill(fn::String* value) { *value = fn::String::number(static_cast<int>(below(1000))); }
    void fill(bool* value) { *value = below(2) != 0; }
    void fill(Color* value) {
        *value = {static_cast<std::uint8_t>(below(256)), static_cast<std::uint8_t>(below(256)),
                  static_cast<std::uint8_t>(below(256))};
    }
    template <class Number>
    void fill(Number* value) {
        *value = static_cast<Number>(static_cast<std::int32_t>(engine()));
    }

    std::mt19937 engine;
};

template <class Stack>
void change(Stack& stack, std::uint32_t operation, const TextAttributes& record, int mask) {
    if (operation < 5) {
        stack.pushAttributes(record);
    } else if (operation < 7) {
        stack.popAttributes();
    } else {
        stack.removeAttributes(mask);
    }
}

TEST(TextAttributesStack, AgreesWithAListOfRecords) {
    for (unsigned int seed = 0; seed < 200; ++seed) {
        Random random(seed);
        TextAttributesStack stack;
        ListOfRecords list;
        for (int step = 0; step < 100; ++step) {
            const std::uint32_t operation = random.below(10);
            const TextAttributes record = random.record();
            const int mask = static_cast<int>(random.mask());
            change(stack, operation, record, mask);
            change(list, operation, record, mask);
            if (random.below(3) != 0) {
                ASSERT_EQ(allFields(stack), describeFields(list.cummulativeAttributes()))
                    << "seed " << seed << ", step " << step;
            }
        }
    }
}

constexpr int deep = 1000000;

TEST(TextAttributesStack, MillionEntriesWithAQueryAfterEach) {
    TextAttributesStack stack;
    for (int i = 0; i < deep; ++i) {
        stack.pushAttributes(i % 2 == 0 ? italic() : weight(i));
        ASSERT_EQ(stack.cummulativeAttributes().attributeMask,
                  static_cast<std::uint32_t>(i == 0 ? styleBit : styleBit | weightBit));
    }
    EXPECT_EQ(now(stack), "style=2 weight=999999");
    for (int i = 0; i < deep; ++i) {
        stack.popAttributes();
        ASSERT_EQ((stack.cummulativeAttributes().attributeMask & styleBit) != 0, i < deep - 1);
    }
    EXPECT_EQ(allFields(stack), defaults);
}

TEST(TextAttributesStack, MillionEntriesAndAMillionRemovalsOfAnotherAttribute) {
    TextAttributesStack stack;
    for (int i = 0; i < deep; ++i) {
        stack.pushAttributes(italic());
    }
    for (int i = 0; i < deep; ++i) {
        stack.removeAttributes(weightBit);
        ASSERT_EQ(stack.cummulativeAttributes().attributeMask, std::uint32_t{styleBit});
    }
    stack.removeAttributes(styleBit);
    EXPECT_EQ(allFields(stack), defaults);
}

TEST(TextAttributesStack, RemovalUnderAMillionEntriesAgainAndAgain) {
    TextAttributesStack stack;
    for (int i = 0; i < deep; ++i) {
        stack.pushAttributes(italic());
    }
    for (int i = 0; i < deep; ++i) {
        stack.pushAttributes(weight(i));
        stack.removeAttributes(weightBit);
        ASSERT_EQ(stack.cummulativeAttributes().attributeMask, std::uint32_t{styleBit});
    }
}

}  // namespace
}  // namespace subtitles
