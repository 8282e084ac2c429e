// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Values to JSON and back.
//
// A path on the disk need not be UTF-8, a JSON document must be. The bytes that are not travel as
// pairs that no other text produces: U+0000, which no path holds, and a code point with the byte's
// number.

#include "foundation/json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "foundation/exception.h"
#include "foundation/utf8.h"

namespace fn::json {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

/// Appends "\u00XX".
void appendEscape(String& text, unsigned char byte) {
    text.append("\\u00").append(1, hexDigits[byte >> 4U]).append(1, hexDigits[byte & 0xfU]);
}

void appendASCII(String& text, char byte) {
    switch (byte) {
        case '"': text.append("\\\""); return;
        case '\\': text.append("\\\\"); return;
        case '\n': text.append("\\n"); return;
        case '\r': text.append("\\r"); return;
        case '\t': text.append("\\t"); return;
        case '\0': text.append("\\u0000\\u0000"); return;
        default: break;
    }
    if (static_cast<unsigned char>(byte) < 0x20) {
        appendEscape(text, static_cast<unsigned char>(byte));
    } else {
        text.append(1, byte);
    }
}

void appendString(String& text, const String& string) {
    text.append("\"");
    const char* const end = string.data() + string.size();
    for (const char* position = string.data(); position != end;) {
        const utf8::Sequence sequence = utf8::decode(position, end);
        if (sequence.size == 1) {
            appendASCII(text, *position);
        } else if (sequence.size != 0) {
            text.append(position, sequence.size);
        } else {
            text.append("\\u0000");
            appendEscape(text, static_cast<unsigned char>(*position));
        }
        position += sequence.size != 0 ? sequence.size : 1;
    }
    text.append("\"");
}

/// The reverse of what `appendString` does to bytes that are no text. A NUL in front of anything
/// else is what another program wrote, and is a NUL.
String restoreBytes(const std::string& text) {
    String bytes;
    bytes.reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t nul = text.find('\0'); nul != std::string::npos;
         nul = text.find('\0', copied)) {
        bytes.append(text, copied, nul - copied);
        const char* const next = text.data() + nul + 1;
        const utf8::Sequence sequence = utf8::decode(next, text.data() + text.size());
        const bool isByte = sequence.codePoint >= 0x80 && sequence.codePoint <= 0xff;
        const bool isNul = sequence.size == 1 && sequence.codePoint == 0;
        bytes.append(1, static_cast<char>(isByte ? sequence.codePoint : 0));
        copied = nul + 1 + (isByte || isNul ? sequence.size : 0);
    }
    return bytes.append(text, copied, std::string::npos);
}

[[noreturn]] void failTooDeep(const String& source) {
    throw DataFormatException(source + "JSON is nested deeper than " +
                              String::number(maximumDepth) + " levels");
}

class Writer {
public:
    explicit Writer(bool indented) : isIndented(indented) {}

    void write(const Value& value) {
        switch (value.type()) {
            case Value::NilType: output.append("null"); return;
            case Value::BoolType:
            case Value::IntegerType:
            case Value::UnsignedType: output.append(value.asString()); return;
            case Value::DoubleType: writeDouble(value.asNumber<double>()); return;
            case Value::StringType: appendString(output, value.asString()); return;
            case Value::ListType: writeList(value.list()); return;
            case Value::MapType: writeMap(value.map()); return;
        }
    }

    const String& text() const { return output; }

private:
    void writeDouble(double number) {
        if (!std::isfinite(number)) {
            output.append("null");
            return;
        }
        char digits[32];
        const char* const end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
        const StringView text(digits, static_cast<std::size_t>(end - digits));
        output.append(text);
        // Without a fraction it would come back as an integer.
        if (text.find_first_of(".e") == StringView::npos) {
            output.append(".0");
        }
    }

    void writeList(const Value::List& list) {
        open('[');
        for (const Value& entry : list) {
            separate(&entry == &list.front());
            write(entry);
        }
        close(']', list.empty());
    }

