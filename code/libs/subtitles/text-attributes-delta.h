// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "subtitles/export.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// How to get from one record to another. No bit is in both masks; attributes that both records set
/// to the same value, and those that neither sets, are in none.
struct TextAttributesDelta {
    SUBTITLES_EXPORT TextAttributesDelta(const TextAttributes& first, const TextAttributes& second);

    TextAttributes changed;  ///< What `second` sets anew or to another value; values of `second`.
    TextAttributes removed;  ///< What only `first` sets; values of `first`.
};

}  // namespace subtitles
