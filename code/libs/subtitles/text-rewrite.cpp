// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The single pass: runs of bytes with which no row begins are copied whole.

#include "subtitles/text-rewrite.h"

namespace subtitles {

namespace {

/// True where the text begins with `found`, whose first byte is known to fit.
bool fits(fn::StringView text, fn::StringView found) {
    if (text.size() < found.size()) {
        return false;
    }
    // Rows are a few bytes long: a call for the comparison would take longer than it does.
    std::size_t equal = 1;
    while (equal < found.size() && text[equal] == found[equal]) {
        ++equal;
    }
    return equal == found.size();
}

}  // namespace

/// False where no row's `found` begins with the first two bytes of the text, which is not empty.
bool Rewriter::mayFit(fn::StringView text) const {
    return alone[static_cast<unsigned char>(text.front())] ||
           (text.size() > 1 && seconds[static_cast<unsigned char>(text[1])]);
}

/// The first row whose `found` the text, which is not empty, begins with; or null.
const Rewrite* Rewriter::rowAt(fn::StringView text) const {
    if (!mayFit(text)) {
        return nullptr;
    }
    for (std::size_t row = firstRow[static_cast<unsigned char>(text.front())]; row != 0;
         row = nextRow[row - 1]) {
        if (fits(text, rows[row - 1].found)) {
            return &rows[row - 1];
        }
    }
    return nullptr;
}

/// The first byte at or behind `position` with which some row begins; the end where there is none.
std::size_t Rewriter::findStart(fn::StringView text, std::size_t position) const {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    while (position < text.size() && firstRow[bytes[position]] == 0) {
        ++position;
    }
    return position;
}

void Rewriter::append(fn::String& result, fn::StringView text) const {
    std::size_t copied = 0;
    std::size_t position = findStart(text, 0);
    while (position < text.size()) {
        if (const Rewrite* const row = rowAt(text.substr(position))) {
            result.append(text.substr(copied, position - copied)).append(row->replacement);
            copied = position + row->found.size();
            position = findStart(text, copied);
        } else {
            position = findStart(text, position + 1);
        }
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
