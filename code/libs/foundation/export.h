// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

/// Marks what `libfoundation` gives out; everything else stays inside the library.
#define FOUNDATION_EXPORT __attribute__((visibility("default")))

/// Marks a member of a class that is given out, which no program can call: it stays inside too.
#define FOUNDATION_INTERNAL __attribute__((visibility("hidden")))
