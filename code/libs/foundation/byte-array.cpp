// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/byte-array.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace fn {

ByteArray::ByteArray(const ByteArray& other) {
    append(other.start, other.used);
}

ByteArray::ByteArray(ByteArray&& other) noexcept
    : allocation(std::exchange(other.allocation, nullptr)),
      allocationSize(std::exchange(other.allocationSize, 0)),
      start(std::exchange(other.start, nullptr)),
      used(std::exchange(other.used, 0)) {}

ByteArray& ByteArray::operator=(const ByteArray& other) {
    if (this != &other) {
        clear();
        append(other.start, other.used);
    }
    return *this;
}

ByteArray& ByteArray::operator=(ByteArray&& other) noexcept {
    std::swap(allocation, other.allocation);
    std::swap(allocationSize, other.allocationSize);
    std::swap(start, other.start);
    std::swap(used, other.used);
    return *this;
}

ByteArray::~ByteArray() {
    std::free(allocation);
}

void ByteArray::append(const void* bytes, std::size_t count) {
    if (count == 0) {
        return;
    }
    if (count > allocationSize - used) {
        const std::size_t needed = used + count;
        reserve(needed < 2 * allocationSize ? 2 * allocationSize : needed);
    }
    std::memcpy(start + used, bytes, count);
    used += count;
}

void ByteArray::resize(std::size_t size) {
    reserve(size);
    if (size > used) {
        std::memset(start + used, 0, size - used);
    }
    used = size;
}

void ByteArray::reserve(std::size_t capacity) {
    if (capacity <= allocationSize) {
        return;
    }
    void* const block = std::realloc(allocation, capacity);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    allocation = static_cast<unsigned char*>(block);
    start = allocation;
    allocationSize = capacity;
}

StringView ByteArray::view() const {
    // A char may look at any bytes.
    return {reinterpret_cast<const char*>(start), used};
}

}  // namespace fn
