// SPDX-License-Identifier: LGPL-2.1-or-later

#include "frame-rate.h"

#include <limits>
#include <numeric>

namespace tool {

namespace {

__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using): wants __extension__

constexpr std::size_t mostDigits = 18;  // so that every number is below 2^60
constexpr std::uint64_t nanosecondsPerSecond = 1000000000;

/// The whole number that the text is, digits and nothing else.
std::optional<std::uint64_t> parseDigits(std::string_view text) {
    if (text.empty() || text.size() > mostDigits) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        number = number * 10 + static_cast<std::uint64_t>(c - '0');
    }
    return number;
}

std::optional<FrameRate> inLowestTerms(std::optional<std::uint64_t> numerator,
                                       std::optional<std::uint64_t> denominator) {
    if (!numerator || !denominator || *denominator == 0) {
        return std::nullopt;
    }
    const std::uint64_t divisor = std::gcd(*numerator, *denominator);
    return FrameRate{*numerator / divisor, *denominator / divisor};
}

std::optional<FrameRate> parseDecimal(std::string_view whole, std::string_view fraction) {
    // The fraction's digits count together with the whole ones: 23.976 is 23976/1000.
    std::uint64_t denominator = 1;
    for (std::size_t i = 0; i < fraction.size() && i < mostDigits; ++i) {
        denominator *= 10;
    }
    if (whole.empty() || fraction.empty()) {
        return std::nullopt;
    }
    return inLowestTerms(parseDigits(std::string(whole).append(fraction)), denominator);
}

}  // namespace

std::optional<FrameRate> parseFrameRate(std::string_view text) {
    if (const std::size_t slash = text.find('/'); slash != std::string_view::npos) {
        return inLowestTerms(parseDigits(text.substr(0, slash)),
                             parseDigits(text.substr(slash + 1)));
    }
    if (const std::size_t point = text.find_first_of(".,"); point != std::string_view::npos) {
        return parseDecimal(text.substr(0, point), text.substr(point + 1));
    }
    return inLowestTerms(parseDigits(text), 1);
}

bool isPlausible(const FrameRate& rate) {
    return Wide{rate.numerator} * 1000 >= rate.denominator &&
           rate.numerator <= Wide{rate.denominator} * 1000;
}

std::string toString(const FrameRate& rate) {
    const std::string numerator = std::to_string(rate.numerator);
    return rate.denominator == 1 ? numerator : numerator + "/" + std::to_string(rate.denominator);
}

std::uint64_t frameTime(std::uint64_t frame, const FrameRate& rate) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    // Whole seconds apart from the rest: 64 bits of frame times 60 of denominator leave no room for
    // the nine digits of nanoseconds.
    const Wide scaled = Wide{frame} * rate.denominator;
    const Wide seconds = scaled / rate.numerator;
    if (seconds > most / nanosecondsPerSecond) {
        return most;
    }
    const Wide rest = scaled % rate.numerator * nanosecondsPerSecond / rate.numerator;
    const Wide time = seconds * nanosecondsPerSecond + rest;
    return time > most ? most : static_cast<std::uint64_t>(time);
}

}  // namespace tool
