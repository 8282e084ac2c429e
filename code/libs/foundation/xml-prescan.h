// SPDX-License-Identifier: LGPL-2.1-or-later
//
// One look over an XML text before libxml2 parses it, for what libxml2 must not see.

#pragma once

#include <cstddef>

#include "foundation/string-view.h"

namespace fn::xml {

/// Where the first thing stands that the parser must not see; the text's size where there is none.
/// The text has a defect there, or is taken to have one:
///
/// - a NUL, which the parser takes for the end;
/// - a comment with two hyphens in it, or a section without an end: the parser may tell of a long
///   comment's every hyphen, with a copy of the comment;
/// - a tag with more attributes than anybody writes: the parser compares each with all others.
std::size_t findUnreadable(StringView text);

}  // namespace fn::xml
