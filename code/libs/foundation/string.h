// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/export.h"
#include "foundation/string-view.h"

namespace fn {

class UTF8Iterator;

/// The standard byte string with the few operations that it lacks. `Derived` is the class that
/// callers name (`fn::String`), so that results have its type.
///
/// Every standard member is there, and an object passes wherever the standard string is expected.
template <class Char, class Derived, class Traits, class Allocator>
class BasicString : public std::basic_string<Char, Traits, Allocator> {
public:
    using Base = std::basic_string<Char, Traits, Allocator>;
    using Base::Base;
    using Base::compare;
    using Base::find;

    BasicString() = default;
    BasicString(const BasicString&) = default;
    BasicString(BasicString&&) noexcept = default;
    BasicString& operator=(const BasicString&) = default;
    BasicString& operator=(BasicString&&) noexcept = default;
    ~BasicString() = default;

    /// A copy of the text up to its first NUL. A null pointer gives the empty string: readers pass
    /// on what C libraries hand them.
    BasicString(const Char* text,  // NOLINT(google-explicit-constructor): literals are texts
                const Allocator& allocator = Allocator())
        : Base(text != nullptr ? text : _emptyText, allocator) {}
    /// A copy of exactly `size` bytes, NUL among them.
    BasicString(const Char* text, std::size_t size, const Allocator& allocator = Allocator())
        : Base(text, size, allocator) {}
    BasicString(const Base& other)  // NOLINT(google-explicit-constructor): the same value
        : Base(other) {}
    BasicString(Base&& other) noexcept  // NOLINT(google-explicit-constructor): the same value
        : Base(std::move(other)) {}

    /// Negative, 0 or positive, in plain byte order.
    int compare(const BasicString& other) const { return Base::compare(other); }

    /// True where the text ends in `end`. An empty text ends every string.
    bool endsWith(const BasicString& end) const { return endsWith(end.data(), end.size()); }
    bool endsWith(const Char* end, std::size_t size) const {
        return this->size() >= size && Base::compare(this->size() - size, size, end, size) == 0;
    }

