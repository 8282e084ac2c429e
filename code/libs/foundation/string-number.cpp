// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Numbers in text, and text of numbers, the same in every locale.

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <system_error>
#include <type_traits>

#include "foundation/ascii.h"
#include "foundation/string.h"

namespace fn {

namespace {

const char* skipSpace(const char* position, const char* end) {
    return std::find_if_not(position, end, ascii::isSpace);
}

void setEnd(unsigned long* end, const char* tail, const String& text) {
    if (end != nullptr) {
        *end = static_cast<unsigned long>(tail - text.data());
    }
}

template <class Number>
Number parse(const String& text, Number fallback, int base, unsigned long* end) {
    const char* const stop = text.data() + text.size();
    const char* start = skipSpace(text.data(), stop);
    // The converter below takes a minus by itself where the type is signed, but no plus.
    if (std::is_signed_v<Number> && stop - start > 1 && *start == '+' && start[1] != '-') {
        ++start;
    }
    Number number{};
    const auto [tail, error] = std::from_chars(start, stop, number, base);
    const bool good = error == std::errc();
    setEnd(end, good ? tail : text.data(), text);
    return good ? number : fallback;
}

String fill(String text, int width, char fill) {
    const auto wanted = static_cast<std::size_t>(std::max(width, 0));
    if (text.size() < wanted) {
        text.insert(0, wanted - text.size(), fill);
    }
    return text;
}

template <class Number>
String integerText(Number value, int base) {
    char buffer[40];
    const auto result = std::to_chars(std::begin(buffer), std::end(buffer), value, base);
    return String(buffer, static_cast<std::size_t>(result.ptr - buffer));
}

template <class Number>
String decimalText(Number value) {
    // The longest plain decimal is that of the smallest double, with over a thousand digits.
    char buffer[1200];
    const auto result =
        std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::fixed);
    return String(buffer, static_cast<std::size_t>(result.ptr - buffer));
}

}  // namespace

int String::toInt(int fallback, int base, unsigned long* end) const {
    return parse(*this, fallback, base, end);
}

unsigned int String::toUInt(unsigned int fallback, int base, unsigned long* end) const {
    return parse(*this, fallback, base, end);
}

long long String::toInt64(long long fallback, int base, unsigned long* end) const {
    return parse(*this, fallback, base, end);
}

double String::toFloat(double fallback, unsigned long* end) const {
    const char* const stop = data() + size();
    const char* start = skipSpace(data(), stop);
    if (stop - start > 1 && *start == '+' && start[1] != '-') {
        ++start;
    }
    // The converter knows "inf" and "nan" too, which are no decimals.
    const char* const digits = start != stop && *start == '-' ? start + 1 : start;
    const bool decimal = digits != stop && (ascii::isDigit(*digits) || *digits == '.');
    double number = 0.0;
    const auto result = decimal ? std::from_chars(start, stop, number, std::chars_format::fixed)
                                : std::from_chars_result{start, std::errc::invalid_argument};
    const bool good = result.ec == std::errc();
    setEnd(end, good ? result.ptr : data(), *this);
    return good ? number : fallback;
}

bool String::toBool() const {
    const String lower = toLowerCaseASCII();
    return lower == "true" || lower == "1" || lower == "yes" || lower == "on";
}

String String::number(int value, int width, char fill) {
    return fn::fill(integerText(value, 10), width, fill);
}

String String::number(unsigned char value, int width, char fill) {
    return fn::fill(integerText(static_cast<unsigned>(value), 10), width, fill);
}

String String::number(float value) {
    return decimalText(value);
}
String String::number(double value) {
    return decimalText(value);
}

String String::numberHex(int value, int width, char fill) {
    return fn::fill(integerText(static_cast<unsigned>(value), 16).toUpperCaseASCII(), width, fill);
}

String String::numberHex(unsigned char value, int width, char fill) {
    return numberHex(static_cast<int>(value), width, fill);
}

}  // namespace fn
