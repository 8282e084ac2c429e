// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the guides in docs/ show, for the tests that hold them to it.

#pragma once

#include <string>
#include <vector>

namespace subtitles::test {

/// The text of a guide, by its file's name in docs/.
std::string readGuide(const std::string& name);

/// The text between the heading "## TITLE" and the next one.
std::string section(const std::string& guide, const std::string& title);

/// Of each table row whose first cell is code, the cells. Of a cell that begins with code, the code
/// alone; of any other, its text.
std::vector<std::vector<std::string>> codeRows(const std::string& text);

/// The lines of the first fenced block of a language.
std::vector<std::string> fencedLines(const std::string& text, const std::string& language);

}  // namespace subtitles::test
