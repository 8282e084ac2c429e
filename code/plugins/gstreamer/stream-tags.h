// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What a player's list of tracks says about a subtitle.

#pragma once

#include <gst/gst.h>
#include <subtitles/subtitle-reference.h>

namespace subtitles::element {

/// The language and the title of the subtitle. The caller owns the list.
GstTagList* makeTags(const SubtitleReference& reference);

/// The stream-start event of the pad in place of another one, which it takes: with a text stream
/// that has these tags, and an identity that stays the same from one run to the next. The caller
/// owns the event that comes back.
GstEvent* describeStream(GstEvent* streamStart, GstPad* pad, const SubtitleReference& reference);

}  // namespace subtitles::element
