// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Lines and whole streams. Lines are cut out of a buffer that is filled in large blocks; what has
// been searched for a line's end is not searched again, so that one long line costs linear time.

#include "foundation/stream-reader.h"

#include <algorithm>

namespace fn {

namespace {

constexpr std::size_t blockSize = 64 * 1024;

}  // namespace

bool StreamReader::fill() {
    // What was handed out goes first; a buffer that holds the start of a long line only grows. The
    // old buffer stands until the stream has answered: it may raise.
    String next(buffer, position);
    const std::size_t kept = next.size();
    next.resize(kept + std::max(blockSize, kept));
    const unsigned long count = source->tryRead(&next[kept], next.size() - kept);
    next.resize(kept + count);
    buffer.swap(next);
    position = 0;
    return count != 0;
}

std::experimental::optional<String> StreamReader::readLine() {
    std::size_t searched = 0;
    std::size_t end = buffer.find('\n', position);
    while (end == String::npos) {
        searched = buffer.size() - position;
        if (!fill()) {
            break;
        }
        end = buffer.find('\n', searched);
    }
    const bool last = end == String::npos;
    if (last) {
        end = buffer.size();
        if (end == position) {
            return {};
        }
    }
    std::size_t size = end - position;
    if (!last && size != 0 && buffer[end - 1] == '\r') {
        --size;
    }
    String line(buffer.data() + position, size);
    position = last ? end : end + 1;
    return line;
}

void StreamReader::readEverything(ByteArray& bytes, unsigned long limit) {
    bytes.clear();
    const std::size_t buffered = std::min<std::size_t>(limit, buffer.size() - position);
    bytes.append(buffer.data() + position, buffered);
    position += buffered;
    std::size_t wanted = blockSize;
    while (bytes.size() < limit) {
        const std::size_t kept = bytes.size();
        wanted = std::min<std::size_t>(wanted, limit - kept);
        bytes.resize(kept + wanted);
        const unsigned long count = source->tryRead(bytes.data() + kept, wanted);
        bytes.resize(kept + count);
        if (count < wanted) {
            return;
        }
        // Doubling keeps the number of blocks, and of copies, small for large files.
        wanted = bytes.size();
    }
}

ByteArray StreamReader::readEverything(unsigned long limit) {
    ByteArray bytes;
    readEverything(bytes, limit);
    return bytes;
}

}  // namespace fn
