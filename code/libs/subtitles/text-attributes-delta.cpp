// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/text-attributes-delta.h"

#include "subtitles/text-attributes-fields.h"

namespace subtitles {

TextAttributesDelta::TextAttributesDelta(const TextAttributes& first,
                                         const TextAttributes& second) {
    forEachAttribute([&](TextAttributes::Attribute bit, const char* /*name*/, auto field) {
        const bool inFirst = (first.attributeMask & bit) != 0;
        if ((second.attributeMask & bit) != 0) {
            if (!inFirst || !(first.*field == second.*field)) {
                changed.*field = second.*field;
                changed.attributeMask |= bit;
            }
        } else if (inFirst) {
            removed.*field = first.*field;
            removed.attributeMask |= bit;
        }
    });
}

}  // namespace subtitles
