// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/export.h"
#include "foundation/path.h"
#include "foundation/string.h"

namespace fn {

/// What a folder's listing, or one look at a path, says.
struct FOUNDATION_EXPORT DirectoryEntry {
    /// What to do about symbolic links.
    enum ResolvePolicy {
        /// A link is a link: it exists, and it is no folder. A listing needs no look at its files.
        ResolveNothing = 0,
        /// A link is what it leads to; one that leads nowhere does not exist.
        ResolveLinks = 5,
    };

    String name;  ///< Without the folder.
    String path;  ///< The folder as it was given, and the name.
    bool exists = false;
    bool isDirectory = false;
};

/// A path on the disk. Nothing is kept open.
class FOUNDATION_EXPORT File {
public:
    explicit File(const String& path);
    explicit File(const Path& path);

    void setPath(const String& path);
    const String& path() const { return filePath; }

    /// True where something stands at the path; a symbolic link that leads nowhere is nothing.
    bool exists() const;

    /// What stands at the path. Raises nothing: a path that cannot be looked at, for whatever
    /// reason, does not exist.
    DirectoryEntry info(DirectoryEntry::ResolvePolicy policy) const;

private:
    String filePath;
};

}  // namespace fn
