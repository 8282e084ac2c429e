// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/text-attributes.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/text-attributes-fields.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

using Convert = int (*)(const fn::String& word);

template <auto convert>
int number(const fn::String& word) {
    return convert(word);
}

constexpr Convert weight = number<TextAttributes::fontWeightFromString>;
constexpr Convert size = number<TextAttributes::fontSizeFromString>;
constexpr Convert style = number<TextAttributes::fontStyleFromString>;
constexpr Convert variant = number<TextAttributes::fontVariantFromString>;
constexpr Convert stretch = number<TextAttributes::fontStretchFromString>;
constexpr Convert gravity = number<TextAttributes::gravityFromString>;
constexpr Convert hint = number<TextAttributes::gravityHintFromString>;
constexpr Convert underline = number<TextAttributes::underlineFromString>;

struct Word {
    Convert convert;
    const char* word;
    int expected;
};

// clang-format off
constexpr Word words[] = {
    {weight, "ultralight", 200}, {weight, "light", 300}, {weight, "normal", 400},
    {weight, "bold", 700}, {weight, "ultrabold", 800}, {weight, "heavy", 900},
    {weight, "BOLD", 700}, {weight, "Heavy", 900}, {weight, "", 400}, {weight, "bogus", 400},
    {weight, "550", 600}, {weight, "1", 100}, {weight, "1000", 1000}, {weight, "949", 900},
    {weight, "380", 380}, {weight, "340", 380}, {weight, "339", 300}, {weight, "-5", 100},
    {weight, "0", 100}, {weight, " bold", 400}, {weight, "bold ", 400},
    {weight, "99999999999999999999", 400},

    {size, "xx-small", -3}, {size, "xxsmall", -3}, {size, "x-small", -2}, {size, "xsmall", -2},
    {size, "small", -1}, {size, "medium", 0}, {size, "large", 1}, {size, "x-large", 2},
    {size, "xlarge", 2}, {size, "xx-large", 3}, {size, "xxlarge", 3},
    {size, "XX-Large", 3}, {size, "huge", 0}, {size, "", 0}, {size, "smaller", 0}, {size, "2", 0},

    {style, "normal", 0}, {style, "oblique", 1}, {style, "italic", 2},
    {style, "slanted", 0}, {style, "ITALIC", 2}, {style, " italic", 0}, {style, "", 0},

    {variant, "normal", 0}, {variant, "smallcaps", 1}, {variant, "small-caps", 1},
    {variant, "Small-Caps", 1}, {variant, "small caps", 0}, {variant, "", 0},

    {stretch, "ultracondensed", -4}, {stretch, "ultra-condensed", -4},
    {stretch, "extracondensed", -3}, {stretch, "extra-condensed", -3},
    {stretch, "condensed", -2},
    {stretch, "semicondensed", -1}, {stretch, "semi-condensed", -1},
    {stretch, "normal", 0},
    {stretch, "semiexpanded", 1}, {stretch, "semi-expanded", 1}, {stretch, "SEMIEXPANDED", 1},
    {stretch, "expanded", 2},
    {stretch, "extraexpanded", 3}, {stretch, "extra-expanded", 3},
    {stretch, "ultraexpanded", 4}, {stretch, "ultra-expanded", 4},
    {stretch, "wide", 0}, {stretch, "", 0},

    {gravity, "auto", 0}, {gravity, "south", 1}, {gravity, "east", 2}, {gravity, "north", 3},
    {gravity, "west", 4}, {gravity, "West", 4}, {gravity, "up", 0}, {gravity, "", 0},

    {hint, "natural", 0}, {hint, "strong", 1}, {hint, "line", 2},
    {hint, "STRONG", 1}, {hint, "weak", 0}, {hint, "", 0},

    {underline, "none", 0}, {underline, "single", 1}, {underline, "double", 2},
    {underline, "low", 3}, {underline, "error", 4},
    {underline, "Error", 4}, {underline, "squiggly", 0}, {underline, "", 0},
};
// clang-format on

TEST(AttributeWords, EveryWordHasItsValue) {
    for (const Word& row : words) {
        EXPECT_EQ(row.convert(row.word), row.expected) << "'" << row.word << "'";
    }
}

// What no table holds is no failure, malformed text included.
TEST(AttributeWords, MalformedWordsAreUnknown) {
    EXPECT_EQ(style("ital\xFFic"), 0);
    EXPECT_EQ(weight("\xC3"), 400);
}

