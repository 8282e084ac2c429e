// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>
#include <string_view>

namespace tool {

/// Throws `Failure` where `writeOutputFile` could not put a file at this path, as far as can be
/// known before there is anything to write.
void checkOutputFile(const std::string& path, bool overwrite);

/// Makes a file of exactly this content. At every moment, a crash included, there is under its name
/// what was there before or the whole new file; and never is there a half-written one under any
/// other name, where the file system can hold files without names.
///
/// An existing file is replaced only where `overwrite` says so, keeps its permissions then, and is
/// replaced behind symbolic links. Throws `Failure` where something is in the way or cannot be
/// written.
void writeOutputFile(const std::string& path, std::string_view content, bool overwrite);

}  // namespace tool
