// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Blocks count who has bytes in them: the buffers, and the object that hands the bytes out.

#include "subtitles/buffer-blocks.h"

#include <atomic>
#include <cstddef>
#include <new>

#include <gst/gst.h>

namespace subtitles {

/// Stands at the start of a block's memory; the bytes follow.
struct BufferBlocks::Block {
    std::atomic<unsigned> owners;
    std::size_t size;
    std::size_t used;

    std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(this + 1); }
};

namespace {

// Bytes of buffers begin where a word begins, as those of any allocation do.
std::size_t roundedUp(std::size_t size) {
    constexpr std::size_t word = alignof(std::max_align_t);
    return (size + word - 1) / word * word;
}

}  // namespace

BufferBlocks::~BufferBlocks() {
    if (current != nullptr) {
        drop(current);
    }
}

BufferBlocks::Bytes BufferBlocks::allocate(std::size_t size) {
    if (size == 0) {
        return {};
    }
    if (size > blockSize / 4) {
        Block* const block = makeBlock(size);
        Bytes result = take(*block, size);
        drop(block);
        return result;
    }
    if (current == nullptr || size > current->size - current->used) {
        Block* const fresh = makeBlock(blockSize);
        if (current != nullptr) {
            drop(current);
        }
        current = fresh;
    }
    return take(*current, size);
}

BufferBlocks::Block* BufferBlocks::makeBlock(std::size_t size) {
    const std::size_t room = roundedUp(size);
    return new (::operator new(sizeof(Block) + room)) Block{{1}, room, 0};
}

BufferBlocks::Bytes BufferBlocks::take(Block& block, std::size_t size) {
    Bytes result;
    result.block = &block;
    result.bytes = block.bytes() + block.used;
    result.size = size;
    block.used += roundedUp(size);
    block.owners.fetch_add(1, std::memory_order_relaxed);
    return result;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the buffer takes them over
fn::AutoPtr<_GstBuffer> BufferBlocks::toBuffer(Bytes bytes) {
    if (bytes.block == nullptr) {
        return fn::AutoPtr<_GstBuffer>(gst_buffer_new());
    }
    Block* const block = std::exchange(bytes.block, nullptr);
    return fn::AutoPtr<_GstBuffer>(gst_buffer_new_wrapped_full(
        static_cast<GstMemoryFlags>(0), bytes.bytes, bytes.size, 0, bytes.size, block, drop));
}

BufferBlocks::Bytes::~Bytes() {
    if (block != nullptr) {
        drop(block);
    }
}

void BufferBlocks::drop(void* block) {
    auto* const dropped = static_cast<Block*>(block);
    if (dropped->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        dropped->~Block();
        ::operator delete(dropped);
    }
}

}  // namespace subtitles
