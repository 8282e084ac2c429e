// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/string.h"

#include "subtitles/text-attributes.h"

namespace subtitles {

/// The attributes in force inside nested tags: one entry for each open tag, the newest wins.
///
/// Every operation takes amortised constant time however many entries there are: a file may open a
/// tag a million times and ask after each. So nothing walks the entries; each attribute has its own
/// stack of the values that entries set.
class TextAttributesStack {
public:
    TextAttributesStack() { newest.fill(_none); }

    /// True where there is no entry.
    bool empty() const { return entries.empty(); }

    /// Puts an entry on top. It is to have those attributes alone that its tag sets.
    void pushAttributes(const TextAttributes& attributes);

    /// Removes the newest entry, also where it has no attributes left. Does nothing without one.
    void popAttributes();

    /// Takes these attributes away from all entries, then removes entries that have none left from
    /// the top, down to the first that has some: what a closing tag does whose file does not nest
    /// its tags.
    void removeAttributes(int mask);

    /// All entries laid over a default record from the oldest to the newest, in the manner of
    /// `TextAttributes::applyTextAttributes`. Valid until the next change.
    const TextAttributes& cummulativeAttributes() const;

    /// Removes all entries.
    void clear();

private:
    static constexpr std::size_t _attributeCount = 20;
    static constexpr std::size_t _none = static_cast<std::size_t>(-1);

    /// One open tag.
    struct Entry {
        std::uint32_t mask;      ///< The attributes that it still sets.
        std::size_t firstValue;  ///< Its values go from here to the next entry's first.
    };

    /// What one entry says of one attribute.
    struct Value {
        std::size_t entry;           ///< Whose value it is.
        std::size_t older;           ///< The same attribute's next older value, or `_none`.
        std::int64_t content;        ///< The value itself; a text's place in `texts`.
        std::uint32_t attribute;     ///< The number of the attribute's bit.
        std::int32_t letterSpacing;  ///< Goes along with GRAVITY.
    };

    void removeNewestEntry();
    void removeAttribute(std::uint32_t attribute);

    std::vector<Entry> entries;
    std::vector<Value> values;
    std::vector<fn::String> texts;
    std::array<std::size_t, _attributeCount>
        newest;                         ///< Each attribute's newest value, or `_none`.
    mutable TextAttributes cumulative;  ///< Right but for what is in `stale`.
    mutable std::uint32_t stale = 0;    ///< The bits of what has changed.
};

}  // namespace subtitles
