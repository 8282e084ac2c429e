// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Short ways to make the model's records in tables of cases.

#pragma once

#include <vector>

#include "subtitles/attributed-text.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// A record in which `mask` is set and `field` has the value.
template <class Field, class Value>
TextAttributes only(TextAttributes::Attribute mask, Field TextAttributes::*field,
                    const Value& value) {
    TextAttributes attributes;
    attributes.attributeMask = mask;
    attributes.*field = value;
    return attributes;
}

inline TextAttributes weight(int value) {
    return only(TextAttributes::FONT_WEIGHT, &TextAttributes::fontWeight,
                static_cast<TextAttributes::FontWeight>(value));
}

inline TextAttributes style(TextAttributes::FontStyle value) {
    return only(TextAttributes::FONT_STYLE, &TextAttributes::fontStyle, value);
}

inline TextAttributes underline(TextAttributes::Underline value) {
    return only(TextAttributes::UNDERLINE, &TextAttributes::underline, value);
}

inline TextAttributes foreground(const Color& value) {
    return only(TextAttributes::FOREGROUND_COLOR, &TextAttributes::foregroundColor, value);
}

inline AttributedText textOf(const std::vector<AttributedText::Run>& runs) {
    AttributedText text;
    for (const AttributedText::Run& run : runs) {
        text.push_back(run);
    }
    return text;
}

}  // namespace subtitles
