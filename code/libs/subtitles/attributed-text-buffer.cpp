// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Attributed text as bytes: the number of runs, then each run with all its fields, little-endian
// and without padding. One list of fields serves the writer and the reader, so that they agree on
// every field, its order and its width.
//
// A stream has a buffer for each cue, so making one has to be cheap: the size is known before
// anything is written, the bytes go straight into the buffer's memory, and what is the same for all
// cues without mark-up is copied in one go.

#include "subtitles/attributed-text-buffer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include <gst/gst.h>

#include "foundation/string.h"

#include "subtitles/attributed-text-writer.h"
#include "subtitles/buffer-blocks.h"
#include "subtitles/color.h"
#include "subtitles/text-attributes-fields.h"

namespace subtitles {
namespace {

constexpr std::size_t countSize = 4;
constexpr std::size_t smallestRunSize = 78;  // All strings empty.

// The fields of a run as they lie in the buffer. The mask comes first here, although it is the
// record's last field.
template <class Wire, class Run>
void transferRun(Wire& wire, Run& run) {
    auto& attributes = run.attributes;
    wire.transfer(attributes.attributeMask);
    wire.transfer(attributes.fontDescription);
    wire.transfer(attributes.fontFamily);
    wire.transfer(attributes.fontSizeRelative);
    wire.transfer(attributes.fontSizeAbsolute);
    wire.transfer(attributes.fontStyle);
    wire.transfer(attributes.fontWeight);
    wire.transfer(attributes.fontVariant);
    wire.transfer(attributes.fontStretch);
    wire.transfer(attributes.foregroundColor);
    wire.transfer(attributes.backgroundColor);
    wire.transfer(attributes.underline);
    wire.transfer(attributes.underlineColor);
    wire.transfer(attributes.rise);
    wire.transfer(attributes.strikeThrough);
    wire.transfer(attributes.strikeThroughColor);
    wire.transfer(attributes.fallback);
    wire.transfer(attributes.language);
    wire.transfer(attributes.letterSpacing);
    wire.transfer(attributes.gravity);
    wire.transfer(attributes.gravityHint);
    wire.transfer(run.text);
}

// A length has 32 bits on the wire; of a longer string, the bytes that its length leaves over are
// written, so that what follows stays in its place.
std::uint32_t wireLength(const fn::String& text) {
    return static_cast<std::uint32_t>(text.size());
}

std::size_t wireSize(const AttributedText::Run& run) {
    return smallestRunSize + wireLength(run.attributes.fontDescription) +
           wireLength(run.attributes.fontFamily) + wireLength(run.attributes.language) +
           wireLength(run.text);
}

std::size_t wireSize(const AttributedText& text) {
    std::size_t size = countSize;
    for (const AttributedText::Run& run : text) {
        size += wireSize(run);
    }
    return size;
}

// Writes into memory that is known to be large enough.
class Writer {
public:
    explicit Writer(std::uint8_t* at) : position(at) {}

    void transfer(std::uint32_t value) {
        const std::uint32_t bytes = GUINT32_TO_LE(value);
        put(&bytes, sizeof bytes);
    }
    void transfer(const fn::String& text) {
        const std::uint32_t length = wireLength(text);
        transfer(length);
        put(text.data(), length);
    }
    void transfer(const Color& color) {
        const std::uint8_t bytes[] = {color.red, color.green, color.blue};
        put(bytes, sizeof bytes);
    }
    void transfer(bool value) { *position++ = value ? 1 : 0; }
    template <class Number>
    void transfer(Number value) {
        static_assert(sizeof(Number) == 4, "all other fields are 32-bit integers");
        transfer(static_cast<std::uint32_t>(value));
    }

    void put(const void* bytes, std::size_t size) {
        std::memcpy(position, bytes, size);
        position += size;
    }

private:
    std::uint8_t* position;
};

// Reads until the bytes run out; from then on it is not good and changes nothing.
class Reader {
public:
    Reader(const std::uint8_t* bytes, std::size_t size) : position(bytes), remaining(size) {}

    bool good() const { return whole; }
    std::size_t left() const { return remaining; }

    void transfer(std::uint32_t& value) {
        if (const std::uint8_t* const bytes = take(sizeof value)) {
            std::memcpy(&value, bytes, sizeof value);
            value = GUINT32_FROM_LE(value);
        }
    }
    void transfer(fn::String& text) {
        std::uint32_t length = 0;
        transfer(length);
        if (const std::uint8_t* const bytes = take(length)) {
            text.assign(reinterpret_cast<const char*>(bytes), length);
        }
    }
    void transfer(Color& color) {
        if (const std::uint8_t* const bytes = take(3)) {
            color = {bytes[0], bytes[1], bytes[2]};
        }
    }
    void transfer(bool& value) {
        if (const std::uint8_t* const byte = take(1)) {
            value = *byte != 0;
        }
    }
    template <class Number>
    void transfer(Number& value) {
        static_assert(sizeof(Number) == 4, "all other fields are 32-bit integers");
        std::uint32_t number = 0;
        transfer(number);
        value = static_cast<Number>(number);
    }

private:
    const std::uint8_t* take(std::size_t size) {
        whole = whole && size <= remaining;
        if (!whole) {
            return nullptr;
        }
        const std::uint8_t* const bytes = position;
        position += size;
        remaining -= size;
        return bytes;
    }

