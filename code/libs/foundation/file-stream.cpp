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

FileDescriptor::FileDescriptor(int handle, const String& path) : _handle(handle), _path(path) {}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : _handle(std::exchange(other._handle, -1)), _path(std::move(other._path)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(_handle, other._handle);
    std::swap(_path, other._path);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (_handle >= 0) {
        // Nothing was written, so that there is nothing to learn from the result.
        ::close(_handle);
    }
}

FileDescriptor FileDescriptor::read(const String& path) {
    // The system would take the name up to its first NUL, and open some other file.
    if (path.find('\0') != String::npos) {
        fail("Cannot open", path, "the name holds a NUL byte");
    }
    FileDescriptor descriptor(openRetrying(path.c_str()), path);
    if (descriptor._handle < 0) {
        // A socket is the one kind of file that does not open at all.
        fail("Cannot open", path, errno == ENXIO ? String("it is a socket") : textOf(errno));
    }
    struct stat status = {};
    if (::fstat(descriptor._handle, &status) != 0) {
        fail("Cannot open", path, textOf(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        fail("Cannot open", path, kindOf(status.st_mode));
    }
    return descriptor;
}

FileInputStream::FileInputStream(FileDescriptor&& descriptor)
    : _descriptor(std::move(descriptor)) {}

FileInputStream::~FileInputStream() = default;

unsigned long FileInputStream::tryRead(void* buffer, unsigned long size) {
    unsigned long total = 0;
    // A short read is told as the end of the stream, so the system's own short reads are joined.
    while (total < size) {
        const ssize_t count =
            ::read(_descriptor.handle(), static_cast<char*>(buffer) + total, size - total);
        if (count == 0) {
            break;
        }
        if (count > 0) {
            total += static_cast<unsigned long>(count);
        } else if (errno != EINTR) {
            fail("Cannot read", _descriptor.path(), textOf(errno));
        }
    }
    return total;
}

}  // namespace fn
