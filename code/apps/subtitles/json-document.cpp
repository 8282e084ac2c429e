// SPDX-License-Identifier: LGPL-2.1-or-later

#include "json-document.h"

#include <cstddef>
#include <utility>

#include "console.h"

namespace tool {

namespace {

/// The length of the control character at `position` that JSON lets stand: delete, and U+0080 to
/// U+009F. 0 where there is none.
std::size_t bareControlSize(const std::string& text, std::size_t position) {
    if (text[position] == '\x7F') {
        return 1;
    }
    const bool isHigh = text[position] == '\xC2' && position + 1 < text.size() &&
                        static_cast<unsigned char>(text[position + 1]) < 0xA0;
    return isHigh ? 2 : 0;
}

/// Such characters stand in strings only, where an escape says the same.
std::string escapeControls(const std::string& text) {
    constexpr char digits[] = "0123456789abcdef";
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t size = bareControlSize(text, i);
        if (size == 0) {
            result.push_back(text[i]);
            continue;
        }
        const auto code = static_cast<unsigned char>(text[i + size - 1]);
        result.append("\\u00").append({digits[code >> 4U], digits[code & 0xFU]});
        i += size - 1;
    }
    return result;
}

}  // namespace

std::string jsonText(const Json& value) {
    return escapeControls(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

JsonDocument::JsonDocument(Console& console) : out(console) {
    out.write("{");
}

void JsonDocument::separate(bool& isFirst, std::string_view indentation) {
    out.write(std::exchange(isFirst, false) ? "\n" : ",\n");
    out.write(indentation);
}

void JsonDocument::key(std::string_view key) {
    separate(isFirstField, "  ");
    out.write(jsonText(Json(std::string(key))) + ": ");
}

void JsonDocument::field(std::string_view key, const Json& value) {
    this->key(key);
    out.write(jsonText(value));
}

void JsonDocument::fields(const Json& object) {
    for (const auto& [name, value] : object.items()) {
        field(name, value);
    }
}

void JsonDocument::beginArray(std::string_view key) {
    this->key(key);
    out.write("[");
    isFirstElement = true;
}

void JsonDocument::element(const Json& value) {
    separate(isFirstElement, "    ");
    out.write(jsonText(value));
}

void JsonDocument::endArray() {
    out.write(isFirstElement ? "]" : "\n  ]");
}

void JsonDocument::end() {
    out.write("\n}\n");
}

}  // namespace tool
