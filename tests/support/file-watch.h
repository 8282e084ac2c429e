// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>
#include <vector>

namespace test {

/// Watches which files of a folder are opened, by any process, from its construction on.
class FileWatch {
public:
    /// Throws `std::runtime_error` where the folder cannot be watched.
    explicit FileWatch(const std::string& folder);
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;
    ~FileWatch();

    /// The names of the entries that were opened since the last call, one for each time, in order.
    std::vector<std::string> opened() const;

private:
    int handle;
};

}  // namespace test
