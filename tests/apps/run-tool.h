// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <map>
#include <string>
#include <vector>

namespace test {

/// How the command-line tool is started.
struct ToolSetup {
    bool outputIsTerminal = false;  ///< Standard output, else a pipe.
    bool errorIsTerminal = false;   ///< Standard error, else a pipe.
    unsigned short columns = 0;     ///< Of a terminal; 0 where it does not tell.
    /// What is changed in an environment without NO_COLOR and COLORTERM and with a TERM that knows
    /// colours.
    std::map<std::string, std::string> environment;
    std::string folder;           ///< The current folder, where it is not the test's own.
    std::string outputFile;       ///< Where standard output goes instead, opened for writing.
    bool closeOutput = false;     ///< Nobody reads standard output.
    bool fileRightsHold = false;  ///< The permissions of files, also where root runs the test.
};

/// What the tool answered. A terminal's bytes are the ones that the tool wrote.
struct ToolAnswer {
    int status = -1;  ///< -1 where a signal ended it.
    std::string output;
    std::string error;
};

/// Runs the tool that was built beside the tests to its end.
ToolAnswer runTool(const std::vector<std::string>& arguments, const ToolSetup& setup = {});

}  // namespace test
