// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The elements of an SMI document. A document is mostly tags, so a name is told by its length
// first: comparing each with every word took a tenth of the time of a whole document.

#pragma once

#include "foundation/string-view.h"

namespace subtitles::smi {

/// The elements that mean something. All others are passed over, and their text flows on.
enum class Element { Style, Sync, Paragraph, Break, Bold, Italic, Underline, StrikeThrough, Other };

/// The element of a name, which is to be in lower case.
inline Element elementOf(fn::StringView name) {
    switch (name.size()) {
        case 1:
            switch (name.front()) {
                case 'p': return Element::Paragraph;
                case 'b': return Element::Bold;
                case 'i': return Element::Italic;
                case 'u': return Element::Underline;
                case 's': return Element::StrikeThrough;
                default: return Element::Other;
            }
        case 2: return name == "br" ? Element::Break : Element::Other;
        case 4: return name == "sync" ? Element::Sync : Element::Other;
        case 5: return name == "style" ? Element::Style : Element::Other;
        default: return Element::Other;
    }
}

/// The one attribute of an element that counts; empty where none does.
inline fn::StringView attributeOf(Element element) {
    switch (element) {
        case Element::Paragraph: return "class";
        case Element::Sync: return "start";
        default: return {};
    }
}

}  // namespace subtitles::smi
