// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From bytes in some encoding to UTF-8, through the C library's converters.

#include <algorithm>
#include <cerrno>
#include <vector>

#include <iconv.h>

#include "foundation/exception.h"
#include "foundation/string.h"
#include "foundation/utf8.h"

namespace fn {

namespace {

constexpr char replacement[] = "\xEF\xBF\xBD";

/// Names that are only a name: the converter reads a slash as the start of its own options, and
/// takes an empty name for the locale's encoding.
bool isPlainName(const String& name) {
    return !name.empty() && name.find_first_not_of(
                                "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                "abcdefghijklmnopqrstuvwxyz"
                                "0123456789-_.:+()") == String::npos;
}

/// Owns one conversion to UTF-8; not open where nobody knows the name.
class Converter {
public:
    explicit Converter(const String& from)
        : converter(isPlainName(from) ? ::iconv_open("UTF-8", from.c_str()) : invalid()) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (isOpen()) {
            ::iconv_close(converter);
        }
    }

    bool isOpen() const { return converter != invalid(); }

    /// Converts as far as it goes, appends the result, and says why it stopped: 0 where nothing is
    /// left of the input.
    int convert(StringView& in, String& text) {
        // The converter's interface predates const; it does not write to its input.
        char* from = const_cast<char*>(in.data());
        std::size_t fromSize = in.size();
        char* to = block.data();
        std::size_t toSize = block.size();
        const std::size_t result = ::iconv(converter, &from, &fromSize, &to, &toSize);
        const int stopped = result == static_cast<std::size_t>(-1) ? errno : 0;
        text.append(block.data(), block.size() - toSize);
        in.remove_prefix(in.size() - fromSize);
        return stopped;
    }

    /// Appends what the converter has held back.
    void flush(String& text) {
        char* to = block.data();
        std::size_t toSize = block.size();
        // All bytes are in, so that nothing is left that could fail.
        ::iconv(converter, nullptr, nullptr, &to, &toSize);
        text.append(block.data(), block.size() - toSize);
    }

private:
    static iconv_t invalid() {
        return reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr): its own value
    }

    std::vector<char> block = std::vector<char>(64 * 1024);
    iconv_t converter;  ///< Last, so that nothing behind it can fail and leave it open.
};

/// The bytes of one code unit. A bad one is passed over whole, or all behind it would be read
/// between two units.
std::size_t unitSize(const String& encoding) {
    const String name = encoding.toUpperCaseASCII();
    const auto has = [&](const char* part) { return name.find(part) != String::npos; };
    if (has("UTF-32") || has("UTF32") || has("UCS-4") || has("UCS4") || has("10646")) {
        return 4;
    }
    return has("UTF-16") || has("UTF16") || has("UCS-2") || has("UCS2") ? 2 : 1;
}

String decode(Converter& converter, StringView in, std::size_t unit) {
    String text;
    text.reserve(in.size() + in.size() / 8);
    while (!in.empty()) {
        const std::size_t before = in.size();
        const int stopped = converter.convert(in, text);
        if (stopped == EINVAL) {
            break;  // The start of a sequence that the text's end cuts off.
        }
        // A full block is no fault, unless nothing at all was read: some converters can be made to
        // write for ever.
        if (stopped == EILSEQ || (stopped != 0 && in.size() == before)) {
            for (std::size_t bad = std::min(unit, in.size()); bad != 0; --bad) {
                text.append(replacement);
                in.remove_prefix(1);
            }
        }
    }
    // What a converter held back, in case the next byte had changed it, comes out at the end.
    converter.flush(text);
    return text;
}

bool isUTF8Name(const String& encoding) {
    const String name = encoding.toLowerCaseASCII();
    return name == "utf-8" || name == "utf8";
}

}  // namespace

bool String::isKnownEncoding(const String& encoding) {
    return encoding.empty() || isUTF8Name(encoding) || Converter(encoding).isOpen();
}

String String::withEncoding(const unsigned char* bytes, unsigned long size,
                            const String& encoding) {
    const StringView in(reinterpret_cast<const char*>(bytes), size);
    if (isUTF8Name(encoding) || (encoding.empty() && utf8::isValid(in))) {
        return String(in.data(), in.size());
    }
    const String name = encoding.empty() ? String("WINDOWS-1252") : encoding;
    Converter converter(name);
    if (!converter.isOpen()) {
        throw RuntimeException(String("Unknown text encoding '") + encoding + "'");
    }
    return decode(converter, in, unitSize(name));
}

}  // namespace fn
