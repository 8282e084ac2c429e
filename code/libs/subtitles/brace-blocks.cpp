// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Removes blocks in braces, which MicroDVD and ASS both use for control codes.
//
// The expression tells what a block is, but on opening braces that nothing closes it reads to the
// end of the text from each of them. One look ahead for the closing brace is the same: where one
// opening brace has none behind it, no later one has.

#include "subtitles/brace-blocks.h"

#include "foundation/utf8.h"

namespace subtitles {

const fn::RegularExpression braceBlock("\\{[^\\}]*\\}", fn::RegularExpression::UTF8);

namespace {

fn::String withoutBlocks(const fn::String& text, std::size_t open) {
    fn::String result;
    result.reserve(text.size());
    std::size_t copied = 0;
    while (open != fn::String::npos) {
        const std::size_t close = text.find('}', open);
        if (close == fn::String::npos) {
            break;
        }
        result.append(text, copied, open - copied);
        copied = close + 1;
        open = text.find('{', copied);
    }
    result.append(text, copied, fn::String::npos);
    return result;
}

}  // namespace

fn::String withoutBraceBlocks(fn::String text) {
    if (!fn::utf8::isValid(fn::to_string_view(text))) {
        // The expression refuses such a text in its own words.
        braceBlock.subst(text, 0, fn::String(), fn::RegularExpression::Global);
        return text;
    }
    const std::size_t open = text.find('{');
    return open == fn::String::npos ? text : withoutBlocks(text, open);
}

}  // namespace subtitles
