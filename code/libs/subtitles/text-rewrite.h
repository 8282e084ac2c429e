// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Tables of texts and their replacements, applied in a single pass.
//
// The control codes of a subtitle format, or the escapes of an output format, are rows {found,
// replacement} that are meant to be replaced one after the other. A pass over the text for each of
// two dozen rows is slow, and one pass for all of them is the same only where no row can touch what
// another row reads or leaves. `onePassIsEnough` proves that for a table while it is compiled.

#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/string.h"

namespace subtitles {

/// A row: every `found`, which is not empty, becomes `replacement`.
struct Rewrite {
    std::string_view found;
    std::string_view replacement;
};

namespace rewrite {

/// True where some end of `left` is a start of `right`.
constexpr bool meets(std::string_view left, std::string_view right) {
    const std::size_t most = left.size() < right.size() ? left.size() : right.size();
    for (std::size_t size = 1; size <= most; ++size) {
        if (left.substr(left.size() - size) == right.substr(0, size)) {
            return true;
        }
    }
    return false;
}

/// True where the two texts can share bytes in some text that holds both.
constexpr bool canOverlap(std::string_view one, std::string_view other) {
    return meets(one, other) || meets(other, one) || one.find(other) != std::string_view::npos ||
           other.find(one) != std::string_view::npos;
}

/// True where the later row finds, behind the earlier one, exactly what of its own stood in the
/// text before. A row that repeats an earlier one's `found` finds nothing, in either way of work.
constexpr bool keepApart(const Rewrite& earlier, const Rewrite& later) {
    return !earlier.replacement.empty() && !canOverlap(earlier.replacement, later.found) &&
           (earlier.found == later.found || !canOverlap(earlier.found, later.found));
}

}  // namespace rewrite

/// True where one pass, which takes the first row that fits at each place, gives what replacing
/// all of the first row, then all of the second, and so on gives, on every text.
template <std::size_t count>
constexpr bool onePassIsEnough(const Rewrite (&rows)[count]) {
    for (std::size_t earlier = 0; earlier < count; ++earlier) {
        for (std::size_t later = earlier + 1; later < count; ++later) {
            if (!rewrite::keepApart(rows[earlier], rows[later])) {
                return false;
            }
        }
    }
    return true;
}

/// Applies a table in one pass. The rows belong to the caller and must outlive the object; they
/// must satisfy `onePassIsEnough`, and there are at most 32 of them.
class Rewriter {
public:
    template <std::size_t size>
    constexpr explicit Rewriter(const Rewrite (&table)[size]) : rows(table) {
        static_assert(size <= _most);
        for (std::size_t row = size; row-- > 0;) {
            const std::string_view found = table[row].found;
            const auto first = static_cast<unsigned char>(found.front());
            nextRow[row] = firstRow[first];
            firstRow[first] = static_cast<unsigned char>(row + 1);
            if (found.size() == 1) {
                alone[first] = true;
            } else {
                seconds[static_cast<unsigned char>(found[1])] = true;
            }
        }
    }

    /// Appends the rewritten text to `result`.
    void append(fn::String& result, fn::StringView text) const;

    fn::String operator()(fn::StringView text) const;

private:
    static constexpr std::size_t _most = 32;

    bool mayFit(fn::StringView text) const;
    const Rewrite* rowAt(fn::StringView text) const;
    std::size_t findStart(fn::StringView text, std::size_t position) const;

    const Rewrite* rows;
    // The rows that begin with the same byte are a chain. A row is told by its number plus one; the
    // chain's end is 0.
    unsigned char firstRow[256] = {};
    unsigned char nextRow[_most] = {};
    // A look at two bytes spares the chain where a text is full of bytes that could start a row.
    bool alone[256] = {};    ///< The bytes that are some row's whole `found`.
    bool seconds[256] = {};  ///< The bytes that stand second in some row's `found`.
};

}  // namespace subtitles
