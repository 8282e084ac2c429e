// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SRT's inline mark-up as its definition says it: eleven alternatives, all tried side by side. Slow
// and obvious; the table of the library is held against it.

#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "subtitles/attributed-text.h"
#include "subtitles/subtitle-parser-table.h"

namespace srt_reference {

using subtitles::srt::Action;

/// Where a reader can be: an alternative, and the part of it that comes next. Behind its last part
/// an alternative is done, and any may follow. The start is a place in alternative `none`.
using Place = std::pair<std::size_t, std::size_t>;
using Places = std::set<Place>;

/// The only place before the first byte.
Places startPlaces();

/// Where the reader can be behind a byte, and what is done at it: in the order of the actions'
/// numbers, with the byte appended last. No places: the text is at fault.
struct Move {
    Places places;
    std::vector<Action> actions;
    bool isText = false;  ///< The byte has been read as text.
};
Move move(const Places& places, char byte);

/// The runs of a text up to its first NUL, and that NUL.
subtitles::AttributedText parse(const std::string& text);

}  // namespace srt_reference
