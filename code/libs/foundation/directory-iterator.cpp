// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Listing a folder. Most file systems tell the kind of an entry along with its name, so that a
// listing of ten thousand files is a few hundred reads and no look at any of the files.

#include "foundation/directory-iterator.h"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "foundation/exception.h"

namespace fn {

class DirectoryIterator::Iterator::Listing {
public:
    Listing(const String& path, DirectoryEntry::ResolvePolicy policy)
        : folder(path), resolvePolicy(policy), handle(open(path)) {}

    /// Reads the next entry; false at the end.
    bool next(DirectoryEntry& entry) {
        for (;;) {
            errno = 0;
            const dirent* const found = ::readdir(handle.get());
            if (found == nullptr) {
                if (errno != 0) {
                    fail(folder, errno);
                }
                return false;
            }
            if (std::strcmp(found->d_name, ".") != 0 && std::strcmp(found->d_name, "..") != 0) {
                fill(entry, *found);
                return true;
            }
        }
    }

private:
    struct Close {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };
    using DirectoryPtr = std::unique_ptr<DIR, Close>;

    [[noreturn]] static void fail(const String& path, int error) {
        throw IOException(String("Cannot list the folder '") + path +
                          "': " + std::generic_category().message(error));
    }

    static DirectoryPtr open(const String& path) {
        // The system would list what the part before a NUL names, which is another folder.
        const bool isPath = path.find('\0') == String::npos;
        DirectoryPtr directory(isPath ? ::opendir(path.c_str()) : nullptr);
        if (directory == nullptr) {
            fail(path, isPath ? errno : ENOENT);
        }
        return directory;
    }

    void fill(DirectoryEntry& entry, const dirent& found) const {
        entry.name = found.d_name;
        entry.path = folder;
        if (!folder.endsWith("/", 1)) {
            entry.path += '/';
        }
        entry.path += entry.name;
        const bool isLink = found.d_type == DT_LNK;
        if (found.d_type == DT_UNKNOWN ||
            (isLink && resolvePolicy != DirectoryEntry::ResolveNothing)) {
            look(entry);
        } else {
            entry.exists = true;
            entry.isDirectory = found.d_type == DT_DIR;
        }
    }

    void look(DirectoryEntry& entry) const {
        const int flags = resolvePolicy == DirectoryEntry::ResolveNothing ? AT_SYMLINK_NOFOLLOW : 0;
        struct stat status = {};
        entry.exists = ::fstatat(::dirfd(handle.get()), entry.name.c_str(), &status, flags) == 0;
        entry.isDirectory = entry.exists && S_ISDIR(status.st_mode);
    }

    String folder;
    DirectoryEntry::ResolvePolicy resolvePolicy;
    DirectoryPtr handle;
};

DirectoryIterator::DirectoryIterator(const String& path, DirectoryEntry::ResolvePolicy policy)
    : folder(path), resolvePolicy(policy) {}

DirectoryIterator::Iterator DirectoryIterator::begin() const {
    return Iterator(std::make_shared<Iterator::Listing>(folder, resolvePolicy));
}

DirectoryIterator::Iterator DirectoryIterator::end() const {
    return {};
}

DirectoryIterator::Iterator::Iterator(std::shared_ptr<Listing> listing)
    : entries(std::move(listing)) {
    ++*this;
}

DirectoryIterator::Iterator& DirectoryIterator::Iterator::operator++() {
    if (entries != nullptr && !entries->next(current)) {
        entries.reset();
    }
    return *this;
}

}  // namespace fn
