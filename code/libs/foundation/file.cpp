// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/file.h"

#include <sys/stat.h>

namespace fn {

File::File(const String& path) {
    setPath(path);
}

File::File(const Path& path) : File(path.toString(Path::HostStyle)) {}

void File::setPath(const String& path) {
    filePath = path;
}

bool File::exists() const {
    return info(DirectoryEntry::ResolveLinks).exists;
}

DirectoryEntry File::info(DirectoryEntry::ResolvePolicy policy) const {
    DirectoryEntry entry;
    entry.name = Path::parsePath(filePath).fileName();
    entry.path = filePath;
    // The system would look at the part before a NUL, which is another path.
    if (filePath.find('\0') != String::npos) {
        return entry;
    }
    struct stat status = {};
    const int result = policy == DirectoryEntry::ResolveNothing ? ::lstat(filePath.c_str(), &status)
                                                                : ::stat(filePath.c_str(), &status);
    entry.exists = result == 0;
    entry.isDirectory = entry.exists && S_ISDIR(status.st_mode);
    return entry;
}

}  // namespace fn
