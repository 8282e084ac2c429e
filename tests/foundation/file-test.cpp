// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/file.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/temporary-folder.h"

namespace {

using fn::DirectoryEntry;
using fn::File;

/// "name path exists folder", the last two where they hold.
std::string print(const DirectoryEntry& entry) {
    return entry.name + " " + entry.path + (entry.exists ? " exists" : "") +
           (entry.isDirectory ? " folder" : "");
}

std::string info(const std::string& path) {
    return print(File(fn::String(path)).info(DirectoryEntry::ResolveLinks));
}

TEST(DirectoryEntry, HasItsMembersInOrderAndItsPolicies) {
    const DirectoryEntry entry{"name", "path", true, false};
    EXPECT_EQ(print(entry), "name path exists");
    EXPECT_EQ(static_cast<int>(DirectoryEntry::ResolveNothing), 0);
    EXPECT_EQ(static_cast<int>(DirectoryEntry::ResolveLinks), 5);
}

TEST(FileInfo, TellsFilesFromFolders) {
    const test::TemporaryFolder folder;
    const std::string file = folder.writeFile("a.srt", "");
    EXPECT_EQ(info(file), "a.srt " + file + " exists");
    EXPECT_EQ(info(folder.makeFolder("dir")), "dir " + folder.path("dir") + " exists folder");
    EXPECT_EQ(info(folder.path() + "/dir/"), "dir " + folder.path("dir") + "/ exists folder");
    EXPECT_EQ(info(folder.path("missing")), "missing " + folder.path("missing"));
    EXPECT_EQ(info(file + "/below"), "below " + file + "/below");
    EXPECT_EQ(info(""), " ");
}

TEST(FileInfo, LinksAreFollowedOrNot) {
    const test::TemporaryFolder folder;
    const fn::String link = folder.path("link");
    const fn::String dangling = folder.path("dangling");
    std::filesystem::create_directory_symlink(folder.makeFolder("dir"), std::string(link));
    std::filesystem::create_symlink("/nowhere/at/all", std::string(dangling));
    EXPECT_EQ(print(File(link).info(DirectoryEntry::ResolveLinks)),
              "link " + link + " exists folder");
    EXPECT_EQ(print(File(link).info(DirectoryEntry::ResolveNothing)), "link " + link + " exists");
    EXPECT_FALSE(File(dangling).exists());
    EXPECT_TRUE(File(dangling).info(DirectoryEntry::ResolveNothing).exists);
}

TEST(FileInfo, PipeIsNotOpened) {
    const test::TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(info(pipe), "pipe " + pipe + " exists");
}

TEST(FileExists, SaysWhetherSomethingStandsThere) {
    const test::TemporaryFolder folder;
    File file((fn::String(folder.path())));
    EXPECT_TRUE(file.exists());
    file.setPath(folder.path("missing"));
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(file.path(), folder.path("missing"));
    EXPECT_TRUE(File(fn::Path::parsePath(folder.path())).exists());
}

TEST(FileExists, NulEndsNoPath) {
    const test::TemporaryFolder folder;
    EXPECT_FALSE(File(fn::String(folder.path() + std::string("\0x", 2))).exists());
}

}  // namespace
