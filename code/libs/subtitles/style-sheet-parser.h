// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/string.h"

#include "subtitles/style-sheet.h"

namespace subtitles {

/// What `StyleSheet::parse` does, with its risks: for texts that the caller trusts.
void parseStyleSheet(StyleSheet& sheet, const fn::String& text);

/// The same for texts from anywhere: it always ends, in linear time and memory. It stops
///
/// - where the machine would repeat itself, that is, where it would read a second time from the
///   same place as a bare list. That is exactly the case in which `parseStyleSheet` never ends;
/// - where it has worked too much: more than 64 steps for each byte of the text, or more than
///   200,000 segments held in selectors.
///
/// What was committed by then stands. Every other text is read as `parseStyleSheet` reads it.
void parseStyleSheetGuarded(StyleSheet& sheet, const fn::String& text);

}  // namespace subtitles
