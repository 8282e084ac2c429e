// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>

namespace test {

/// A new, empty folder under the system's folder for temporary files. It goes with all that is in
/// it when the object does.
class TemporaryFolder {
public:
    /// Throws `std::runtime_error` where no folder can be made.
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    /// The folder's absolute path, without a slash at the end.
    const std::string& path() const { return folder; }

    /// The absolute path of `name` in the folder; nothing is made.
    std::string path(const std::string& name) const;

    /// Writes a file of exactly `bytes`, NUL bytes included, and the folders that `name` asks for
    /// ("season 1/a.srt"). A file of that name is replaced. Gives the file's absolute path. Throws
    /// `std::runtime_error` where that fails.
    std::string writeFile(const std::string& name, const std::string& bytes) const;

    /// Makes the folder `name`, and those above it. Gives its absolute path.
    std::string makeFolder(const std::string& name) const;

private:
    std::string folder;
};

}  // namespace test
