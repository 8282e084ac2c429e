// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <utility>

#include "foundation/export.h"
#include "foundation/string.h"

namespace fn {

/// The path of a file or a folder, relative or absolute. It names; nothing here looks at the disk.
///
/// The bytes of a path are whatever the file system takes, not always UTF-8, and they stay as they
/// were given: `toString` gives back what `parsePath` took.
class FOUNDATION_EXPORT Path {
public:
    /// The syntax of a path's text.
    enum Style { HostStyle = 0 };

    Path() = default;

    /// Takes any text; an empty one names nothing.
    static Path parsePath(const String& text, Style style = HostStyle);

    String toString(Style style = HostStyle) const;

    /// The path from the root on: a relative one starts at the process's working folder. Repeated
    /// slashes and the component "." go; ".." stays, since behind a symbolic link it is not the way
    /// back. Raises `fn::IOException` where the working folder is needed and is gone.
    Path toAbsolute() const;

    /// The last component; slashes at the path's end do not count. Empty for the root.
    String fileName() const;

    /// The last component without its last extension: "movie.en" for "/films/movie.en.srt". A dot
    /// at the start of a name marks a hidden file and begins no extension.
    String baseName() const;

    /// The last extension without its dot, in the case of the name; empty where there is none.
    String extension() const;

private:
    explicit Path(String text) : pathText(std::move(text)) {}

    String pathText;
};

}  // namespace fn
