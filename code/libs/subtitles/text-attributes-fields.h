// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The twenty attributes as a list: what treats each alike walks it instead of naming twenty fields.

#pragma once

#include <cstdint>

#include "subtitles/text-attributes.h"

namespace subtitles {

/// All bits that mean something.
constexpr std::uint32_t allAttributes = 0xFFFFF;

/// Calls `visit(bit, name of the bit, pointer to the field)` in the order of the mask's bits.
template <class Visit>
constexpr void forEachAttribute(Visit&& visit) {
    using T = TextAttributes;
    // clang-format off
    visit(T::FONT_DESCRIPTION,     "FONT_DESCRIPTION",     &T::fontDescription);
    visit(T::FONT_FAMILY,          "FONT_FAMILY",          &T::fontFamily);
    visit(T::FONT_SIZE_RELATIVE,   "FONT_SIZE_RELATIVE",   &T::fontSizeRelative);
    visit(T::FONT_SIZE_ABSOLUTE,   "FONT_SIZE_ABSOLUTE",   &T::fontSizeAbsolute);
    visit(T::FONT_STYLE,           "FONT_STYLE",           &T::fontStyle);
    visit(T::FONT_WEIGHT,          "FONT_WEIGHT",          &T::fontWeight);
    visit(T::FONT_VARIANT,         "FONT_VARIANT",         &T::fontVariant);
    visit(T::FONT_STRETCH,         "FONT_STRETCH",         &T::fontStretch);
    visit(T::FOREGROUND_COLOR,     "FOREGROUND_COLOR",     &T::foregroundColor);
    visit(T::BACKGROUND_COLOR,     "BACKGROUND_COLOR",     &T::backgroundColor);
    visit(T::UNDERLINE,            "UNDERLINE",            &T::underline);
    visit(T::UNDERLINE_COLOR,      "UNDERLINE_COLOR",      &T::underlineColor);
    visit(T::RISE,                 "RISE",                 &T::rise);
    visit(T::STRIKE_THROUGH,       "STRIKE_THROUGH",       &T::strikeThrough);
    visit(T::STRIKE_THROUGH_COLOR, "STRIKE_THROUGH_COLOR", &T::strikeThroughColor);
    visit(T::FALLBACK,             "FALLBACK",             &T::fallback);
    visit(T::LANGUAGE,             "LANGUAGE",             &T::language);
    visit(T::LETTER_SPACING,       "LETTER_SPACING",       &T::letterSpacing);
    visit(T::GRAVITY,              "GRAVITY",              &T::gravity);
    visit(T::GRAVITY_HINT,         "GRAVITY_HINT",         &T::gravityHint);
    // clang-format on
}

}  // namespace subtitles
