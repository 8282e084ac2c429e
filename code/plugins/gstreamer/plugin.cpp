// SPDX-License-Identifier: LGPL-2.1-or-later

#include <gst/gst.h>

#include "plugins/gstreamer/subtitles-src.h"

#define PACKAGE "subtitles"

namespace {

gboolean initialize(GstPlugin* plugin) {
    return gst_element_register(plugin, "subtitlesrc", GST_RANK_NONE, SUBTITLES_TYPE_SRC);
}

}  // namespace

GST_PLUGIN_DEFINE(GST_VERSION_MAJOR, GST_VERSION_MINOR, subtitles,
                  "Text subtitles from files: SRT, MicroDVD, ASS, SSA and SMI", initialize,
                  SUBTITLES_VERSION, "LGPL", "subtitles", "Unknown package origin")
