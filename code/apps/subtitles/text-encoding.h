// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>

namespace tool {

/// How many bytes of a file the library reads.
constexpr unsigned long readLimit = 8388608;

/// The encoding in which the library reads the file when it is given none. Always a name that can
/// be given to it: where detection has no answer, that is UTF-8 or windows-1252. Raises an
/// `fn::Exception` where the file cannot be read.
std::string encodingOfFile(const std::string& path);

}  // namespace tool
