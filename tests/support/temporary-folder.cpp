// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A folder for one test, so that tests can run side by side and leave nothing behind.

#include "tests/support/temporary-folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace test {

TemporaryFolder::TemporaryFolder() {
    const std::filesystem::path base =
        std::filesystem::canonical(std::filesystem::temp_directory_path());
    folder = (base / "subtitles-test-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) {
        throw std::runtime_error("cannot make a folder in " + base.string());
    }
}

TemporaryFolder::~TemporaryFolder() {
    // A test may have taken permissions away; what cannot be removed is left to the system.
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string TemporaryFolder::path(const std::string& name) const {
    return folder + "/" + name;
}

std::string TemporaryFolder::writeFile(const std::string& name, const std::string& bytes) const {
    const std::string file = path(name);
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + file);
    }
    return file;
}

std::string TemporaryFolder::makeFolder(const std::string& name) const {
    std::filesystem::create_directories(path(name));
    return path(name);
}

}  // namespace test
