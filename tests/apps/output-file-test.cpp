// SPDX-License-Identifier: LGPL-2.1-or-later

#include "output-file.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "exit-status.h"
#include "tests/support/temporary-folder.h"

namespace {

class OutputFile : public testing::Test {
protected:
    std::string content(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(folder.path(name)).rdbuf();
        return text.str();
    }

    /// "old=1 new=2": the folder's files and what is in them.
    std::string listing() const {
        std::string result;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = entry.path().filename();
            result += (result.empty() ? "" : " ") + name + "=" + content(name);
        }
        return result;
    }

    /// What went wrong, with the name alone of the file; "" where nothing did.
    std::string write(const std::string& name, const std::string& text, bool overwrite = false) {
        try {
            tool::writeOutputFile(folder.path(name), text, overwrite);
            return "";
        } catch (const tool::Failure& failure) {
            std::string words = failure.what();
            const std::size_t at = words.find(folder.path());
            return words.erase(at, folder.path().size() + 1);
        }
    }

    mode_t mode(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(stat(folder.path(name).c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    test::TemporaryFolder folder;
};

TEST_F(OutputFile, IsMadeWithTheUsualPermissions) {
    const mode_t mask = umask(027);
    EXPECT_EQ(write("new", "text"), "");
    umask(mask);
    EXPECT_EQ(listing(), "new=text");
    EXPECT_EQ(mode("new"), 0640U);
}

TEST_F(OutputFile, HoldsAnyBytes) {
    const std::string bytes("a\0b\n", 4);
    EXPECT_EQ(write("new", bytes), "");
    EXPECT_EQ(content("new"), bytes);
    EXPECT_EQ(write("empty", ""), "");
    EXPECT_EQ(content("empty"), "");
}

TEST_F(OutputFile, ReplacesNothingUnlessItIsTold) {
    folder.writeFile("old", "1");
    EXPECT_EQ(write("old", "2"), "Cannot write 'old': it exists already (--force overwrites it)");
    EXPECT_EQ(listing(), "old=1");
    EXPECT_EQ(write("old", "2", true), "");
    EXPECT_EQ(listing(), "old=2");
    EXPECT_EQ(write("new", "3", true), "");
    EXPECT_EQ(content("new"), "3");
}

TEST_F(OutputFile, KeepsTheOldFilesPermissions) {
    chmod(folder.writeFile("old", "1").c_str(), 0600);
    EXPECT_EQ(write("old", "2", true), "");
    EXPECT_EQ(mode("old"), 0600U);
}

TEST_F(OutputFile, IsReplacedBehindASymbolicLink) {
    folder.writeFile("far/old", "1");
    std::filesystem::create_symlink("far/old", folder.path("link"));
    EXPECT_EQ(write("link", "2"), "Cannot write 'link': it exists already (--force overwrites it)");
    EXPECT_EQ(write("link", "2", true), "");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_EQ(content("far/old"), "2");
}

TEST_F(OutputFile, DoesNotWriteThroughALinkToNowhere) {
    std::filesystem::create_symlink("nowhere", folder.path("link"));
    EXPECT_EQ(write("link", "2"), "Cannot write 'link': it exists already (--force overwrites it)");
    EXPECT_FALSE(std::filesystem::exists(folder.path("nowhere")));
}

TEST_F(OutputFile, RefusesWhatIsNoFile) {
    folder.makeFolder("folder");
    mkfifo(folder.path("pipe").c_str(), 0600);
    EXPECT_EQ(write("folder", "x", true), "Cannot write 'folder': it is a folder");
    EXPECT_EQ(write("pipe", "x", true),
              "Cannot write 'pipe': it is no regular file (- is standard output)");
    EXPECT_EQ(write("missing/x", "x"), "Cannot write 'missing/x': No such file or directory");
}

TEST_F(OutputFile, LeavesNothingBehindWhereItFails) {
    folder.writeFile("old", "1");
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{1000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string text(5000, 'x');
    const std::string failure = write("new", text);
    const std::string failureToReplace = write("old", text, true);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(failure, "Cannot write 'new': File too large");
    EXPECT_EQ(failureToReplace, "Cannot write 'old': File too large");
    EXPECT_EQ(listing(), "old=1");
}

}  // namespace
