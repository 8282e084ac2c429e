// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/string.h"

#include "subtitles/color.h"
#include "subtitles/export.h"

namespace subtitles {

/// How a piece of text looks: twenty attributes, each of which may be set or not.
///
/// An attribute counts only where its bit stands in `attributeMask`; a field whose bit is clear
/// holds a default or a stale value and says nothing. Copies keep every field. The values of the
/// enums are those of the buffer format, which may hold others than the ones named here.
struct TextAttributes {
    /// The bits of `attributeMask`. Bits above GRAVITY_HINT have no meaning.
    enum Attribute : std::uint32_t {
        FONT_DESCRIPTION = 0x1,
        FONT_FAMILY = 0x2,
        FONT_SIZE_RELATIVE = 0x4,
        FONT_SIZE_ABSOLUTE = 0x8,
        FONT_STYLE = 0x10,
        FONT_WEIGHT = 0x20,
        FONT_VARIANT = 0x40,
        FONT_STRETCH = 0x80,
        FOREGROUND_COLOR = 0x100,
        BACKGROUND_COLOR = 0x200,
        UNDERLINE = 0x400,
        UNDERLINE_COLOR = 0x800,
        RISE = 0x1000,
        STRIKE_THROUGH = 0x2000,
        STRIKE_THROUGH_COLOR = 0x4000,
        FALLBACK = 0x8000,
        LANGUAGE = 0x10000,
        LETTER_SPACING = 0x20000,
        GRAVITY = 0x40000,
        GRAVITY_HINT = 0x80000,
    };

    enum FontStyle : std::int32_t {
        FONT_STYLE_NORMAL = 0,
        FONT_STYLE_OBLIQUE = 1,
        FONT_STYLE_ITALIC = 2,
    };

    enum FontWeight : std::int32_t {
        FONT_WEIGHT_THIN = 100,
        FONT_WEIGHT_ULTRALIGHT = 200,
        FONT_WEIGHT_LIGHT = 300,
        FONT_WEIGHT_BOOK = 380,
        FONT_WEIGHT_NORMAL = 400,
        FONT_WEIGHT_MEDIUM = 500,
        FONT_WEIGHT_SEMIBOLD = 600,
        FONT_WEIGHT_BOLD = 700,
        FONT_WEIGHT_ULTRABOLD = 800,
        FONT_WEIGHT_HEAVY = 900,
        FONT_WEIGHT_ULTRAHEAVY = 1000,
    };

    enum FontVariant : std::int32_t {
        FONT_VARIANT_NORMAL = 0,
        FONT_VARIANT_SMALL_CAPS = 1,
    };

    enum FontStretch : std::int32_t {
        FONT_STRETCH_ULTRA_CONDENSED = -4,
        FONT_STRETCH_EXTRA_CONDENSED = -3,
        FONT_STRETCH_CONDENSED = -2,
        FONT_STRETCH_SEMI_CONDENSED = -1,
        FONT_STRETCH_NORMAL = 0,
        FONT_STRETCH_SEMI_EXPANDED = 1,
        FONT_STRETCH_EXPANDED = 2,
        FONT_STRETCH_EXTRA_EXPANDED = 3,
        FONT_STRETCH_ULTRA_EXPANDED = 4,
    };

    enum Underline : std::int32_t {
        UNDERLINE_NONE = 0,
        UNDERLINE_SINGLE = 1,
        UNDERLINE_DOUBLE = 2,
        UNDERLINE_LOW = 3,
        UNDERLINE_ERROR = 4,
    };

    enum Gravity : std::int32_t {
        GRAVITY_AUTO = 0,
        GRAVITY_SOUTH = 1,
        GRAVITY_EAST = 2,
        GRAVITY_NORTH = 3,
        GRAVITY_WEST = 4,
    };

    enum GravityHint : std::int32_t {
        GRAVITY_HINT_NATURAL = 0,
        GRAVITY_HINT_STRONG = 1,
        GRAVITY_HINT_LINE = 2,
    };

    fn::String fontDescription;
    fn::String fontFamily;
    /// The step of a word, from -3 (xx-small) to 3 (xx-large). Tags, "larger" and "smaller" count
    /// the other way: `<big>` is -1.
    std::int32_t fontSizeRelative = 0;
    std::int32_t fontSizeAbsolute = 0;  ///< The number that the markup gave, in its unit.
    FontStyle fontStyle = FONT_STYLE_NORMAL;
    FontWeight fontWeight = FONT_WEIGHT_NORMAL;
    FontVariant fontVariant = FONT_VARIANT_NORMAL;
    FontStretch fontStretch = FONT_STRETCH_NORMAL;
    Color foregroundColor;
    Color backgroundColor;
    Underline underline = UNDERLINE_NONE;
    Color underlineColor;
    std::int32_t rise = 0;  ///< The number that the markup gave; up where it is positive.
    bool strikeThrough = false;
    Color strikeThroughColor;
    bool fallback = true;            ///< Whether another font may stand in for missing letters.
    fn::String language;             ///< As the markup has it, such as "ko".
    std::int32_t letterSpacing = 0;  ///< The number that the markup gave.
    Gravity gravity = GRAVITY_AUTO;
    GravityHint gravityHint = GRAVITY_HINT_NATURAL;
    std::uint32_t attributeMask = 0;  ///< The `Attribute` bits of what is set.

    /// The nearest of the eleven weights, from 100 to 1000.
    SUBTITLES_EXPORT static FontWeight fontWeightFromInt(int weight);

    /// Values of words, in any case and without trimming. An unknown word gives 0, the normal
    /// value. None of these sets a bit.
    SUBTITLES_EXPORT static std::int32_t fontSizeFromString(const fn::String& word);
    SUBTITLES_EXPORT static FontStyle fontStyleFromString(const fn::String& word);
    SUBTITLES_EXPORT static FontVariant fontVariantFromString(const fn::String& word);
    SUBTITLES_EXPORT static FontStretch fontStretchFromString(const fn::String& word);
    SUBTITLES_EXPORT static Gravity gravityFromString(const fn::String& word);
    SUBTITLES_EXPORT static GravityHint gravityHintFromString(const fn::String& word);
    SUBTITLES_EXPORT static Underline underlineFromString(const fn::String& word);
    /// The same, except that anything that is no weight's name is read as a number and goes through
    /// `fontWeightFromInt`; what is no number either gives 400.
    SUBTITLES_EXPORT static FontWeight fontWeightFromString(const fn::String& word);

    /// Lays `other` over this record: what is set there is set here, with the value from there.
    ///
    /// LETTER_SPACING goes with GRAVITY: where `other` has GRAVITY, both values are copied and both
    /// bits set, whether it has LETTER_SPACING or not; without GRAVITY its LETTER_SPACING is not
    /// looked at.
    SUBTITLES_EXPORT void applyTextAttributes(const TextAttributes& other);

    /// What is set, for logs: "FONT_WEIGHT: 700, RISE: 2"; empty where nothing is. The entry
    /// BACKGROUND_COLOR prints the foreground colour.
    SUBTITLES_EXPORT fn::String toString() const;
};

}  // namespace subtitles
