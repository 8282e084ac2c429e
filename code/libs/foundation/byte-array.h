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
    const unsigned char* data() const { return _data; }
    unsigned char* data() { return _data; }
    std::size_t size() const { return _size; }
    bool empty() const { return _size == 0; }

    void append(const void* bytes, std::size_t count);
    /// Cuts the array, or fills it up with zero bytes.
    void resize(std::size_t size);
    /// Makes room for this many bytes in all.
    void reserve(std::size_t capacity);
    void clear() { _size = 0; }

    StringView view() const;

private:
    unsigned char* _block = nullptr;  ///< Released with `free`.
    std::size_t _capacity = 0;
    unsigned char* _data = nullptr;
    std::size_t _size = 0;
};

}  // namespace fn
