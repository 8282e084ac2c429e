// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The states of the second reader of style sheets, each with its name and its 256 entries.

#pragma once

#include <string>
#include <vector>

namespace test {

/// What one byte does in one state.
struct StyleSheetEntry {
    std::string next;
    /// In their order. "As" is followed by the state that does the rest with the same byte.
    std::vector<std::string> actions;
};

struct StyleSheetState {
    std::vector<StyleSheetEntry> entries = std::vector<StyleSheetEntry>(256);
    std::vector<std::string> endActions;
};

/// The state of that name.
const StyleSheetState& styleSheetState(const std::string& name);

/// The names of all states.
std::vector<std::string> styleSheetStates();

}  // namespace test
