// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/string.h"

#include "subtitles/style-sheet.h"

namespace subtitles {

/// What `StyleSheet::parse` does, with its risks: for texts that the caller trusts.
void parseStyleSheet(StyleSheet& sheet, const fn::String& text);

/// What style sheets from anywhere have cost and may cost, counted in steps: a byte that is read is
/// one, an action with its log message sixteen, a value 640, since it is kept, and a copied segment
/// of a selector four, and as many for each name in it. A step takes a nanosecond or a few.
struct StyleSheetEffort {
    std::uint64_t spent = 0;
    /// 64 for each byte of the texts. They come on top of what sheets of usual sizes need,
    /// however dense they are, which a document of many style elements gets once.
    std::uint64_t allowed = 1U << 24U;
};

/// The same for texts from anywhere: it always ends, in linear time and memory. It stops
///
/// - where the machine would repeat itself, that is, where it would read a second time from the
///   same place as a bare list. That is exactly the case in which `parseStyleSheet` never ends;
/// - where it has worked too much: more than 64 steps for each byte of the text, or more than
///   200,000 segments or 256 MiB of names held in selectors.
///
/// What was committed by then stands. Every other text is read as `parseStyleSheet` reads it.
/// Several texts of one document share an `effort`.
void parseStyleSheetGuarded(StyleSheet& sheet, const fn::String& text, StyleSheetEffort& effort);
void parseStyleSheetGuarded(StyleSheet& sheet, const fn::String& text);

}  // namespace subtitles
