// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What a player's list of tracks says about a subtitle.

#pragma once

#include <gst/gst.h>
#include <subtitles/subtitle-reference.h>

namespace subtitles::element {

/// The language and the title of the subtitle. The caller owns the list.
GstTagList* makeTags(const SubtitleReference& reference);

/// Puts a text stream with these tags into a stream-start event, of which it takes the reference.
/// The caller owns the event that comes back.
GstEvent* describeStream(GstEvent* streamStart, const SubtitleReference& reference);

}  // namespace subtitles::element
