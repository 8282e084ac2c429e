// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>

#include "foundation/byte-array.h"
#include "foundation/export.h"
#include "foundation/string-view.h"

namespace fn {

/// Where bytes come from. A stream belongs to one thread at a time.
class FOUNDATION_EXPORT InputStream {
public:
    InputStream() = default;
    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;
    virtual ~InputStream();

    /// Reads up to `size` bytes and gives their number: less than `size` only at the end of the
    /// stream, 0 when nothing is left. A failing read raises an `fn::Exception`.
    virtual unsigned long tryRead(void* buffer, unsigned long size) = 0;
};

/// Where bytes go.
class FOUNDATION_EXPORT OutputStream {
public:
    OutputStream() = default;
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;
    virtual ~OutputStream();

    virtual void write(const void* bytes, unsigned long size) = 0;
};

/// Reads a text in memory without copying it; the text must outlive the stream.
class FOUNDATION_EXPORT MemoryInputStream : public InputStream {
public:
    explicit MemoryInputStream(StringView text) : unread(text) {}
    ~MemoryInputStream() override;

    unsigned long tryRead(void* buffer, unsigned long size) override;

    /// What has not been read yet; `skip` passes over its first bytes.
    StringView rest() const { return unread; }
    void skip(std::size_t size) { unread.remove_prefix(size); }

private:
    StringView unread;
};

/// Collects what is written.
class FOUNDATION_EXPORT ByteArrayOutputStream : public OutputStream {
public:
    ByteArrayOutputStream() = default;
    ~ByteArrayOutputStream() override;

    void write(const void* bytes, unsigned long size) override;

    const ByteArray& byteArray() const { return content; }

private:
    ByteArray content;
};

}  // namespace fn
