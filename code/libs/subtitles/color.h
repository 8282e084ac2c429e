// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/string.h"

#include "subtitles/export.h"

namespace subtitles {

/// An opaque colour. Alpha, where a format has it, travels beside the colour.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    /// Takes the colour from a text: an X11 colour name, ASCII case ignored ("gray" is be be be, as
    /// in X11 and unlike the web), or "#" and 3, 6, 9 or 12 hexadecimal digits. No white space is
    /// trimmed.
    ///
    /// Of the longer forms the low byte of each 16-bit channel counts: "#123456789abc" is 34 78 bc.
    /// Returns false, and leaves the colour as it was, where the text is no colour.
    SUBTITLES_EXPORT bool parse(const fn::String& text);

    /// "#" and the channels in upper-case hexadecimal, for logs: a channel below 0x10 has a blank
    /// before its one digit, so that the text does not always read back.
    SUBTITLES_EXPORT fn::String toString() const;
};

inline bool operator==(const Color& a, const Color& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}
inline bool operator!=(const Color& a, const Color& b) {
    return !(a == b);
}

}  // namespace subtitles
