// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/byte-array.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace fn {

ByteArray::ByteArray(const ByteArray& other) {
    append(other._data, other._size);
}

ByteArray::ByteArray(ByteArray&& other) noexcept
    : _block(std::exchange(other._block, nullptr)),
      _capacity(std::exchange(other._capacity, 0)),
      _data(std::exchange(other._data, nullptr)),
      _size(std::exchange(other._size, 0)) {}

ByteArray& ByteArray::operator=(const ByteArray& other) {
    if (this != &other) {
        clear();
        append(other._data, other._size);
    }
    return *this;
}

ByteArray& ByteArray::operator=(ByteArray&& other) noexcept {
    std::swap(_block, other._block);
    std::swap(_capacity, other._capacity);
    std::swap(_data, other._data);
    std::swap(_size, other._size);
    return *this;
}

ByteArray::~ByteArray() {
    std::free(_block);
}

void ByteArray::append(const void* bytes, std::size_t count) {
    if (count == 0) {
        return;
    }
    if (count > _capacity - _size) {
        const std::size_t needed = _size + count;
        reserve(needed < 2 * _capacity ? 2 * _capacity : needed);
    }
    std::memcpy(_data + _size, bytes, count);
    _size += count;
}

void ByteArray::resize(std::size_t size) {
    reserve(size);
    if (size > _size) {
        std::memset(_data + _size, 0, size - _size);
    }
    _size = size;
}

void ByteArray::reserve(std::size_t capacity) {
    if (capacity <= _capacity) {
        return;
    }
    void* const block = std::realloc(_block, capacity);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    _block = static_cast<unsigned char*>(block);
    _data = _block;
    _capacity = capacity;
}

StringView ByteArray::view() const {
    // A char may look at any bytes.
    return {reinterpret_cast<const char*>(_data), _size};
}

}  // namespace fn