    /// Replaces every occurrence of `what`, from left to right, in one pass. An empty `what` occurs
    /// nowhere.
    void replaceAll(const BasicString& what, const BasicString& replacement) {
        std::size_t found = what.empty() ? Base::npos : Base::find(what);
        if (found == Base::npos) {
            return;
        }
        Base result;
        result.reserve(this->size());
        std::size_t copied = 0;
        while (found != Base::npos) {
            result.append(*this, copied, found - copied).append(replacement);
            copied = found + what.size();
            found = Base::find(what, copied);
        }
        result.append(*this, copied, Base::npos);
        Base::swap(result);
    }

private:
    static constexpr Char _emptyText[1] = {};
};

/// UTF-8 text, except where an operation says that it holds undecoded bytes.
///
/// UTF-8 is valid here as Unicode defines it: overlong forms, surrogates and code points above
/// U+10FFFF are malformed. An object belongs to one thread at a time.
class FOUNDATION_EXPORT String
    : public BasicString<char, String, std::char_traits<char>, std::allocator<char>> {
public:
    using Parent = BasicString<char, String, std::char_traits<char>, std::allocator<char>>;
    using Parent::Parent;

    String() = default;
    String(const Parent& other)  // NOLINT(google-explicit-constructor): the same value
        : Parent(other) {}
    String(Parent&& other) noexcept  // NOLINT(google-explicit-constructor): the same value
        : Parent(std::move(other)) {}

    enum SplitFlag {
        KeepEmptyParts = 0,         ///< Every piece exactly as it stands.
        TrimAndSkipEmptyParts = 1,  ///< White space trimmed off each piece, empty ones left out.
    };

    /// The number at the text's start; `fallback` where there is none or where it does not fit.
    ///
    /// Leading ASCII white space and one sign are skipped (a sign only where the result is signed),
    /// then digits of the base, which is 2 to 36, are read up to a tail, and the tail is ignored.
    /// `end`, where it is not null, takes the position of the tail in bytes, 0 with the fallback.
    int toInt(int fallback = 0, int base = 10, unsigned long* end = nullptr) const;
    unsigned int toUInt(unsigned int fallback = 0, int base = 10,
                        unsigned long* end = nullptr) const;
    long long toInt64(long long fallback = 0, int base = 10, unsigned long* end = nullptr) const;
    /// The same for a plain decimal without an exponent, with a point in every locale.
    double toFloat(double fallback = 0.0, unsigned long* end = nullptr) const;
    /// True for "true", "1", "yes" and "on", in any ASCII case.
    bool toBool() const;

    /// A copy without leading and trailing Unicode white space. The no-break spaces U+00A0, U+2007
    /// and U+202F stay: a subtitle line that holds only such a space is a deliberate blank line.
    ///
    /// With `asUTF8` malformed UTF-8 anywhere in the text raises `fn::UTF8Exception`; without it,
    /// ASCII white space alone is trimmed and nothing raised.
    String trim(bool asUTF8 = true) const;

    /// The pieces between the separators. A `limit` above 0 is the highest number of pieces: the
    /// last one holds the rest, separators included. -1 means no limit. An empty text gives one
    /// empty piece with `KeepEmptyParts`, and none with `TrimAndSkipEmptyParts`, which trims as
    /// UTF-8 where a piece is UTF-8 and ASCII white space where it is not: it raises nothing.
    std::vector<String> split(char separator, SplitFlag flag = KeepEmptyParts,
                              long limit = -1) const;

    /// Unicode case mapping, code point by code point, the same in every locale. Malformed bytes
    /// stay as they are: one badly encoded file name must not stop the scan of a folder.
    String toLowerCase() const;
    String toUpperCase() const;
    /// Maps the 26 letters of ASCII, and leaves every other byte alone.
    String toLowerCaseASCII() const;
    String toUpperCaseASCII() const;

    /// Decimal text of at least `width` characters, filled on the left.
    static String number(int value, int width = 0, char fill = ' ');
    static String number(unsigned char value, int width = 0, char fill = ' ');
    /// The shortest plain decimal (no exponent, a point in every locale) that reads back as the
    /// same value: 38 and not 38.0.
    static String number(float value);
    static String number(double value);
    /// Hexadecimal text in upper case, of at least `width` characters, filled on the left. A
    /// negative value prints as its two's complement.
    static String numberHex(int value, int width = 0, char fill = ' ');
    static String numberHex(unsigned char value, int width = 0, char fill = ' ');

    /// Decodes `size` bytes into UTF-8.
    ///
    /// "UTF-8", in any case, gives the bytes as they stand: malformed sequences stay, so that each
    /// reader can treat them in its own way, and so does a byte order mark. An empty name is UTF-8
    /// where all the bytes are valid UTF-8, otherwise windows-1252. With any other encoding, bytes
    /// that do not decode become U+FFFD, one for each bad byte, and an incomplete sequence at the
    /// end is dropped. A name that no converter knows raises an `fn::RuntimeException` that names
    /// it.
    static String withEncoding(const unsigned char* bytes, unsigned long size,
                               const String& encoding);

    /// True where some converter knows the name, that is, where `withEncoding` raises nothing.
    static bool isKnownEncoding(const String& encoding);

    /// Iterators over the code points. Both belong to this string and die with its next change.
    UTF8Iterator beginUTF8() const;
    UTF8Iterator endUTF8() const;
};

/// The bytes of a string, valid until its next change.
inline StringView to_string_view(const String& text) {  // NOLINT(readability-identifier-naming)
    return StringView(text.data(), text.size());
}

/// The container's own `find`, with a literal key turned into a `String` first.
template <class Container>
auto find(Container& container, const String& key) {
    return container.find(key);
}

}  // namespace fn
