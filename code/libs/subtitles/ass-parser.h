// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/string.h"

#include "subtitles/attributed-text.h"
#include "subtitles/export.h"

namespace subtitles {

/// Reads events of streams of type "application/x-ass". It holds nothing: one object serves any
/// number of threads.
class SUBTITLES_EXPORT ASSParser {
public:
    /// The text of one event: of its nine fields, the last.
    ///
    /// Known are line ends, the no-break space and the codes for bold, italic and underline, each
    /// of them only as a block of its own: "{\i1\u1}" has no effect. Bold is opened by a weight
    /// from 500 to 800 and by nothing else, "{\b1}" included. All other blocks are dropped, and
    /// what is left is read as SRT mark-up, so the last run's text ends with a NUL.
    ///
    /// An event of fewer fields has no runs, and neither has a drawing, which is every event with
    /// "\p1" in its text. Raises `fn::UTF8Exception` where the text is malformed.
    AttributedText parseEntry(const fn::String& entry) const;
};

}  // namespace subtitles
