// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/support/file-watch.h"

#include <cstddef>
#include <cstring>
#include <stdexcept>

#include <sys/inotify.h>
#include <unistd.h>

namespace test {

FileWatch::FileWatch(const std::string& folder) : handle(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // Of equal events in a row the system keeps one. Two openings of a file count as two with the
    // closing between them.
    if (handle < 0 || inotify_add_watch(handle, folder.c_str(), IN_OPEN | IN_CLOSE) < 0) {
        throw std::runtime_error("cannot watch " + folder);
    }
}

FileWatch::~FileWatch() {
    close(handle);
}

std::vector<std::string> FileWatch::opened() const {
    std::vector<std::string> names;
    std::vector<char> block(64 * 1024);
    // The handle does not block: nothing more to read is an error, and the end.
    for (ssize_t size = 0; (size = read(handle, block.data(), block.size())) > 0;) {
        for (std::size_t position = 0; position < static_cast<std::size_t>(size);) {
            inotify_event event;
            std::memcpy(&event, block.data() + position, sizeof event);
            position += sizeof event;
            // An event without a name is the folder's own.
            if (event.len != 0 && (event.mask & IN_OPEN) != 0) {
                names.emplace_back(block.data() + position);
            }
            position += event.len;
        }
    }
    return names;
}

}  // namespace test
