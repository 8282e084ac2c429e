// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitles.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/encode.h"

namespace {

std::string read(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

}  // namespace

TEST(UmbrellaHeader, HoldsEveryHeaderThatGivesSomethingOut) {
    const std::filesystem::path folder = test::sourceFolder() + "/code/libs/subtitles";
    const std::string umbrella = read(folder / "subtitles.h");
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (entry.path().extension() != ".h" || name == "export.h" ||
            read(entry.path()).find("SUBTITLES_EXPORT") == std::string::npos) {
            continue;
        }
        ++found;
        EXPECT_NE(umbrella.find("#include \"subtitles/" + name + "\"\n"), std::string::npos)
            << name;
    }
    EXPECT_GT(found, 10);
}
