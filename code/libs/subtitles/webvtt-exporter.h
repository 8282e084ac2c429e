// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/string.h"

#include "subtitles/attributed-text.h"
#include "subtitles/export.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// Writes attributed text as the text of a WebVTT cue. The cue's times and the rest of the file are
/// the caller's. It holds nothing: one exporter serves any number of threads. Its operations fail
/// on no text.
class SUBTITLES_EXPORT WebVTTExporter {
public:
    /// The tags between two runs, from the records of their `TextAttributesDelta`: bold, italic and
    /// underline, and nothing else. Any change of weight opens bold, 400 included. Tags are not
    /// nested or balanced.
    fn::String encodeAttributes(const TextAttributes& changed, const TextAttributes& removed) const;

    /// The text of one run. "&", "<", the direction marks and the no-break space are escaped, ">"
    /// is not, and every line begins with "&lrm;", so that it starts from left to right. A NUL
    /// stays, also the one with which the readers end a cue.
    fn::String processRunText(const fn::String& text) const;

    /// The whole text behind a line feed, which ends the line of the cue's times; empty where there
    /// is no run. Nothing closes the tags of the last run.
    fn::String attributedTextToString(const AttributedText& text) const;
};

}  // namespace subtitles
