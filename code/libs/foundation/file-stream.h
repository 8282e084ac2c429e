// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/export.h"
#include "foundation/stream.h"
#include "foundation/string.h"

namespace fn {

/// An open file, closed with the object.
class FOUNDATION_EXPORT FileDescriptor {
public:
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    /// Opens a regular file for reading; the descriptor is not inherited by child processes.
    ///
    /// Raises `fn::IOException`, with a text that names the path and says why, where the file
    /// cannot be opened, and at once where the path is a folder, a pipe or a device: opening never
    /// blocks.
    static FileDescriptor read(const String& path);

    int handle() const { return number; }
    const String& path() const { return filePath; }

private:
    FOUNDATION_INTERNAL FileDescriptor(int handle, const String& path);

    int number = -1;
    String filePath;  ///< For the texts of exceptions.
};

/// Reads a file from its start.
class FOUNDATION_EXPORT FileInputStream : public InputStream {
public:
    /// Takes the descriptor over.
    explicit FileInputStream(FileDescriptor&& descriptor);
    ~FileInputStream() override;

    /// Raises `fn::IOException` where reading fails.
    unsigned long tryRead(void* buffer, unsigned long size) override;

private:
    FileDescriptor file;
};

}  // namespace fn
