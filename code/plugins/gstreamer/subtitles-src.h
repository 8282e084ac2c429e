// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The element `subtitlesrc`: a subtitle file as a stream of timed text.

#pragma once

#include <gst/base/gstbasesrc.h>
#include <gst/gst.h>

G_BEGIN_DECLS

#define SUBTITLES_TYPE_SRC (subtitles_src_get_type())
G_DECLARE_FINAL_TYPE(SubtitlesSrc, subtitles_src, SUBTITLES, SRC, GstBaseSrc)

G_END_DECLS
