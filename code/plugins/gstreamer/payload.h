// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What a cue looks like on its way to an element that draws it.

#pragma once

#include <foundation/string.h>
#include <subtitles/attributed-text.h>

namespace subtitles::element {

/// Pango markup: bold, italic, underlined, struck through, colours, size and font. The text is
/// escaped, and always valid UTF-8.
fn::String toPangoMarkup(const AttributedText& text);

/// The text alone, always valid UTF-8.
fn::String toPlainText(const AttributedText& text);

}  // namespace subtitles::element
