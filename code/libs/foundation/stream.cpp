// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/stream.h"

#include <algorithm>
#include <cstring>

namespace fn {

InputStream::~InputStream() = default;
OutputStream::~OutputStream() = default;
MemoryInputStream::~MemoryInputStream() = default;
ByteArrayOutputStream::~ByteArrayOutputStream() = default;

unsigned long MemoryInputStream::tryRead(void* buffer, unsigned long size) {
    const std::size_t count = std::min<std::size_t>(size, unread.size());
    if (count != 0) {
        std::memcpy(buffer, unread.data(), count);
        skip(count);
    }
    return count;
}

void ByteArrayOutputStream::write(const void* bytes, unsigned long size) {
    content.append(bytes, size);
}

}  // namespace fn
