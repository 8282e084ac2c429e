// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What is forbidden to a file's owner is not forbidden to root, and tests often run as root.

#pragma once

#include <array>
#include <cstdint>

namespace test {

/// While one lives, the permissions of files hold for this thread even where it is root's.
class FileRightsHold {
public:
    FileRightsHold();
    FileRightsHold(const FileRightsHold&) = delete;
    FileRightsHold& operator=(const FileRightsHold&) = delete;
    ~FileRightsHold();

private:
    std::array<std::uint32_t, 6> before = {};  ///< The thread's capabilities.
};

/// For a child process, between fork and exec: the permissions of files hold for what it becomes.
void letFileRightsHoldBehindExec();

}  // namespace test
