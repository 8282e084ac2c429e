// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Single bytes of ASCII, the same in every locale. Other bytes are none of all this, and stay.

#pragma once

namespace fn::ascii {

constexpr bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// A blank, or one of the five control characters from the tab to the carriage return.
constexpr bool isSpace(char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

constexpr char toLower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

constexpr char toUpper(char byte) {
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

}  // namespace fn::ascii
