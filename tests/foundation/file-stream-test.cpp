// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/file-stream.h"

#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "foundation/exception.h"
#include "foundation/stream-reader.h"

#include "tests/support/file-rights.h"
#include "tests/support/temporary-folder.h"

namespace fn {
namespace {

/// The text of the exception that opening the path raises.
std::string failure(const String& path) {
    try {
        FileDescriptor::read(path);
    } catch (const IOException& exception) {
        return exception.what();
    }
    return "opened";
}

TEST(FileInputStream, ReadsTheWholeFile) {
    const test::TemporaryFolder folder;
    const std::string path = folder.writeFile("a.srt", std::string(100000, 'x'));
    FileInputStream stream(FileDescriptor::read(path));
    StreamReader reader(&stream);
    EXPECT_EQ(reader.readEverything(8388608).size(), 100000U);
}

TEST(FileInputStream, IsShortOnlyAtTheEnd) {
    const test::TemporaryFolder folder;
    FileInputStream stream(FileDescriptor::read(folder.writeFile("a.srt", "abcdef")));
    char buffer[4];
    EXPECT_EQ(stream.tryRead(buffer, 4), 4U);
    EXPECT_EQ(stream.tryRead(buffer, 4), 2U);
    EXPECT_EQ(stream.tryRead(buffer, 4), 0U);
}

TEST(FileDescriptor, TakesTheFileOfAnother) {
    const test::TemporaryFolder folder;
    FileDescriptor descriptor = FileDescriptor::read(folder.writeFile("a.srt", "first"));
    descriptor = FileDescriptor::read(folder.writeFile("b.srt", "second"));
    FileInputStream stream(std::move(descriptor));
    StreamReader reader(&stream);
    EXPECT_EQ(reader.readEverything(100).view(), "second");
}

TEST(FileDescriptor, MissingFileIsNamed) {
    EXPECT_EQ(failure("/nowhere/a.srt"), "Cannot open '/nowhere/a.srt': No such file or directory");
}

TEST(FileDescriptor, FolderIsRefused) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(failure(folder.path()), "Cannot open '" + folder.path() + "': it is a folder");
}

TEST(FileDescriptor, PipeIsRefusedAtOnce) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path() + "/pipe.srt";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(failure(path), "Cannot open '" + path + "': it is a pipe");
}

TEST(FileDescriptor, DeviceIsRefused) {
    EXPECT_EQ(failure("/dev/zero"), "Cannot open '/dev/zero': it is a device");
}

TEST(FileDescriptor, SocketIsRefused) {
    const test::TemporaryFolder folder;
    const std::string path = folder.path() + "/s";
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int handle = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(failure(path), "Cannot open '" + path + "': it is a socket");
    ::close(handle);
}

TEST(FileDescriptor, FileWithoutPermissionIsNamed) {
    const test::TemporaryFolder folder;
    const std::string path = folder.writeFile("a.srt", "text");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const test::FileRightsHold guard;
    EXPECT_EQ(failure(path), "Cannot open '" + path + "': Permission denied");
}

TEST(FileDescriptor, NameWithANulOpensNoOtherFile) {
    const test::TemporaryFolder folder;
    String path(folder.writeFile("a.srt", "text"));
    path += '\0';
    path += ".srt";
    EXPECT_NE(failure(path), "opened");
}

TEST(FileDescriptor, ClosesWithItsOwner) {
    const test::TemporaryFolder folder;
    FileDescriptor first = FileDescriptor::read(folder.writeFile("a.srt", "text"));
    const int handle = first.handle();
    {
        const FileDescriptor second(std::move(first));
        EXPECT_EQ(second.handle(), handle);
        EXPECT_EQ(first.handle(), -1);  // NOLINT(bugprone-use-after-move): that is the question
    }
    EXPECT_EQ(::lseek(handle, 0, SEEK_CUR), -1);
}

}  // namespace
}  // namespace fn
