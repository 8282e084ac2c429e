// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

/// Marks what `libfoundation` gives out; everything else stays inside the library.
#define FOUNDATION_EXPORT __attribute__((visibility("default")))
