// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "foundation/auto-ptr.h"

#include "subtitles/gst-buffer-ptr.h"

namespace subtitles {

/// Makes many small buffers whose bytes lie side by side.
///
/// A stream has a buffer for each cue, of some hundred bytes. With an allocation for the bytes of
/// each, reading a film's file takes a third longer. Here buffers share blocks of memory: each has
/// bytes of its own in one, and a block lives as long as a buffer with bytes in it, on whatever
/// thread the last of them goes.
class BufferBlocks {
public:
    /// How many bytes a block has. A buffer that needs more than a quarter of that has a block of
    /// its own, so that little of a block stays unused.
    explicit BufferBlocks(std::size_t bytesOfBlock = 16384) : blockSize(bytesOfBlock) {}
    BufferBlocks(BufferBlocks&& other) noexcept
        : blockSize(other.blockSize), current(std::exchange(other.current, nullptr)) {}
    BufferBlocks& operator=(BufferBlocks&& other) noexcept {
        std::swap(blockSize, other.blockSize);
        std::swap(current, other.current);
        return *this;
    }
    BufferBlocks(const BufferBlocks&) = delete;
    BufferBlocks& operator=(const BufferBlocks&) = delete;
    ~BufferBlocks();

    /// A buffer without times, and its bytes, which are for the caller to write before anybody else
    /// sees the buffer. Null where it has none.
    struct NewBuffer {
        fn::AutoPtr<_GstBuffer> buffer;
        std::uint8_t* bytes;
    };

    /// Raises `std::bad_alloc` where there is no memory.
    NewBuffer allocate(std::size_t size);

private:
    struct Block;

    static Block* makeBlock(std::size_t size);
    static NewBuffer take(Block& block, std::size_t size);
    static void drop(void* block);

    std::size_t blockSize;
    Block* current = nullptr;  ///< Where the next bytes come from.
};

}  // namespace subtitles
