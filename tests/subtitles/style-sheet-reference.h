// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A second reader of style sheets, slow and obvious: every state has a name and a row of 256
// entries, every action is a word, every record is copied. It shares nothing with the library's
// reader but the records, so that the two can be compared.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "subtitles/style-sheet.h"

namespace test {

struct StyleSheetReading {
    subtitles::StyleSheet sheet;
    std::vector<std::string> log;  ///< "5 beginRuleSet", with the priority in front.
    /// The text has no end: a rule set was to be read as a bare list a second time. Sheet and log
    /// are as they were then.
    bool endless = false;
    /// Which byte was read in which state, step by step.
    std::vector<std::pair<std::string, unsigned char>> steps;
    /// Where the reader stands, in the reader's own words. With `readStyleSheetPart` it is where
    /// the next byte goes.
    std::string state;
};

StyleSheetReading readStyleSheet(const std::string& text);

/// Reads the bytes of the text, but neither its NUL nor its end.
StyleSheetReading readStyleSheetPart(const std::string& text);

}  // namespace test
