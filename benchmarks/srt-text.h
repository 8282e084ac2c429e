// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace bench {

/// The text of an SRT file as films have it, of `size` bytes at least and one cue more at most:
/// cues of one or two lines, one in five with mark-up, in a language with accents, two seconds
/// apart.
inline std::string srtText(std::size_t size) {
    constexpr const char* lines[] = {
        "The last train left an hour ago.",
        "O\xC3\xB9 \xC3\xA9tais-tu hier soir ?\nOn t'a cherch\xC3\xA9 pr\xC3\xA8s du pont.",
        "I crossed the bridge and went\nto the market behind the church.",
        "<i>Il s'est tromp\xC3\xA9, \xC3\xA9videmment.</i>",
        "- No.\n- We'll wait here until the morning.",
    };
    std::string text;
    text.reserve(size + 256);
    for (unsigned i = 0; text.size() < size; ++i) {
        const unsigned start = 2 * i;
        char head[96];
        std::snprintf(head, sizeof head, "%u\n%02u:%02u:%02u,040 --> %02u:%02u:%02u,960\n", i + 1,
                      start / 3600, start / 60 % 60, start % 60, start / 3600, start / 60 % 60,
                      start % 60 + 1);
        text.append(head).append(lines[i % 5]).append("\n\n");
    }
    return text;
}

}  // namespace bench
