// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/unicode.h"

#include <glib.h>

namespace fn {

namespace {

bool isCodePoint(int codePoint) {
    return codePoint >= 0 && codePoint <= 0x10FFFF;
}

}  // namespace

bool Unicode::isAlpha(int codePoint) {
    return isCodePoint(codePoint) && g_unichar_isalpha(static_cast<gunichar>(codePoint)) != FALSE;
}

// The code points with the property White_Space, without the three that join what they stand
// between. GLib's own test leaves out U+000B and U+0085, and has no list without the three.
bool Unicode::isBreakingSpace(int codePoint) {
    switch (codePoint) {
        case 0x20:
        case 0x85:
        case 0x1680:
        case 0x2028:
        case 0x2029:
        case 0x205F:
        case 0x3000: return true;
        default: break;
    }
    return (codePoint >= 0x09 && codePoint <= 0x0D) ||
           (codePoint >= 0x2000 && codePoint <= 0x200A && codePoint != 0x2007);
}

int Unicode::toLower(int codePoint) {
    return isCodePoint(codePoint)
               ? static_cast<int>(g_unichar_tolower(static_cast<gunichar>(codePoint)))
               : codePoint;
}

int Unicode::toUpper(int codePoint) {
    return isCodePoint(codePoint)
               ? static_cast<int>(g_unichar_toupper(static_cast<gunichar>(codePoint)))
               : codePoint;
}

}  // namespace fn
