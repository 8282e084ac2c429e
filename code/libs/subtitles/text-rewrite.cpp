// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The single pass: runs of bytes with which no row begins are copied whole.

#include "subtitles/text-rewrite.h"

namespace subtitles {

/// False where no row's `found` begins with the first two bytes of the text, which begins with a
/// byte of `starts`.
bool Rewriter::mayFit(fn::StringView text) const {
    return alone[static_cast<unsigned char>(text[0])] ||
           (text.size() > 1 && seconds[static_cast<unsigned char>(text[1])]);
}

/// The first row whose `found` the text begins with, or null.
const Rewrite* Rewriter::rowAt(fn::StringView text) const {
    if (!mayFit(text)) {
        return nullptr;
    }
    for (const Rewrite* row = rows; row != rows + count; ++row) {
        if (text.compare(0, row->found.size(), row->found) == 0) {
            return row;
        }
    }
    return nullptr;
}

void Rewriter::append(fn::String& result, fn::StringView text) const {
    std::size_t copied = 0;
    std::size_t position = 0;
    while (position < text.size()) {
        const bool start = starts[static_cast<unsigned char>(text[position])];
        const Rewrite* const row = start ? rowAt(text.substr(position)) : nullptr;
        if (row == nullptr) {
            ++position;
            continue;
        }
        result.append(text.substr(copied, position - copied)).append(row->replacement);
        position += row->found.size();
        copied = position;
    }
    result.append(text.substr(copied));
}

fn::String Rewriter::operator()(fn::StringView text) const {
    fn::String result;
    result.reserve(text.size());
    append(result, text);
    return result;
}

}  // namespace subtitles
