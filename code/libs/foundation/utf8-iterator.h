// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/export.h"

namespace fn {

/// Walks the code points of a UTF-8 text that somebody else owns.
///
/// The constructor, `update` and `operator++` raise `fn::UTF8Exception` on a malformed sequence.
class FOUNDATION_EXPORT UTF8Iterator {
public:
    /// `position` lies in the range; at its end nothing is decoded.
    UTF8Iterator(const char* position, const char* rangeStart, const char* rangeEnd);

    /// Decodes the code point at the position into the cached field. At the end of the range that
    /// is 0.
    void update() const;

    UTF8Iterator& operator++();

    std::uint32_t operator*() const {
        update();
        return decoded;
    }

    /// Where the iterator stands.
    const char* position() const { return current; }

    /// Compares the positions. Iterators over different ranges raise `std::logic_error`.
    bool operator==(const UTF8Iterator& other) const;
    bool operator!=(const UTF8Iterator& other) const { return !(*this == other); }

private:
    const char* current;
    const char* first;
    const char* last;
    mutable std::uint32_t decoded = 0;
};

}  // namespace fn