TEST(AttributeWords, CaseIsThatOfUnicode) {
    EXPECT_EQ(hint("LINE"), 2);
    EXPECT_EQ(style("OBL\xC4\xB0QUE"), 1);  // The small letter of a dotted capital I is i.
}

struct Step {
    int from;
    int to;
    int expected;
};

constexpr Step steps[] = {
    {INT_MIN, 149, 100}, {150, 249, 200}, {250, 339, 300},      {340, 389, 380},
    {390, 449, 400},     {450, 549, 500}, {550, 649, 600},      {650, 749, 700},
    {750, 849, 800},     {850, 949, 900}, {950, INT_MAX, 1000},
};

TEST(FontWeight, SnapsToElevenSteps) {
    for (const Step& step : steps) {
        EXPECT_EQ(TextAttributes::fontWeightFromInt(step.from), step.expected) << step.from;
        EXPECT_EQ(TextAttributes::fontWeightFromInt(step.to), step.expected) << step.to;
    }
    EXPECT_EQ(TextAttributes::fontWeightFromInt(-1), 100);
    EXPECT_EQ(TextAttributes::fontWeightFromInt(0), 100);
}

// A record in which every field differs from the default; `mask` tells what is set.
TextAttributes filled(std::uint32_t mask) {
    TextAttributes a;
    a.fontDescription = "Sans 12";
    a.fontFamily = "Serif";
    a.fontSizeRelative = -2;
    a.fontSizeAbsolute = 24;
    a.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    a.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    a.fontVariant = TextAttributes::FONT_VARIANT_SMALL_CAPS;
    a.fontStretch = TextAttributes::FONT_STRETCH_CONDENSED;
    a.foregroundColor = {0xFF, 0, 0};
    a.backgroundColor = {0, 0xFF, 0};
    a.underline = TextAttributes::UNDERLINE_DOUBLE;
    a.underlineColor = {0, 0, 0xFF};
    a.rise = -7;
    a.strikeThrough = true;
    a.strikeThroughColor = {1, 2, 3};
    a.fallback = false;
    a.language = "ko";
    a.letterSpacing = 5;
    a.gravity = TextAttributes::GRAVITY_EAST;
    a.gravityHint = TextAttributes::GRAVITY_HINT_LINE;
    a.attributeMask = mask;
    return a;
}

TEST(TextAttributes, DefaultSetsNothing) {
    EXPECT_EQ(describeFields(TextAttributes()),
              "description='' family='' size=0 points=0 style=0 weight=400 variant=0 stretch=0 "
              "color=000000 background=000000 underline=0 underlineColor=000000 rise=0 strike=0 "
              "strikeColor=000000 fallback=1 language='' spacing=0 gravity=0 gravityHint=0 mask=0");
}

TEST(TextAttributes, CopiesKeepEveryFieldAndTheMask) {
    TextAttributes original = filled(0x80000005);
    const TextAttributes copy(original);
    TextAttributes assigned;
    assigned = original;
    original = TextAttributes();
    EXPECT_EQ(describeFields(copy), describeFields(filled(0x80000005)));
    EXPECT_EQ(describeFields(assigned), describeFields(filled(0x80000005)));
}

struct Case {
    const char* name;
    std::uint32_t mine;
    std::uint32_t other;
    const char* expected;
};

constexpr Case applied[] = {
    {"NothingOverNothing", 0, 0, ""},
    {"NothingKeepsWhatIsThere", TextAttributes::FONT_WEIGHT, 0, "weight=400"},
    {"SetsWhatIsSetThere", 0, TextAttributes::FONT_WEIGHT, "weight=700"},
    {"OtherBitsStay", TextAttributes::FONT_STYLE, TextAttributes::RISE, "style=0 rise=-7"},
    {"LetterSpacingAloneChangesNothing", 0, TextAttributes::LETTER_SPACING, ""},
    {"LetterSpacingAloneKeepsMine", TextAttributes::LETTER_SPACING, TextAttributes::LETTER_SPACING,
     "spacing=0"},
    {"GravityBringsLetterSpacing", 0, TextAttributes::GRAVITY, "spacing=5 gravity=2"},
    {"GravityWithLetterSpacing", 0, TextAttributes::GRAVITY | TextAttributes::LETTER_SPACING,
     "spacing=5 gravity=2"},
    {"GravityHintStandsAlone", 0, TextAttributes::GRAVITY_HINT, "gravityHint=2"},
    {"BitsWithoutMeaningAreNotTaken", 0, 0xFFF00000, ""},
    {"BitsWithoutMeaningStay", 0x80000000, TextAttributes::RISE, "rise=-7 unknown=80000000"},
    {"Everything", 0, allAttributes,
     "description='Sans 12' family='Serif' size=-2 points=24 style=2 weight=700 variant=1 "
     "stretch=-2 color=ff0000 background=00ff00 underline=2 underlineColor=0000ff rise=-7 strike=1 "
     "strikeColor=010203 fallback=0 language='ko' spacing=5 gravity=2 gravityHint=2"},
};

