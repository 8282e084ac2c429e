// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Decoding UTF-8 one sequence at a time, for everything that walks text.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/export.h"
#include "foundation/string-view.h"

namespace fn::utf8 {

/// One decoded sequence. `size` is 0 where the bytes are malformed or the range is empty.
struct Sequence {
    std::uint32_t codePoint = 0;
    std::size_t size = 0;  ///< Bytes.
};

/// The sequence that starts at `begin`; reads nothing from `end` on.
FOUNDATION_EXPORT Sequence decode(const char* begin, const char* end);

/// The start of the first malformed sequence at or behind `begin`, `end` where there is none.
FOUNDATION_EXPORT const char* findMalformed(const char* begin, const char* end);

/// True where the whole text is well-formed.
inline bool isValid(StringView text) {
    return findMalformed(text.data(), text.data() + text.size()) == text.data() + text.size();
}

/// The part of a well-formed text without the white space at its ends, as `String::trim` sees it.
FOUNDATION_EXPORT StringView trimmed(StringView text);

/// How many bytes at the end of the text are the start of a sequence that the text's end cuts off.
/// 0 where the text ends on a whole sequence or in bytes that no sequence begins with.
FOUNDATION_EXPORT std::size_t incompleteTail(StringView text);

/// How many bytes from `begin` are one malformed sequence, as Unicode recommends to replace them:
/// the longest start of a well-formed sequence, at least one byte. The range must not be empty.
FOUNDATION_EXPORT std::size_t malformedSize(const char* begin, const char* end);

/// Appends the code point's sequence to `text`; a surrogate or a number above U+10FFFF becomes
/// U+FFFD.
FOUNDATION_EXPORT void append(std::string& text, std::uint32_t codePoint);

}  // namespace fn::utf8
