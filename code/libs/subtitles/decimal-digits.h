// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Runs of decimal digits, as the readers of times and frames find them in a line.

#pragma once

#include <charconv>
#include <cstddef>

#include "foundation/string-view.h"

namespace subtitles {

inline bool isDecimalDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// The run of digits at a position; empty where there is none.
inline fn::StringView digitsAt(fn::StringView text, std::size_t position) {
    std::size_t end = position;
    while (end < text.size() && isDecimalDigit(text[end])) {
        ++end;
    }
    return position < text.size() ? text.substr(position, end - position) : fn::StringView();
}

/// The number that a run of digits tells, as the conversions of `fn::String` give it; the fallback
/// where the run is empty or its number does not fit.
template <class Number>
Number decimalNumber(fn::StringView digits, Number fallback) {
    Number number = fallback;
    // What does not fit leaves the number alone.
    std::from_chars(digits.data(), digits.data() + digits.size(), number, 10);
    return number;
}

}  // namespace subtitles
