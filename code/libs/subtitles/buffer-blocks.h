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
    struct Block;

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

    /// Bytes that are to become a buffer. They are for their owner to write until then.
    class Bytes {
    public:
        Bytes() = default;
        Bytes(Bytes&& other) noexcept
            : block(std::exchange(other.block, nullptr)), bytes(other.bytes), size(other.size) {}
        Bytes& operator=(Bytes&& other) noexcept {
            std::swap(block, other.block);
            std::swap(bytes, other.bytes);
            std::swap(size, other.size);
            return *this;
        }
        Bytes(const Bytes&) = delete;
        Bytes& operator=(const Bytes&) = delete;
        ~Bytes();

        /// Null where there are none.
        std::uint8_t* data() const { return bytes; }

    private:
        friend class BufferBlocks;

        Block* block = nullptr;  ///< This is one of its owners.
        std::uint8_t* bytes = nullptr;
        std::size_t size = 0;
    };

    /// Raises `std::bad_alloc` where there is no memory.
    Bytes allocate(std::size_t size);

    /// A buffer without times that has these bytes; an empty one for none.
    static fn::AutoPtr<_GstBuffer> toBuffer(Bytes bytes);

private:
    static Block* makeBlock(std::size_t size);
    static Bytes take(Block& block, std::size_t size);
    static void drop(void* block);

    std::size_t blockSize;
    Block* current = nullptr;  ///< Where the next bytes come from.
};

}  // namespace subtitles
