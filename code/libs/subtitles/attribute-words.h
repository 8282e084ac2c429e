// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The words that mark-up has for the values of attributes. All are lower case; a word that no row
// holds means 0, for a weight 400.

#pragma once

#include <cstdint>

#include "foundation/string-view.h"

#include "subtitles/text-attributes.h"

namespace subtitles {

struct AttributeWord {
    const char* word;
    std::int32_t value;
};

// clang-format off
inline constexpr AttributeWord fontWeightWords[] = {
    {"ultralight", 200},
    {"light",      300},
    {"normal",     400},
    {"bold",       700},
    {"ultrabold",  800},
    {"heavy",      900},
};

inline constexpr AttributeWord fontSizeWords[] = {
    {"xx-small", -3}, {"xxsmall", -3},
    {"x-small",  -2}, {"xsmall",  -2},
    {"small",    -1},
    {"medium",    0},
    {"large",     1},
    {"x-large",   2}, {"xlarge",   2},
    {"xx-large",  3}, {"xxlarge",  3},
};

inline constexpr AttributeWord fontStyleWords[] = {
    {"oblique", 1},
    {"italic",  2},
};

inline constexpr AttributeWord fontVariantWords[] = {
    {"smallcaps", 1}, {"small-caps", 1},
};

inline constexpr AttributeWord fontStretchWords[] = {
    {"ultracondensed", -4}, {"ultra-condensed", -4},
    {"extracondensed", -3}, {"extra-condensed", -3},
    {"condensed",      -2},
    {"semicondensed",  -1}, {"semi-condensed",  -1},
    {"normal",          0},
    {"semiexpanded",    1}, {"semi-expanded",    1},
    {"expanded",        2},
    {"extraexpanded",   3}, {"extra-expanded",   3},
    {"ultraexpanded",   4}, {"ultra-expanded",   4},
};

inline constexpr AttributeWord gravityWords[] = {
    {"auto",  0},
    {"south", 1},
    {"east",  2},
    {"north", 3},
    {"west",  4},
};

inline constexpr AttributeWord gravityHintWords[] = {
    {"natural", 0},
    {"strong",  1},
    {"line",    2},
};

inline constexpr AttributeWord underlineWords[] = {
    {"none",   0},
    {"single", 1},
    {"double", 2},
    {"low",    3},
    {"error",  4},
};
// clang-format on

/// The value of a word that is in lower case already; `unknown` where no row holds it.
template <std::size_t Count>
constexpr std::int32_t valueOfWord(const AttributeWord (&words)[Count], fn::StringView word,
                                   std::int32_t unknown = 0) {
    for (const AttributeWord& row : words) {
        if (word == row.word) {
            return row.value;
        }
    }
    return unknown;
}

}  // namespace subtitles
