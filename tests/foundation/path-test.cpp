// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/path.h"

#include <filesystem>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace {

using fn::Path;

struct NameCase {
    const char* name;
    const char* path;
    const char* fileName;
    const char* baseName;
    const char* extension;
};

constexpr NameCase nameCases[] = {
    {"LastExtensionOnly", "/films/movie.en.srt", "movie.en.srt", "movie.en", "srt"},
    {"ShortName", "a.b.srt", "a.b.srt", "a.b", "srt"},
    {"NoDotIsTheWholeName", "/films/movie", "movie", "movie", ""},
    {"DotOfAFolderIsNoExtension", "/films.old/movie", "movie", "movie", ""},
    {"CaseOfTheExtensionStays", "Movie.SRT", "Movie.SRT", "Movie", "SRT"},
    {"DotAtTheEnd", "movie.", "movie.", "movie", ""},
    {"TwoDots", "movie..srt", "movie..srt", "movie.", "srt"},
    {"HiddenFile", "/films/.srt", ".srt", ".srt", ""},
    {"HiddenFileWithExtension", ".movie.srt", ".movie.srt", ".movie", "srt"},
    {"Parent", "/films/..", "..", "..", ""},
    {"Itself", ".", ".", ".", ""},
    {"SlashesAtTheEnd", "/films/dir.d//", "dir.d", "dir", "d"},
    {"Root", "/", "", "", ""},
    {"Empty", "", "", "", ""},
    {"BytesThatAreNoUTF8", "/f/\xff.\xe9", "\xff.\xe9", "\xff", "\xe9"},
    {"Blanks", "/a b/c d.srt", "c d.srt", "c d", "srt"},
};

void PrintTo(const NameCase& test, std::ostream* out) {
    *out << test.path;
}

class PathNames : public testing::TestWithParam<NameCase> {};

TEST_P(PathNames, AreTheLastComponents) {
    const Path path = Path::parsePath(GetParam().path, Path::HostStyle);
    EXPECT_EQ(path.fileName(), GetParam().fileName);
    EXPECT_EQ(path.baseName(), GetParam().baseName);
    EXPECT_EQ(path.extension(), GetParam().extension);
}

TEST_P(PathNames, TextComesBackAsItWas) {
    const Path path = Path::parsePath(GetParam().path, Path::HostStyle);
    EXPECT_EQ(path.toString(Path::HostStyle), GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(Cases, PathNames, testing::ValuesIn(nameCases),
                         [](const auto& test) { return test.param.name; });

std::string absolute(const char* path) {
    return Path::parsePath(path).toAbsolute().toString();
}

TEST(PathToAbsolute, AbsolutePathStaysButForWhatSaysNothing) {
    EXPECT_EQ(absolute("/films/a.srt"), "/films/a.srt");
    EXPECT_EQ(absolute("//films/.//./a.srt/"), "/films/a.srt");
    EXPECT_EQ(absolute("/"), "/");
    EXPECT_EQ(absolute("/."), "/");
    EXPECT_EQ(absolute("/.hidden/..."), "/.hidden/...");
}

TEST(PathToAbsolute, ParentStaysForTheSakeOfLinks) {
    EXPECT_EQ(absolute("/films/../a.srt"), "/films/../a.srt");
}

TEST(PathToAbsolute, RelativePathStartsAtTheWorkingFolder) {
    const std::string folder = std::filesystem::current_path().string();
    EXPECT_EQ(absolute("films/a.srt"), folder + "/films/a.srt");
    EXPECT_EQ(absolute("./a.srt"), folder + "/a.srt");
    EXPECT_EQ(absolute("."), folder);
    EXPECT_EQ(absolute(""), folder);
}

TEST(Path, StyleZeroIsTheHosts) {
    EXPECT_EQ(static_cast<int>(Path::HostStyle), 0);
}

}  // namespace
