// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <iterator>
#include <memory>

#include "foundation/export.h"
#include "foundation/file.h"
#include "foundation/string.h"

namespace fn {

/// The entries of one folder, in the file system's order, without the folder itself and its parent:
///
///     for (const DirectoryEntry& entry : DirectoryIterator(folder, policy)) ...
class FOUNDATION_EXPORT DirectoryIterator {
public:
    class Iterator;

    DirectoryIterator(const String& path, DirectoryEntry::ResolvePolicy policy);

    /// Opens the folder and stands at its first entry; each call lists anew. Raises
    /// `fn::IOException`, with a text that names the folder, where it cannot be listed.
    Iterator begin() const;
    Iterator end() const;

private:
    String folder;
    DirectoryEntry::ResolvePolicy resolvePolicy;
};

/// Reads the listing as it goes: copies share one listing, and one of them moves on for all.
class FOUNDATION_EXPORT DirectoryIterator::Iterator {
public:
    // NOLINTBEGIN(readability-identifier-naming): the standard's names
    using iterator_category = std::input_iterator_tag;
    using value_type = DirectoryEntry;
    using difference_type = std::ptrdiff_t;
    using pointer = const DirectoryEntry*;
    using reference = const DirectoryEntry&;
    // NOLINTEND(readability-identifier-naming)

    /// The end of every listing.
    Iterator() = default;

    /// The entry, valid until the iterator moves on.
    const DirectoryEntry& operator*() const { return current; }
    const DirectoryEntry* operator->() const { return &current; }

    /// Raises `fn::IOException` where the folder cannot be read on.
    Iterator& operator++();

    /// True at the end of both listings, and for copies of one iterator.
    bool operator==(const Iterator& other) const { return entries == other.entries; }
    bool operator!=(const Iterator& other) const { return !(*this == other); }

private:
    friend class DirectoryIterator;
    class Listing;

    FOUNDATION_INTERNAL explicit Iterator(std::shared_ptr<Listing> listing);

    std::shared_ptr<Listing> entries;  ///< Null at the end.
    DirectoryEntry current;
};

}  // namespace fn
