// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "console.h"
#include "exit-status.h"

namespace tool {

/// Reads the arguments and runs the command that they name. Throws what the command throws, and
/// `UsageError` where they make no sense.
ExitStatus runCommandLine(Console& console, int argc, const char* const* argv);

}  // namespace tool
