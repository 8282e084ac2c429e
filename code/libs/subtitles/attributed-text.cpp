// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/attributed-text.h"

namespace subtitles {

AttributedText plainToAttributedText(const fn::String& text) {
    AttributedText result;
    result.push_back({TextAttributes(), text});
    return result;
}

}  // namespace subtitles
