// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Trimming, splitting and case mapping.

#include "foundation/string.h"

#include <algorithm>
#include <cstdint>

#include "foundation/ascii.h"
#include "foundation/exception.h"
#include "foundation/unicode.h"
#include "foundation/utf8-iterator.h"
#include "foundation/utf8.h"

namespace fn {

namespace {

StringView trimmedASCII(StringView text) {
    while (!text.empty() && ascii::isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && ascii::isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

String toString(StringView text) {
    return String(text.data(), text.size());
}

/// ASCII letters are mapped one by one, other code points by the mapping, malformed bytes copied.
String mapCase(const String& text, char (*mapASCII)(char), int (*map)(int)) {
    // Most texts are short and all ASCII: names, extensions, words of a format.
    const auto firstOther =
        std::find_if(text.begin(), text.end(), [](char byte) { return (byte & 0x80) != 0; });
    String result(text.data(), static_cast<std::size_t>(firstOther - text.begin()));
    std::transform(result.begin(), result.end(), result.begin(), mapASCII);
    const char* position = text.data() + result.size();
    const char* const end = text.data() + text.size();
    while (position != end) {
        if (static_cast<unsigned char>(*position) < 0x80) {
            result += mapASCII(*position++);
            continue;
        }
        const utf8::Sequence sequence = utf8::decode(position, end);
        if (sequence.size == 0) {
            result += *position++;
            continue;
        }
        utf8::append(result, static_cast<std::uint32_t>(map(static_cast<int>(sequence.codePoint))));
        position += sequence.size;
    }
    return result;
}

}  // namespace

String String::trim(bool asUTF8) const {
    const StringView text = to_string_view(*this);
    if (!asUTF8) {
        return toString(trimmedASCII(text));
    }
    if (!utf8::isValid(text)) {
        throw UTF8Exception("Cannot trim a text that is not valid UTF-8");
    }
    return toString(utf8::trimmed(text));
}

std::vector<String> String::split(char separator, SplitFlag flag, long limit) const {
    std::vector<String> pieces;
    const auto add = [&](StringView piece) {
        if (flag == TrimAndSkipEmptyParts) {
            piece = utf8::isValid(piece) ? utf8::trimmed(piece) : trimmedASCII(piece);
            if (piece.empty()) {
                return;
            }
        }
        pieces.push_back(toString(piece));
    };
    StringView rest = to_string_view(*this);
    while (limit <= 0 || static_cast<long>(pieces.size()) + 1 < limit) {
        const std::size_t found = rest.find(separator);
        if (found == StringView::npos) {
            break;
        }
        add(rest.substr(0, found));
        rest.remove_prefix(found + 1);
    }
    add(rest);
    return pieces;
}

String String::toLowerCase() const {
    return mapCase(*this, ascii::toLower, Unicode::toLower);
}
String String::toUpperCase() const {
    return mapCase(*this, ascii::toUpper, Unicode::toUpper);
}

String String::toLowerCaseASCII() const {
    String result(*this);
    std::transform(result.begin(), result.end(), result.begin(), ascii::toLower);
    return result;
}

String String::toUpperCaseASCII() const {
    String result(*this);
    std::transform(result.begin(), result.end(), result.begin(), ascii::toUpper);
    return result;
}

UTF8Iterator String::beginUTF8() const {
    return UTF8Iterator(data(), data(), data() + size());
}

UTF8Iterator String::endUTF8() const {
    return UTF8Iterator(data() + size(), data(), data() + size());
}

}  // namespace fn
