// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/file-stream.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/exception.h"

namespace fn {

namespace {

[[noreturn]] void fail(const char* what, const String& path, const String& why) {
    throw IOException(String(what) + " '" + path + "': " + why);
}

String textOf(int error) {
    return std::generic_category().message(error);
}

/// What a path names that is no regular file.
const char* kindOf(mode_t mode) {
    if (S_ISDIR(mode)) {
        return "it is a folder";
    }
    if (S_ISFIFO(mode)) {
        return "it is a pipe";
    }
    if (S_ISSOCK(mode)) {
        return "it is a socket";
    }
    return "it is a device";
}

int openRetrying(const char* path) {
    int handle = -1;
    do {
        // O_NONBLOCK: opening a pipe that nobody writes to would wait for ever. It changes nothing
        // for regular files.
        handle = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    } while (handle < 0 && errno == EINTR);
    return handle;
}

}  // namespace

FileDescriptor::FileDescriptor(int handle, const String& path) : number(handle), filePath(path) {}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : number(std::exchange(other.number, -1)), filePath(std::move(other.filePath)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(number, other.number);
    std::swap(filePath, other.filePath);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (number >= 0) {
        // Nothing was written, so that there is nothing to learn from the result.
        ::close(number);
    }
}

FileDescriptor FileDescriptor::read(const String& path) {
    // The system would take the name up to its first NUL, and open some other file.
    if (path.find('\0') != String::npos) {
        fail("Cannot open", path, "the name holds a NUL byte");
    }
    FileDescriptor descriptor(openRetrying(path.c_str()), path);
    if (descriptor.number < 0) {
        // A socket is the one kind of file that does not open at all.
        fail("Cannot open", path, errno == ENXIO ? String("it is a socket") : textOf(errno));
    }
    struct stat status = {};
    if (::fstat(descriptor.number, &status) != 0) {
        fail("Cannot open", path, textOf(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        fail("Cannot open", path, kindOf(status.st_mode));
    }
    return descriptor;
}

FileInputStream::FileInputStream(FileDescriptor&& descriptor) : file(std::move(descriptor)) {}

FileInputStream::~FileInputStream() = default;

unsigned long FileInputStream::tryRead(void* buffer, unsigned long size) {
    unsigned long total = 0;
    // A short read is told as the end of the stream, so the system's own short reads are joined.
    while (total < size) {
        const ssize_t count =
            ::read(file.handle(), static_cast<char*>(buffer) + total, size - total);
        if (count == 0) {
            break;
        }
        if (count > 0) {
            total += static_cast<unsigned long>(count);
        } else if (errno != EINTR) {
            fail("Cannot read", file.path(), textOf(errno));
        }
    }
    return total;
}

}  // namespace fn
