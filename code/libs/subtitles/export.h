// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

/// Marks what `libsubtitles` gives out; everything else stays inside the library.
#define SUBTITLES_EXPORT __attribute__((visibility("default")))

/// Marks a member of a class that is given out, which no program can call: it stays inside too.
#define SUBTITLES_INTERNAL __attribute__((visibility("hidden")))
