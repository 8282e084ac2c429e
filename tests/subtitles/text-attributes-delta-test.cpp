// SPDX-License-Identifier: LGPL-2.1-or-later
//
// One behaviour has no test here: two bools that hold 1 and 2 as bytes are equal by their truth
// value, but to make such a bool is undefined behaviour. The buffer reader turns any byte into a
// proper bool, so that none comes from outside either.

#include "subtitles/text-attributes-delta.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "subtitles/text-attributes-fields.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

TextAttributes weight(std::int32_t value) {
    TextAttributes attributes;
    attributes.fontWeight = static_cast<TextAttributes::FontWeight>(value);
    attributes.attributeMask = TextAttributes::FONT_WEIGHT;
    return attributes;
}

TEST(TextAttributesDelta, DefaultRecordsDoNotDiffer) {
    EXPECT_EQ(describe(TextAttributesDelta({}, {})), "changed() removed()");
}

TEST(TextAttributesDelta, AnotherValueIsAChange) {
    EXPECT_EQ(describe(TextAttributesDelta(weight(700), weight(400))),
              "changed(weight=400) removed()");
}

TEST(TextAttributesDelta, WhatIsNewIsAChange) {
    EXPECT_EQ(describe(TextAttributesDelta({}, weight(400))), "changed(weight=400) removed()");
}

TEST(TextAttributesDelta, WhatGoesIsRemovedWithItsOldValue) {
    EXPECT_EQ(describe(TextAttributesDelta(weight(700), {})), "changed() removed(weight=700)");
}

TEST(TextAttributesDelta, TheSameValueIsInNeither) {
    EXPECT_EQ(describe(TextAttributesDelta(weight(700), weight(700))), "changed() removed()");
}

TEST(TextAttributesDelta, FieldsThatAreNotSetAreNotLookedAt) {
    TextAttributes first;
    TextAttributes second;
    first.fontStretch = TextAttributes::FONT_STRETCH_CONDENSED;
    second.fontFamily = "Serif";
    EXPECT_EQ(describe(TextAttributesDelta(first, second)), "changed() removed()");
}

TEST(TextAttributesDelta, BitsWithoutMeaningAreInNeither) {
    TextAttributes first;
    TextAttributes second;
    first.attributeMask = 0xF00000;
    second.attributeMask = 0xFF000000;
    EXPECT_EQ(describe(TextAttributesDelta(first, second)), "changed() removed()");
}

void alter(fn::String& value) {
    value += "x";
}
void alter(bool& value) {
    value = !value;
}
void alter(Color& value) {
    value.blue ^= 0xFFU;
}
template <class Number>
void alter(Number& value) {
    value = static_cast<Number>(value ^ 1);
}

// A record with this one bit, and the field's default or another value.
template <class Field>
TextAttributes only(TextAttributes::Attribute bit, Field field, bool altered) {
    TextAttributes attributes;
    attributes.attributeMask = bit;
    if (altered) {
        alter(attributes.*field);
    }
    return attributes;
}

TEST(TextAttributesDelta, TreatsAllAttributesAlike) {
    forEachAttribute([](TextAttributes::Attribute bit, const char* name, auto field) {
        const TextAttributes plain = only(bit, field, false);
        const TextAttributes other = only(bit, field, true);
        const std::string value = describe(other);
        EXPECT_EQ(describe(TextAttributesDelta(plain, other)), "changed(" + value + ") removed()")
            << name;
        EXPECT_EQ(describe(TextAttributesDelta({}, other)), "changed(" + value + ") removed()");
        EXPECT_EQ(describe(TextAttributesDelta(other, {})), "changed() removed(" + value + ")");
        EXPECT_EQ(describe(TextAttributesDelta(other, other)), "changed() removed()");
    });
}

TEST(TextAttributesDelta, EachChannelOfAColorCounts) {
    TextAttributes first;
    first.attributeMask = TextAttributes::FOREGROUND_COLOR;
    for (std::uint8_t Color::*const channel : {&Color::red, &Color::green, &Color::blue}) {
        TextAttributes second = first;
        second.foregroundColor.*channel = 9;
        EXPECT_EQ(TextAttributesDelta(first, second).changed.attributeMask,
                  TextAttributes::FOREGROUND_COLOR);
    }
}

TEST(TextAttributesDelta, ChangedAndRemovedSideBySide) {
    TextAttributes first = weight(700);
    first.rise = 3;
    first.language = "ko";
    first.attributeMask |= TextAttributes::RISE | TextAttributes::LANGUAGE;
    TextAttributes second = weight(300);
    second.language = "ko";
    second.gravity = TextAttributes::GRAVITY_WEST;
    second.attributeMask |= TextAttributes::LANGUAGE | TextAttributes::GRAVITY;
    EXPECT_EQ(describe(TextAttributesDelta(first, second)),
              "changed(weight=300 gravity=4) removed(rise=3)");
}

}  // namespace
}  // namespace subtitles
