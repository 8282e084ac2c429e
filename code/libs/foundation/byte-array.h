// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>

#include "foundation/export.h"
#include "foundation/string-view.h"

namespace fn {

/// A block of bytes that grows at its end.
class FOUNDATION_EXPORT ByteArray {
public:
    ByteArray() = default;
    ByteArray(const ByteArray& other);
    ByteArray(ByteArray&& other) noexcept;
    ByteArray& operator=(const ByteArray& other);
    ByteArray& operator=(ByteArray&& other) noexcept;
    ~ByteArray();

    /// The bytes; null while there are none. Valid until the next change.
    const unsigned char* data() const { return start; }
    unsigned char* data() { return start; }
    std::size_t size() const { return used; }
    bool empty() const { return used == 0; }

    void append(const void* bytes, std::size_t count);
    /// Cuts the array, or fills it up with zero bytes.
    void resize(std::size_t size);
    /// Makes room for this many bytes in all.
    void reserve(std::size_t capacity);
    void clear() { used = 0; }

    StringView view() const;

private:
    unsigned char* allocation = nullptr;  ///< Released with `free`.
    std::size_t allocationSize = 0;
    unsigned char* start = nullptr;
    std::size_t used = 0;
};

}  // namespace fn