class ApplyTextAttributes : public testing::TestWithParam<Case> {};

TEST_P(ApplyTextAttributes, LaysOneRecordOverAnother) {
    TextAttributes mine;
    mine.attributeMask = GetParam().mine;
    mine.applyTextAttributes(filled(GetParam().other));
    EXPECT_EQ(describe(mine), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ApplyTextAttributes, testing::ValuesIn(applied),
                         [](const auto& test) { return test.param.name; });

TEST(TextAttributes, ApplyingTakesNoFieldWhoseBitIsClear) {
    forEachAttribute([](TextAttributes::Attribute bit, const char* name, auto field) {
        TextAttributes mine;
        mine.applyTextAttributes(filled(allAttributes & ~bit));
        const bool comesWithGravity = bit == TextAttributes::LETTER_SPACING;
        EXPECT_EQ(mine.*field == TextAttributes().*field, !comesWithGravity) << name;
    });
}

TEST(TextAttributes, ApplyingARecordToItself) {
    TextAttributes mine = filled(allAttributes);
    mine.applyTextAttributes(mine);
    EXPECT_EQ(describeFields(mine), describeFields(filled(allAttributes)));
}

struct Printed {
    std::uint32_t mask;
    const char* expected;
};

constexpr Printed printed[] = {
    {0, ""},
    {0x1, "FONT_DESCRIPTION: Sans 12"},
    {0x2, "FONT_FAMILY: Serif"},
    {0x4, "FONT_SIZE_RELATIVE: -2"},
    {0x8, "FONT_SIZE_ABSOLUTE: 24"},
    {0x10, "FONT_STYLE: 2"},
    {0x20, "FONT_WEIGHT: 700"},
    {0x40, "FONT_VARIANT: 1"},
    {0x80, "FONT_STRETCH: -2"},
    {0x100, "FOREGROUND_COLOR: #FF 0 0"},
    // The foreground's value, whether that is set or not.
    {0x200, "BACKGROUND_COLOR: #FF 0 0"},
    {0x400, "UNDERLINE: 2"},
    {0x800, "UNDERLINE_COLOR: # 0 0FF"},
    {0x1000, "RISE: -7"},
    {0x2000, "STRIKE_THROUGH: 1"},
    {0x4000, "STRIKE_THROUGH_COLOR: # 1 2 3"},
    {0x8000, "FALLBACK: 0"},
    {0x10000, "LANGUAGE: ko"},
    {0x20000, "LETTER_SPACING: 5"},
    {0x40000, "GRAVITY: 2"},
    {0x80000, "GRAVITY_HINT: 2"},
    {0xFFF00000, ""},
    {0x300, "FOREGROUND_COLOR: #FF 0 0, BACKGROUND_COLOR: #FF 0 0"},
    {0x81001, "FONT_DESCRIPTION: Sans 12, RISE: -7, GRAVITY_HINT: 2"},
};

TEST(TextAttributes, PrintsWhatIsSetInTheOrderOfTheBits) {
    for (const Printed& row : printed) {
        EXPECT_EQ(filled(row.mask).toString(), row.expected) << std::hex << row.mask;
    }
}

// An empty value prints nothing, and so the next entry follows a separator all the same.
TEST(TextAttributes, EmptyTextsPrintAsNothing) {
    TextAttributes attributes;
    attributes.attributeMask = TextAttributes::FONT_FAMILY | TextAttributes::LANGUAGE;
    EXPECT_EQ(attributes.toString(), "FONT_FAMILY: , LANGUAGE: ");
}

}  // namespace
}  // namespace subtitles
