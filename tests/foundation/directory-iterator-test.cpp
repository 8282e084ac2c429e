// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/directory-iterator.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/temporary-folder.h"

namespace {

using fn::DirectoryEntry;
using fn::DirectoryIterator;

/// The entries by name: "a.srt" a file, "dir/" a folder, "link?" nothing.
std::set<std::string> list(const std::string& path, DirectoryEntry::ResolvePolicy policy) {
    std::set<std::string> entries;
    for (const DirectoryEntry& entry : DirectoryIterator(path, policy)) {
        EXPECT_EQ(entry.path, path + "/" + entry.name);
        entries.insert(entry.name + (entry.exists ? "" : "?") + (entry.isDirectory ? "/" : ""));
    }
    return entries;
}

TEST(DirectoryIterator, ListsOneLevel) {
    const test::TemporaryFolder folder;
    folder.writeFile("a.srt", "x");
    folder.writeFile(".hidden", "");
    folder.writeFile("dir/below.srt", "x");
    folder.writeFile("\xff.srt", "not UTF-8");
    const std::set<std::string> expected = {"a.srt", ".hidden", "dir/", "\xff.srt"};
    EXPECT_EQ(list(folder.path(), DirectoryEntry::ResolveNothing), expected);
    EXPECT_EQ(list(folder.path(), DirectoryEntry::ResolveLinks), expected);
}

TEST(DirectoryIterator, LinksAreFollowedOrNot) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directory_symlink(folder.makeFolder("dir"), folder.path("link"));
    std::filesystem::create_symlink("/nowhere/at/all", folder.path("dangling"));
    EXPECT_EQ(list(folder.path(), DirectoryEntry::ResolveNothing),
              (std::set<std::string>{"dangling", "dir/", "link"}));
    EXPECT_EQ(list(folder.path(), DirectoryEntry::ResolveLinks),
              (std::set<std::string>{"dangling?", "dir/", "link/"}));
}

TEST(DirectoryIterator, EmptyFolderEndsAtOnce) {
    const test::TemporaryFolder folder;
    const DirectoryIterator listing(folder.path(), DirectoryEntry::ResolveNothing);
    EXPECT_TRUE(listing.begin() == listing.end());
    EXPECT_FALSE(listing.begin() != listing.end());
}

TEST(DirectoryIterator, IteratorHoldsItsEntryAndEndsForGood) {
    const test::TemporaryFolder folder;
    folder.writeFile("a", "");
    const DirectoryIterator listing(folder.path(), DirectoryEntry::ResolveNothing);
    DirectoryIterator::Iterator iterator = listing.begin();
    EXPECT_TRUE(iterator != listing.end());
    EXPECT_EQ((*iterator).name, "a");
    EXPECT_EQ(iterator->name, "a");
    EXPECT_TRUE(++iterator == listing.end());
    EXPECT_TRUE(++iterator == listing.end());
}

TEST(DirectoryIterator, EachBeginListsAnew) {
    const test::TemporaryFolder folder;
    const DirectoryIterator listing(folder.path(), DirectoryEntry::ResolveNothing);
    EXPECT_TRUE(listing.begin() == listing.end());
    folder.writeFile("a", "");
    EXPECT_EQ(listing.begin()->name, "a");
}

TEST(DirectoryIterator, SlashAtTheEndIsNotDoubled) {
    const test::TemporaryFolder folder;
    folder.writeFile("a", "");
    const DirectoryIterator listing(folder.path() + "/", DirectoryEntry::ResolveNothing);
    EXPECT_EQ(listing.begin()->path, folder.path() + "/a");
}

TEST(DirectoryIterator, ListsThousands) {
    const test::TemporaryFolder folder;
    for (int i = 0; i < 3000; ++i) {
        folder.writeFile(std::to_string(i), "");
    }
    EXPECT_EQ(list(folder.path(), DirectoryEntry::ResolveNothing).size(), 3000U);
}

TEST(DirectoryIterator, RaisesWithTheNameWhereItCannotList) {
    const test::TemporaryFolder folder;
    const std::string file = folder.writeFile("file", "");
    for (const std::string& path : {folder.path("missing"), file, std::string()}) {
        try {
            DirectoryIterator(path, DirectoryEntry::ResolveNothing).begin();
            ADD_FAILURE() << "nothing raised for " << path;
        } catch (const fn::IOException& exception) {
            EXPECT_NE(exception.displayText().find("'" + path + "'"), fn::String::npos)
                << exception.what();
        }
    }
}

TEST(DirectoryIterator, NulEndsNoPath) {
    const test::TemporaryFolder folder;
    const fn::String path = folder.path() + std::string("\0x", 2);
    EXPECT_THROW(DirectoryIterator(path, DirectoryEntry::ResolveNothing).begin(), fn::IOException);
}

}  // namespace