    const std::uint8_t* position;
    std::size_t remaining;
    bool whole = true;
};

// Keeps a buffer mapped for reading as long as it lives.
class Mapping {
public:
    explicit Mapping(_GstBuffer* buffer) : mapped(buffer) {
        isMapped = buffer != nullptr && gst_buffer_map(buffer, &info, GST_MAP_READ) != FALSE;
    }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    ~Mapping() {
        if (isMapped) {
            gst_buffer_unmap(mapped, &info);
        }
    }

    const std::uint8_t* data() const { return isMapped ? info.data : nullptr; }
    std::size_t size() const { return isMapped ? info.size : 0; }

private:
    _GstBuffer* mapped;
    GstMapInfo info = {};
    bool isMapped;
};

// All that stands before the text's length in a buffer of one run without attributes.
using PlainHead = std::array<std::uint8_t, countSize + smallestRunSize - sizeof(std::uint32_t)>;

PlainHead plainHead() {
    std::array<std::uint8_t, countSize + smallestRunSize> bytes = {};
    Writer writer(bytes.data());
    writer.transfer(std::uint32_t{1});
    const AttributedText::Run plain;
    transferRun(writer, plain);
    PlainHead head = {};
    std::copy_n(bytes.begin(), head.size(), head.begin());
    return head;
}

}  // namespace

BufferBlocks::Bytes attributedTextToBytes(const AttributedText& text, BufferBlocks& blocks) {
    BufferBlocks::Bytes bytes = blocks.allocate(wireSize(text));
    Writer writer(bytes.data());
    writer.transfer(static_cast<std::uint32_t>(text.size()));
    for (const AttributedText::Run& run : text) {
        transferRun(writer, run);
    }
    return bytes;
}

void RunBytes::append(const AttributedText::Run& run) {
    constexpr std::size_t pieceSize = 1U << 20U;
    const std::size_t size = wireSize(run);
    if (pieces.empty() || pieces.back().capacity() - pieces.back().size() < size) {
        pieces.emplace_back().reserve(std::max(size, pieceSize));
    }
    fn::String& piece = pieces.back();
    const std::size_t before = piece.size();
    piece.resize(before + size);
    Writer writer(reinterpret_cast<std::uint8_t*>(piece.data()) + before);
    transferRun(writer, run);
    ++runCount;
    byteCount += size;
}

BufferBlocks::Bytes RunBytes::take(const AttributedText& first, BufferBlocks& blocks) {
    BufferBlocks::Bytes bytes = blocks.allocate(wireSize(first) + byteCount);
    Writer writer(bytes.data());
    writer.transfer(static_cast<std::uint32_t>(first.size() + runCount));
    for (const AttributedText::Run& run : first) {
        transferRun(writer, run);
    }
    for (; !pieces.empty(); pieces.pop_front()) {
        writer.put(pieces.front().data(), pieces.front().size());
    }
    runCount = 0;
    byteCount = 0;
    return bytes;
}

fn::AutoPtr<_GstBuffer> attributedTextToBuffer(const AttributedText& text, BufferBlocks& blocks) {
    return BufferBlocks::toBuffer(attributedTextToBytes(text, blocks));
}

BufferBlocks::Bytes plainTextToBytes(fn::StringView text, BufferBlocks& blocks) {
    static const PlainHead head = plainHead();
    const auto length = static_cast<std::uint32_t>(text.size());
    BufferBlocks::Bytes bytes = blocks.allocate(head.size() + sizeof length + length);
    Writer writer(bytes.data());
    writer.put(head.data(), head.size());
    writer.transfer(length);
    writer.put(text.data(), length);
    return bytes;
}

fn::AutoPtr<_GstBuffer> plainTextToBuffer(fn::StringView text, BufferBlocks& blocks) {
    return BufferBlocks::toBuffer(plainTextToBytes(text, blocks));
}

fn::AutoPtr<_GstBuffer> attributedTextToBuffer(const AttributedText& text) {
    BufferBlocks blocks(0);  // A block for this buffer alone.
    return attributedTextToBuffer(text, blocks);
}

AttributedText attributedTextFromBuffer(_GstBuffer* buffer) {
    const Mapping mapping(buffer);
    Reader reader(mapping.data(), mapping.size());
    std::int32_t count = 0;
    reader.transfer(count);
    AttributedText result;
    if (count <= 0) {
        return result;
    }
    // The count is only a claim. Room is made for what can be there.
    result.reserve(std::min(static_cast<std::size_t>(count), reader.left() / smallestRunSize));
    for (std::int32_t i = 0; i < count; ++i) {
        AttributedText::Run run;
        transferRun(reader, run);
        if (!reader.good()) {
            break;
        }
        run.attributes.attributeMask &= allAttributes;
        result.push_back(std::move(run));
    }
    return result;
}

}  // namespace subtitles
