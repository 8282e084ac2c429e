// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/auto-ptr.h"
#include "foundation/string.h"

#include "subtitles/subtitle-data.h"

namespace subtitles {

/// Reads the text of an SRT file, in UTF-8. Never null; the caller holds the only reference.
///
/// The buffers hold attributed text, are timed in nanoseconds and stand in file order, neither
/// sorted nor sanitized. What is no cue is passed over, and a text without cues gives no buffers. A
/// cue's line that is not valid UTF-8 is replaced by a notice. Raises `fn::UTF8Exception` where a
/// line with "-->" between cues is not valid UTF-8. Takes linear time, and may run on any thread.
fn::AutoPtr<SubtitleData> parseSRT(const fn::String& text);

}  // namespace subtitles
