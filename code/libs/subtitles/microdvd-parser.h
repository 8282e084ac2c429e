// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <optional>

#include "foundation/auto-ptr.h"
#include "foundation/regular-expression.h"
#include "foundation/string.h"

#include "subtitles/subtitle-data.h"

namespace subtitles {

namespace microdvd {

/// One entry: the start frame, the end frame, which may be left out, and the text.
extern const fn::RegularExpression pattern;

/// What the groups of `pattern` hold. The views are of the line.
struct Entry {
    fn::StringView start;  ///< Decimal digits, at least one.
    fn::StringView end;    ///< Decimal digits, empty where the entry names no end.
    fn::StringView text;   ///< Without the blanks before it.
};

/// The first match of `pattern` in a line, which holds no line feed: the answers of the expression,
/// in linear time. Raises `fn::UTF8Exception` on a malformed line, be it an entry or not.
std::optional<Entry> findEntry(fn::StringView line);

/// Makes the text of an entry SRT mark-up: the control codes for italic, underline and bold become
/// tags, "|" a line feed, and all other codes go. `markup` is replaced. The text must be valid
/// UTF-8.
void rewriteCodes(fn::StringView text, fn::String& markup);

}  // namespace microdvd

/// Reads MicroDVD text: a stream of attributed text, never null, whose times are video frames. The
/// buffers stand in file order and are not sanitized.
///
/// `maxEntries` is the greatest number of buffers, -1 for all. Lines that are no entry are passed
/// over; at the first line that is malformed UTF-8 the reading ends with what there is.
fn::AutoPtr<SubtitleData> parseMicroDVD(fn::String text, int maxEntries);

}  // namespace subtitles
