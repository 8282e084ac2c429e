// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <memory>

#include "foundation/auto-ptr.h"
#include "foundation/string.h"

#include "subtitles/attributed-text.h"
#include "subtitles/buffer-blocks.h"
#include "subtitles/gst-buffer-ptr.h"

namespace subtitles {

/// The styled text of a cue with SRT's inline mark-up: `<b>`, `<i>`, `<u>` and
/// `<font color="value">`. Other tags and position codes ("{an8}") are dropped.
///
/// Never fails: at a fault (any other "{", a tag that the text's end cuts off) it ends, and what
/// came before stands. The text is taken up to its first NUL or its end, and that NUL goes into the
/// result as its last byte, in a run of its own where the text ends in a tag. So there is no run
/// only where the fault comes before any text. Takes linear time, and may run on any thread.
AttributedText parseSRTFormatting(const fn::String& text);

namespace srt {

class Markup;

/// The same. `parseSRTFormatting` is its name for readers of other formats.
AttributedText parseFormatting(const fn::String& text);

/// Makes the buffers of cues, one after the other. What memory it needs for one it keeps for the
/// next.
class CueFormatter {
public:
    CueFormatter();
    CueFormatter(const CueFormatter&) = delete;
    CueFormatter& operator=(const CueFormatter&) = delete;
    ~CueFormatter();

    /// `attributedTextToBuffer` of `parseFormatting`. Null where there is no run.
    fn::AutoPtr<_GstBuffer> toBuffer(const fn::String& text);

private:
    BufferBlocks blocks;
    AttributedText runs;
    std::unique_ptr<Markup> markup;
};

}  // namespace srt

}  // namespace subtitles