    void writeMap(const Value::Map& map) {
        open('{');
        for (auto entry = map.begin(); entry != map.end(); ++entry) {
            separate(entry == map.begin());
            appendString(output, entry->first.asString());
            output.append(isIndented ? ": " : ":");
            write(entry->second);
        }
        close('}', map.empty());
    }

    void open(char bracket) {
        if (++depth > maximumDepth) {
            failTooDeep({});
        }
        output.append(1, bracket);
    }

    void separate(bool isFirst) {
        if (!isFirst) {
            output.append(",");
        }
        breakLine();
    }

    void close(char bracket, bool isEmpty) {
        --depth;
        if (!isEmpty) {
            breakLine();
        }
        output.append(1, bracket);
    }

    void breakLine() {
        if (isIndented) {
            output.append("\n").append(static_cast<std::size_t>(depth) * 2, ' ');
        }
    }

    bool isIndented;
    int depth = 0;
    String output;
};

/// What is wrong with a text, without the parser's own numbering and without the text read so far,
/// which can be megabytes.
String reasonOf(const nlohmann::json::exception& error) {
    String reason = error.what();
    const std::size_t name = reason.find("] ");
    reason.erase(0, name == String::npos ? 0 : name + 2);
    constexpr std::size_t longest = 200;
    return reason.substr(0, std::min(reason.find("; last read"), longest));
}

/// Builds the value while the parser walks the text. The parser keeps no stack of its own in the
/// process's, so that the depth is counted here.
class Builder : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit Builder(String source) : errorPrefix(std::move(source)) {}

    Value take() { return std::move(root); }

    bool null() override { return add(Value()); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override {
        const bool fits = value <= static_cast<number_unsigned_t>(INT64_MAX);
        return fits ? add(static_cast<number_integer_t>(value)) : add(value);
    }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return add(value);
    }
    bool string(string_t& text) override { return add(restoreBytes(text)); }
    bool binary(binary_t& /*bytes*/) override { return add(Value()); }  // JSON text has none.

    bool start_object(std::size_t /*count*/) override {
        open().map();
        return true;
    }
    bool key(string_t& text) override {
        currentKey = restoreBytes(text);
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*count*/) override {
        open().list();
        return true;
    }
    bool end_array() override { return close(); }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::json::exception& error) override {
        throw DataFormatException(errorPrefix + "Malformed JSON: " + reasonOf(error));
    }

private:
    /// Puts the value where the text stands.
    Value& place(Value&& value) {
        if (openValues.empty()) {
            return root = std::move(value);
        }
        Value& container = *openValues.back();
        if (container.is(Value::ListType)) {
            container.list().push_back(std::move(value));
            return container.list().back();
        }
        return container.map()[std::move(currentKey)] = std::move(value);
    }

    bool add(Value&& value) {
        place(std::move(value));
        return true;
    }

    Value& open() {
        if (openValues.size() == maximumDepth) {
            failTooDeep(errorPrefix);
        }
        // The place stays where it is while it is open: nothing is added beside it.
        openValues.push_back(&place(Value()));
        return *openValues.back();
    }

    bool close() {
        openValues.pop_back();
        return true;
    }

    String errorPrefix;  ///< The start of every exception's text.
    Value root;
    std::vector<Value*> openValues;
    String currentKey;
};

}  // namespace

void serialize(const Value& value, OutputStream& stream, bool indented) {
    Writer writer(indented);
    writer.write(value);
    stream.write(writer.text().data(), writer.text().size());
}

Value deserialize(StringView text, const String& source) {
    const String prefix = source.empty() ? String() : source + ": ";
    // The parser would take a NUL for the end of the text and pass over all that follows it.
    if (text.find('\0') != StringView::npos) {
        throw DataFormatException(prefix + "Malformed JSON: a NUL byte in the text");
    }
    Builder builder(prefix);
    nlohmann::json::sax_parse(text.begin(), text.end(), &builder);
    return builder.take();
}

}  // namespace fn::json
