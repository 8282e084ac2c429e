// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The `main` of a fuzz target without a fuzzer: hands it every file that is named, and every file
// in every folder that is named, once. An input at which the target ends the process is the last
// one that was printed.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gst/gst.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::string> filesOf(const std::string& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path().string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const std::string& path) {
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), {});
    const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    gst_init(nullptr, nullptr);
    std::size_t count = 0;
    try {
        for (int i = 1; i < argc; ++i) {
            for (const std::string& path : filesOf(argv[i])) {
                if (!replay(path)) {
                    return EXIT_FAILURE;
                }
                ++count;
            }
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    std::printf("%zu inputs\n", count);
    // A replay of nothing proves nothing: the corpus is missing.
    return count == 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
