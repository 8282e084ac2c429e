// SPDX-License-Identifier: LGPL-2.1-or-later

#include "file-failures.h"

namespace tool {

std::string describeFailure(const std::string& path, const std::string& words) {
    // The libraries put names between apostrophes, and may have put a folder in front.
    return words.find(path + "'") != std::string::npos ? words : path + ": " + words;
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
