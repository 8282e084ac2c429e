// SPDX-License-Identifier: LGPL-2.1-or-later

#include "frame-rate.h"

#include <limits>
#include <numeric>

#include "decimal.h"

namespace tool {

namespace {

__extension__ typedef unsigned __int128 Wide;  // NOLINT(modernize-use-using): wants __extension__

constexpr std::size_t mostDigits = 18;  // so that every number is below 2^60
constexpr std::uint64_t nanosecondsPerSecond = 1000000000;

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
    return inLowestTerms(decimal(std::string(whole).append(fraction), mostDigits), denominator);
}

}  // namespace

std::optional<FrameRate> parseFrameRate(std::string_view text) {
    if (const std::size_t slash = text.find('/'); slash != std::string_view::npos) {
        return inLowestTerms(decimal(text.substr(0, slash), mostDigits),
                             decimal(text.substr(slash + 1), mostDigits));
    }
    if (const std::size_t point = text.find_first_of(".,"); point != std::string_view::npos) {
        return parseDecimal(text.substr(0, point), text.substr(point + 1));
    }
    return inLowestTerms(decimal(text, mostDigits), 1);
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
