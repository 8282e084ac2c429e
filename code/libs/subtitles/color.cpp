// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From colour text to numbers and back. Names come from the X11 table; "#" forms are widened to
// sixteen bits for each channel, as X11 does it, and the low byte of that is kept.

#include "subtitles/color.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <glib.h>

#include "subtitles/color-table.h"

namespace subtitles {
namespace {

// Four bits for each digit; fails at the first character that is none.
bool hex(const char* digits, std::size_t count, unsigned int* result) {
    *result = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (!g_ascii_isxdigit(digits[i])) {
            return false;
        }
        *result = (*result << 4U) | static_cast<unsigned int>(g_ascii_xdigit_value(digits[i]));
    }
    return true;
}

int compareColorEntries(const void* key, const void* entry) {
    return g_ascii_strcasecmp(static_cast<const char*>(key),
                              colorNames + static_cast<const ColorEntry*>(entry)->name);
}

bool parseName(const char* name, Color* color) {
    const void* const found =
        std::bsearch(name, colorEntries, colorEntryCount, sizeof(ColorEntry), compareColorEntries);
    if (found == nullptr) {
        return false;
    }
    const auto& entry = *static_cast<const ColorEntry*>(found);
    *color = {entry.red, entry.green, entry.blue};
    return true;
}

// Spreads a channel of 1 to 4 digits over sixteen bits by repeating it: "a" is aaaa, "12" is 1212,
// and "123" is 1231. Of these the low byte is the channel, which for three and four digits is not
// the more significant one: files and players have settled on it.
std::uint8_t widen(unsigned int value, std::size_t digits) {
    const std::size_t given = 4 * digits;
    value <<= 16 - given;
    for (std::size_t bits = given; bits < 16; bits *= 2) {
        value |= value >> bits;
    }
    return static_cast<std::uint8_t>(value & 0xFFU);
}

bool parseDigits(const char* text, Color* color) {
    const std::size_t length = std::strlen(text);
    if (length < 3 || length > 12 || length % 3 != 0) {
        return false;
    }
    const std::size_t digits = length / 3;
    unsigned int red = 0;
    unsigned int green = 0;
    unsigned int blue = 0;
    if (!hex(text, digits, &red) || !hex(text + digits, digits, &green) ||
        !hex(text + 2 * digits, digits, &blue)) {
        return false;
    }
    *color = {widen(red, digits), widen(green, digits), widen(blue, digits)};
    return true;
}

}  // namespace

bool Color::parse(const fn::String& text) {
    if (text.empty()) {
        return false;
    }
    return text[0] == '#' ? parseDigits(text.c_str() + 1, this) : parseName(text.c_str(), this);
}

fn::String Color::toString() const {
    return "#" + fn::String::numberHex(red, 2, ' ') + fn::String::numberHex(green, 2, ' ') +
           fn::String::numberHex(blue, 2, ' ');
}

}  // namespace subtitles
