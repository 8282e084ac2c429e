// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A new file comes into being without a name, gets one when it is complete, and takes the place of
// the old file in one step.

#include "output-file.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "exit-status.h"

namespace tool {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& why) {
    throw Failure("Cannot write '" + path + "': " + why);
}

[[noreturn]] void failWithExisting(const std::string& path) {
    fail(path, "it exists already (--force overwrites it)");
}

std::string folderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder;
}

/// Puts off what would end the tool between the making of a file and its removal.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t held;
        sigemptyset(&held);
        for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
            sigaddset(&held, signal);
        }
        sigprocmask(SIG_BLOCK, &held, &before);
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before{};
};

/// A file under construction, gone with the object unless it was published.
class PendingFile {
public:
    explicit PendingFile(const std::string& path)
        : target(path), temporaryName(folderOf(path) + "/.subtitles-XXXXXX") {
        const int access = O_WRONLY | O_CLOEXEC;
        constexpr mode_t mode = 0666;  // less what the person's mask takes away
        descriptor = open(folderOf(path).c_str(), O_TMPFILE | access, mode);
        if (descriptor < 0) {
            // The file system has no files without names; other faults come out again here.
            inventName([&](const char* name) {
                descriptor = open(name, O_CREAT | O_EXCL | access, mode);
                return descriptor >= 0;
            });
        }
    }
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile() {
        if (hasName) {
            unlink(temporaryName.c_str());
        }
        if (descriptor >= 0) {
            close(descriptor);
        }
    }

    void takePermissions(mode_t mode) { check(fchmod(descriptor, mode & 07777U)); }

    void write(std::string_view content) {
        while (!content.empty()) {
            const ssize_t written = ::write(descriptor, content.data(), content.size());
            if (written < 0 && errno == EINTR) {
                continue;
            }
            check(written < 0 ? -1 : 0);
            content.remove_prefix(static_cast<std::size_t>(written));
        }
        // A full disk or a broken network may tell only now.
        check(fsync(descriptor));
    }

    void publish(bool overwrite) {
        if (!hasName) {
            const std::string anonymous = "/proc/self/fd/" + std::to_string(descriptor);
            inventName([&](const char* name) {
                return linkat(AT_FDCWD, anonymous.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
            });
        }
        if (overwrite) {
            check(rename(temporaryName.c_str(), target.c_str()));
            hasName = false;
        } else if (link(temporaryName.c_str(), target.c_str()) != 0) {
            renameWithoutReplacing();
        }
    }

private:
    void check(int result) const {
        if (result != 0) {
            fail(target, std::strerror(errno));
        }
    }

    // For file systems on which a file has one name only.
    void renameWithoutReplacing() {
        if (errno != EEXIST && renameat2(AT_FDCWD, temporaryName.c_str(), AT_FDCWD, target.c_str(),
                                         RENAME_NOREPLACE) == 0) {
            hasName = false;
            return;
        }
        if (errno == EEXIST) {
            failWithExisting(target);
        }
        check(-1);
    }

    /// Tries names that nobody has until `make` succeeds with one.
    template <class Make>
    void inventName(Make make) {
        constexpr std::size_t suffixSize = 6;
        const std::size_t suffix = temporaryName.size() - suffixSize;
        for (unsigned attempt = 0; attempt < 1000 && !hasName; ++attempt) {
            std::array<char, suffixSize + 1> digits{};
            const auto number = (static_cast<unsigned>(getpid()) + attempt) % 1000000U;
            std::snprintf(digits.data(), digits.size(), "%06u", number);
            temporaryName.replace(suffix, suffixSize, digits.data());
            hasName = make(temporaryName.c_str());
            if (!hasName && errno != EEXIST) {
                break;
            }
        }
        check(hasName ? 0 : -1);
    }

    SignalsHeld signals;
    std::string target;
    std::string temporaryName;
    bool hasName = false;  ///< The temporary name stands in the folder.
    int descriptor = -1;
};

/// The file that is to be replaced, behind all symbolic links.
std::string replacedFile(const std::string& path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    return error ? path : real.string();
}

}  // namespace

void checkOutputFile(const std::string& path, bool overwrite) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return;  // what is wrong with it, if anything, is told when it is written
    }
    if (S_ISDIR(status.st_mode)) {
        fail(path, "it is a folder");
    }
    if (!S_ISREG(status.st_mode)) {
        fail(path, "it is no regular file (- is standard output)");
    }
    if (!overwrite) {
        failWithExisting(path);
    }
}

void writeOutputFile(const std::string& path, std::string_view content, bool overwrite) {
    checkOutputFile(path, overwrite);
    const std::string target = overwrite ? replacedFile(path) : path;
    PendingFile file(target);
    struct stat status {};
    if (overwrite && stat(target.c_str(), &status) == 0) {
        file.takePermissions(status.st_mode);
    }
    file.write(content);
    file.publish(overwrite);
}

}  // namespace tool
