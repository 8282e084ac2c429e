// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Text from files, made fit for a terminal. Subtitles and file names come from strangers, and a
// terminal obeys the control characters in what it is sent.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// The text as valid UTF-8 without control characters: those of ASCII become their pictures from
/// U+2400 on, the others (U+0080 to U+009F) and malformed bytes U+FFFD. Line feeds and tabs stay.
std::string visibleText(std::string_view text);

/// The same for what has to stay in one line: line feeds and tabs become pictures too.
std::string visibleLine(std::string_view text);

/// The text as valid UTF-8: malformed bytes become U+FFFD, everything else stays.
std::string validText(std::string_view text);

/// How many columns of a terminal the text takes, which must be valid UTF-8.
std::size_t displayWidth(std::string_view text);

/// The longest start of the text, which must be valid UTF-8, that takes `width` columns at most.
std::string clippedToWidth(std::string text, std::size_t width);

}  // namespace tool
