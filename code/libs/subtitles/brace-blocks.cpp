// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Removes blocks in braces, which MicroDVD and ASS both use for control codes.
//
// The expression tells what a block is, but on opening braces that nothing closes it reads to the
// end of the text from each of them. One look ahead for the closing brace is the same: where one
// opening brace has none behind it, no later one has.

#include "subtitles/brace-blocks.h"

#include <algorithm>
#include <cstddef>

#include "foundation/utf8.h"

namespace subtitles {

const fn::RegularExpression braceBlock("\\{[^\\}]*\\}", fn::RegularExpression::UTF8);

void removeBraceBlocks(fn::String& text) {
    if (!fn::utf8::isValid(fn::to_string_view(text))) {
        // The expression refuses such a text in its own words.
        braceBlock.subst(text, 0, fn::String(), fn::RegularExpression::Global);
        return;
    }
    std::size_t open = text.find('{');
    std::size_t close = text.find('}', open);
    if (close == fn::String::npos) {
        return;
    }
    // What stays behind a block, up to the next one or the end, moves up to what stayed before it.
    auto kept = text.begin() + static_cast<std::ptrdiff_t>(open);
    while (close != fn::String::npos) {
        const auto stays = text.begin() + static_cast<std::ptrdiff_t>(close + 1);
        open = text.find('{', close);
        close = text.find('}', open);
        const std::size_t end = close == fn::String::npos ? text.size() : open;
        kept = std::copy(stays, text.begin() + static_cast<std::ptrdiff_t>(end), kept);
    }
    text.erase(kept, text.end());
}

}  // namespace subtitles
