// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Runs of decimal digits, as the readers of times and frames find them in a line.

#pragma once

#include <charconv>
#include <cstddef>
#include <limits>

#include "foundation/ascii.h"
#include "foundation/string-view.h"

namespace subtitles {

/// The run of digits at a position; empty where there is none.
inline fn::StringView digitsAt(fn::StringView text, std::size_t position) {
    std::size_t end = position;
    while (end < text.size() && fn::ascii::isDigit(text[end])) {
        ++end;
    }
    return position < text.size() ? text.substr(position, end - position) : fn::StringView();
}

/// The number that a run of digits tells, as the conversions of `fn::String` give it; the fallback
/// where the run is empty or its number does not fit.
template <class Number>
Number decimalNumber(fn::StringView digits, Number fallback) {
    // So many digits fit into any of the types, as those of all real files do.
    constexpr std::size_t fitting = 9;
    static_assert(std::numeric_limits<Number>::digits10 >= fitting);
    Number number = fallback;
    if (!digits.empty() && digits.size() <= fitting) {
        number = 0;
        for (const char digit : digits) {
            number = number * 10 + static_cast<Number>(digit - '0');
        }
        return number;
    }
    // What does not fit leaves the number alone.
    std::from_chars(digits.data(), digits.data() + digits.size(), number, 10);
    return number;
}

}  // namespace subtitles
