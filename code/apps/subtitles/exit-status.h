// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <stdexcept>

namespace tool {

/// How the tool ends; scripts rely on the numbers.
enum class ExitStatus {
    Done = 0,
    Findings = 1,  ///< Done, and there is something to tell: a search found nothing, for example.
    Failed = 2,    ///< Something could not be read, decoded or written.
    Usage = 64,    ///< The command line makes no sense.
};

/// Ends a command with `Failed`. The text is what went wrong and with which file.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Ends a command with `Usage`.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace tool
