// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Everything that the library gives out.

#pragma once

// IWYU pragma: begin_exports
#include "subtitles/ass-exporter.h"
#include "subtitles/ass-parser.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/attributed-text.h"
#include "subtitles/charset-detector.h"
#include "subtitles/color.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/language.h"
#include "subtitles/pango-markup.h"
#include "subtitles/style-sheet.h"
#include "subtitles/subtitle-data.h"
#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-loader.h"
#include "subtitles/subtitle-reference.h"
#include "subtitles/subtitle-types.h"
#include "subtitles/text-attributes-delta.h"
#include "subtitles/text-attributes.h"
#include "subtitles/webvtt-exporter.h"
// IWYU pragma: end_exports
