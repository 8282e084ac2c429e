// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace tool {

class Console;

/// Keys come out in the order in which they were put in.
using Json = nlohmann::ordered_json;

/// The JSON text of a value, in one line. Malformed UTF-8 becomes U+FFFD, and no control character
/// stays as it is, since the text may go to a terminal.
std::string jsonText(const Json& value);

/// One JSON object written piece by piece: a field a line, and an element of its arrays a line, so
/// that a million cues need not be in memory at once.
class JsonDocument {
public:
    /// Opens the object. The console must outlive the document.
    explicit JsonDocument(Console& console);
    JsonDocument(const JsonDocument&) = delete;
    JsonDocument& operator=(const JsonDocument&) = delete;
    ~JsonDocument() = default;

    void field(std::string_view key, const Json& value);
    void fields(const Json& object);

    void beginArray(std::string_view key);
    void element(const Json& value);
    void endArray();

    /// Closes the object.
    void end();

private:
    void separate(bool& isFirst, std::string_view indentation);
    void key(std::string_view key);

    Console& out;
    bool isFirstField = true;
    bool isFirstElement = true;
};

}  // namespace tool
