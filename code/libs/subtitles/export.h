// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

/// Marks what `libsubtitles` gives out; everything else stays inside the library.
#define SUBTITLES_EXPORT __attribute__((visibility("default")))
