// SPDX-License-Identifier: LGPL-2.1-or-later

#include "file-failures.h"

#include <system_error>

namespace tool {

std::string describeFailure(const std::string& path, const std::string& words) {
    // The libraries put names between apostrophes, and may have put a folder in front.
    return words.find(path + "'") != std::string::npos ? words : path + ": " + words;
}

std::filesystem::file_status checkExists(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        throw Failure("Cannot open '" + path +
                      "': " + (error ? error.message() : "No such file or directory"));
    }
    return status;
}

void FileFailures::add(const std::string& path, const std::string& words) {
    entries.push_back({path, describeFailure(path, words)});
    out.message(entries.back().words);
}

void FileFailures::writeTo(JsonDocument& document) const {
    document.beginArray("errors");
    for (const Entry& entry : entries) {
        document.element({{"path", entry.path}, {"message", entry.words}});
    }
    document.endArray();
}

}  // namespace tool
