// SPDX-License-Identifier: LGPL-2.1-or-later

#include "visible-text.h"

#include <glib.h>

namespace tool {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

/// The size of the well-formed sequence at the front of the text, which starts with a byte above
/// 0x7F; 0 where it is malformed.
std::size_t sequenceSize(std::string_view text) {
    const gunichar codePoint =
        g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    if (codePoint == static_cast<gunichar>(-1) || codePoint == static_cast<gunichar>(-2)) {
        return 0;
    }
    return static_cast<std::size_t>(g_unichar_to_utf8(codePoint, nullptr));
}

/// The control characters of U+0080 to U+009F: some terminals take them for escape sequences.
bool isHighControl(std::string_view sequence) {
    return sequence.size() == 2 && sequence[0] == '\xC2' &&
           static_cast<unsigned char>(sequence[1]) < 0xA0;
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '\x7F';
}

/// U+2400 and the following picture the control characters of ASCII, U+2421 pictures delete.
void appendPicture(std::string& result, char control) {
    const int picture = control == '\x7F' ? 0x21 : control;
    result.append("\xE2\x90").push_back(static_cast<char>(0x80 + picture));
}

template <class Keep>
std::string cleaned(std::string_view text, bool keepHighControls, Keep keep) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        std::size_t size = 1;
        if (const char c = text.front(); static_cast<unsigned char>(c) < 0x80) {
            keep(c) ? result.push_back(c) : appendPicture(result, c);
        } else if (size = sequenceSize(text);
                   size == 0 || (!keepHighControls && isHighControl(text.substr(0, size)))) {
            result.append(replacement);
            size = size == 0 ? 1 : size;
        } else {
            result.append(text, 0, size);
        }
        text.remove_prefix(size);
    }
    return result;
}

std::size_t columnsOf(gunichar codePoint) {
    if (g_unichar_iszerowidth(codePoint) != 0) {
        return 0;
    }
    return g_unichar_iswide(codePoint) != 0 ? 2 : 1;
}

}  // namespace

std::string visibleText(std::string_view text) {
    return cleaned(text, false, [](char c) { return !isControl(c) || c == '\n' || c == '\t'; });
}

std::string visibleLine(std::string_view text) {
    return cleaned(text, false, [](char c) { return !isControl(c); });
}

std::string validText(std::string_view text) {
    return cleaned(text, true, [](char) { return true; });
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    const char* const end = text.data() + text.size();
    for (const char* at = text.data(); at < end; at = g_utf8_next_char(at)) {
        width += columnsOf(g_utf8_get_char(at));
    }
    return width;
}

std::string clippedToWidth(std::string text, std::size_t width) {
    const char* const end = text.data() + text.size();
    const char* at = text.data();
    for (; at < end; at = g_utf8_next_char(at)) {
        const std::size_t columns = columnsOf(g_utf8_get_char(at));
        if (columns > width) {
            break;
        }
        width -= columns;
    }
    text.resize(static_cast<std::size_t>(at - text.data()));
    return text;
}

}  // namespace tool
