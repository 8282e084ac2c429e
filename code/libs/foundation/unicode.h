// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/export.h"

namespace fn {

/// Questions about single code points. A number that is no code point is nothing of all this.
class FOUNDATION_EXPORT Unicode {
public:
    /// A letter, in any script.
    static bool isAlpha(int codePoint);

    /// White space, the no-break spaces U+00A0, U+2007 and U+202F not among it.
    static bool isBreakingSpace(int codePoint);

    /// The one-to-one case mappings, independent of the locale.
    static int toLower(int codePoint);
    static int toUpper(int codePoint);
};

}  // namespace fn
