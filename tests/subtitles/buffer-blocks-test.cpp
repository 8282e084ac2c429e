// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/buffer-blocks.h"

#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

namespace subtitles {
namespace {

using Buffer = fn::AutoPtr<_GstBuffer>;

Buffer bufferWith(BufferBlocks& blocks, const std::string& text) {
    BufferBlocks::Bytes bytes = blocks.allocate(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return BufferBlocks::toBuffer(std::move(bytes));
}

std::string contentOf(const Buffer& buffer) {
    std::string content(gst_buffer_get_size(buffer.get()), '\0');
    gst_buffer_extract(buffer.get(), 0, content.data(), content.size());
    return content;
}

TEST(BufferBlocks, GiveEachBufferItsOwnBytes) {
    BufferBlocks blocks(256);
    std::vector<Buffer> buffers;
    for (std::size_t i = 0; i < 200; ++i) {
        buffers.push_back(
            bufferWith(blocks, std::string(1 + i % 100, static_cast<char>('a' + i % 26))));
    }
    for (std::size_t i = 0; i < buffers.size(); ++i) {
        EXPECT_EQ(contentOf(buffers[i]), std::string(1 + i % 100, static_cast<char>('a' + i % 26)));
    }
}

TEST(BufferBlocks, LetBuffersOutliveThem) {
    Buffer first;
    Buffer large;
    {
        BufferBlocks blocks(64);
        first = bufferWith(blocks, "first");
        bufferWith(blocks, "dropped at once");
        large = bufferWith(blocks, std::string(1000, 'x'));
    }
    EXPECT_EQ(contentOf(first), "first");
    EXPECT_EQ(contentOf(large), std::string(1000, 'x'));
}

TEST(BufferBlocks, MayGiveBytesThatBecomeNoBuffer) {
    BufferBlocks::Bytes kept;
    {
        BufferBlocks blocks(64);
        blocks.allocate(10);
        kept = blocks.allocate(1000);
        std::memset(kept.data(), 'k', 1000);
    }
    EXPECT_EQ(contentOf(BufferBlocks::toBuffer(std::move(kept))), std::string(1000, 'k'));
}

TEST(BufferBlocks, GiveNoMemoryToAnEmptyBuffer) {
    BufferBlocks blocks;
    const Buffer buffer = BufferBlocks::toBuffer(blocks.allocate(0));
    EXPECT_EQ(gst_buffer_get_size(buffer.get()), 0U);
    EXPECT_EQ(gst_buffer_n_memory(buffer.get()), 0U);
}

TEST(BufferBlocks, GiveABlockOfItsOwnWhereBlocksHaveNoBytes) {
    BufferBlocks blocks(0);
    EXPECT_EQ(contentOf(bufferWith(blocks, "alone")), "alone");
}

TEST(BufferBlocks, GiveBuffersThatCanBeWrittenWithoutChangingTheirNeighbours) {
    BufferBlocks blocks;
    const Buffer first = bufferWith(blocks, "first");
    const Buffer second = bufferWith(blocks, "second");
    ASSERT_TRUE(gst_buffer_is_writable(first.get()));
    EXPECT_EQ(gst_buffer_memset(first.get(), 0, '-', 100), 5U);
    EXPECT_EQ(contentOf(first), "-----");
    EXPECT_EQ(contentOf(second), "second");
}

TEST(BufferBlocks, GoOnWhereTheyAreMovedTo) {
    BufferBlocks first;
    const Buffer before = bufferWith(first, "before");
    BufferBlocks second = std::move(first);
    const Buffer behind = bufferWith(second, "behind");
    BufferBlocks third(64);
    const Buffer other = bufferWith(third, "other");
    third = std::move(second);
    const Buffer last = bufferWith(third, "last");
    EXPECT_EQ(contentOf(before) + contentOf(behind) + contentOf(other) + contentOf(last),
              "beforebehindotherlast");
}

TEST(BufferBlocks, MayBeDroppedOnAnyThread) {
    std::vector<Buffer> buffers;
    {
        BufferBlocks blocks(256);
        for (int i = 0; i < 1000; ++i) {
            buffers.push_back(bufferWith(blocks, "cue"));
        }
    }
    const auto dropEverySecond = [&](std::size_t from) {
        for (std::size_t i = from; i < buffers.size(); i += 2) {
            buffers[i] = Buffer();
        }
    };
    std::thread even(dropEverySecond, 0);
    dropEverySecond(1);
    even.join();
    for (const Buffer& buffer : buffers) {
        EXPECT_FALSE(buffer);
    }
}

}  // namespace
}  // namespace subtitles
