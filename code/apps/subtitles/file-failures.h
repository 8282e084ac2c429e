// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "console.h"
#include "exit-status.h"
#include "json-document.h"

namespace tool {

/// What went wrong with a file, in words that name it once.
std::string describeFailure(const std::string& path, const std::string& words);

/// What stands at the path. Throws `Failure`, which names the path and says why, where there is
/// nothing.
std::filesystem::file_status checkExists(const std::string& path);

/// The files that a command over several could not read. One bad file does not hide the others.
class FileFailures {
public:
    /// The console must outlive the object.
    explicit FileFailures(Console& console) : out(console) {}

    /// Reports the file at once.
    void add(const std::string& path, const std::string& words);

    /// Writes the array "errors" with path and message of each.
    void writeTo(JsonDocument& document) const;

    /// `Failed` where there are any, else what the command would say.
    ExitStatus statusOr(ExitStatus status) const {
        return entries.empty() ? status : ExitStatus::Failed;
    }

private:
    struct Entry {
        std::string path;
        std::string words;
    };

    Console& out;
    std::vector<Entry> entries;
};

}  // namespace tool
