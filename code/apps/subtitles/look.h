// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Styled text as a terminal, a pipe and a script see it.

#pragma once

#include <optional>
#include <string>

#include "subtitles/attributed-text.h"
#include "subtitles/color.h"
#include "subtitles/text-attributes.h"

#include "console.h"
#include "json-document.h"

namespace tool {

/// What a terminal can show of a run's attributes.
struct Look {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikeThrough = false;
    std::optional<subtitles::Color> color;
    std::optional<subtitles::Color> background;
};

Look lookOf(const subtitles::TextAttributes& attributes);

/// The text of all runs.
std::string plainText(const subtitles::AttributedText& text);

/// The text for a terminal, free of control characters but for the ones that `style` asks for.
/// Every line stands for itself: styles end with the line and begin again on the next.
std::string terminalText(const subtitles::AttributedText& text, TextStyle style);

/// The runs as an array of objects, all with the same keys.
Json runsToJson(const subtitles::AttributedText& text);

}  // namespace tool
