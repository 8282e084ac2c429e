// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SRT texts to measure with: what films' files look like, in any size.

#pragma once

#include <array>
#include <cstddef>
#include <string>

#include <fmt/format.h>

#include "foundation/string.h"

namespace srt_texts {

/// Bytes of a file that are read.
constexpr std::size_t limit = 8388608;

using Cues = std::array<const char*, 6>;

constexpr Cues plain = {
    "Where have you been all this time?",
    "I told you.\nThe train was late again.",
    "- No.\n- Yes, it was.",
    "You could have called from the station, you know that.",
    "The telephone was out of order. Everything there\nis out of order since the winter.",
    "And then?",
};

constexpr Cues tagged = {
    "<i>Where have you been all this time?</i>",
    "I told you.\n<b>The train</b> was late again.",
    "<font color=\"#ffff00\">- No.</font>\n<font color=\"#00ffff\">- Yes, it was.</font>",
    "{an8}You could have called from the <u>station</u>, you know that.",
    "<i>The telephone was out of order.</i> Everything there\n<i>is out of order</i> since.",
    "<b><i>And then?</i></b>",
};

// The same in Russian and in Korean: nearly all bytes are of longer sequences.
constexpr Cues cyrillic = {
    "\u0413\u0434\u0435 \u0442\u044b \u0431\u044b\u043b\u0430 \u0432\u0441\u0451 "
    "\u044d\u0442\u043e "
    "\u0432\u0440\u0435\u043c\u044f?",
    "\u042f \u0436\u0435 "
    "\u0433\u043e\u0432\u043e\u0440\u0438\u043b.\n\u041f\u043e\u0435\u0437\u0434 "
    "\u043e\u043f\u043e\u0437\u0434\u0430\u043b.",
    "- \u041d\u0435\u0442.\n- \u0414\u0430.",
    "\u0422\u044b \u043c\u043e\u0433 \u043f\u043e\u0437\u0432\u043e\u043d\u0438\u0442\u044c \u0441 "
    "\u0432\u043e\u043a\u0437\u0430\u043b\u0430.",
    "\u0422\u0435\u043b\u0435\u0444\u043e\u043d \u043d\u0435 "
    "\u0440\u0430\u0431\u043e\u0442\u0430\u043b."
    "\n\u0422\u0430\u043c \u043d\u0438\u0447\u0435\u0433\u043e \u043d\u0435 "
    "\u0440\u0430\u0431\u043e\u0442\u0430\u0435\u0442.",
    "\u0418 \u043f\u043e\u0442\u043e\u043c?",
};

constexpr Cues korean = {
    "\uadf8\ub3d9\uc548 \uc5b4\ub514 \uc788\uc5c8\uc5b4\uc694?",
    "\ub9d0\ud588\uc796\uc544\uc694.\n\uae30\ucc28\uac00 \ub610 \ub2a6\uc5c8\uc5b4\uc694.",
    "- \uc544\ub2c8\uc694.\n- \ub9de\uc544\uc694.",
    "\uc5ed\uc5d0\uc11c \uc804\ud654\ud560 \uc218 \uc788\uc5c8\uc796\uc544\uc694.",
    "\uc804\ud654\uac00 \uace0\uc7a5\uc774\uc5c8\uc5b4\uc694.\n\uac70\uae34 \ub2e4 "
    "\uace0\uc7a5\uc774\uc5d0\uc694.",
    "\uadf8\ub798\uc11c\uc694?",
};

inline std::string timeText(std::size_t milliseconds) {
    return fmt::format("{:02}:{:02}:{:02},{:03}", milliseconds / 3600000, milliseconds / 60000 % 60,
                       milliseconds / 1000 % 60, milliseconds % 1000);
}

/// Whole cues, two seconds each, up to `size` bytes.
inline fn::String file(const Cues& cues, std::size_t size) {
    std::string text;
    for (std::size_t i = 0;; ++i) {
        const std::string cue = fmt::format("{}\n{} --> {}\n{}\n\n", i + 1, timeText(i * 2500),
                                            timeText(i * 2500 + 2000), cues[i % cues.size()]);
        if (text.size() + cue.size() > size) {
            return text;
        }
        text += cue;
    }
}

/// One piece after another, up to `size` bytes.
inline fn::String repeated(const std::string& piece, std::size_t size) {
    fn::String text;
    text.reserve(size);
    while (text.size() + piece.size() <= size) {
        text += piece;
    }
    return text;
}

}  // namespace srt_texts
