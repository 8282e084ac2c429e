// SPDX-License-Identifier: LGPL-2.1-or-later

#include "time-text.h"

#include <cstddef>

#include "decimal.h"

namespace tool {

namespace {

constexpr std::uint64_t nanosecondsPerSecond = 1000000000;
constexpr std::size_t mostDigits = 9;
constexpr std::uint64_t mostSeconds = 3600ULL * 1000000;

std::string padded(std::uint64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < width ? width - digits.size() : 0, '0') + digits;
}

/// The time in steps of 1/`stepsPerSecond`, a half rounded up; it cannot overflow.
std::uint64_t toSteps(std::uint64_t nanoseconds, std::uint64_t stepsPerSecond) {
    const std::uint64_t step = nanosecondsPerSecond / stepsPerSecond;
    return nanoseconds / step + (nanoseconds % step >= step / 2 ? 1 : 0);
}

std::string timeText(std::uint64_t steps, std::uint64_t stepsPerSecond, std::size_t hourWidth,
                     std::size_t fractionWidth) {
    const std::uint64_t seconds = steps / stepsPerSecond;
    return padded(seconds / 3600, hourWidth) + ":" + padded(seconds / 60 % 60, 2) + ":" +
           padded(seconds % 60, 2) + "." + padded(steps % stepsPerSecond, fractionWidth);
}

/// Seconds from "h:m:s", "m:s" or "s".
std::optional<std::uint64_t> parseSeconds(std::string_view text) {
    std::uint64_t seconds = 0;
    for (int part = 0; part < 3; ++part) {
        const std::size_t colon = text.find(':');
        const std::optional<std::uint64_t> number = decimal(text.substr(0, colon), mostDigits);
        if (!number || (part > 0 && *number >= 60)) {
            return std::nullopt;
        }
        seconds = seconds * 60 + *number;
        if (colon == std::string_view::npos) {
            return seconds <= mostSeconds ? std::optional(seconds) : std::nullopt;
        }
        text.remove_prefix(colon + 1);
    }
    return std::nullopt;
}

std::optional<std::uint64_t> parseFraction(std::string_view text) {
    std::optional<std::uint64_t> fraction = decimal(text, mostDigits);
    for (std::size_t width = text.size(); fraction && width < 9; ++width) {
        *fraction *= 10;
    }
    return fraction;
}

}  // namespace

std::string millisecondText(std::uint64_t nanoseconds) {
    return timeText(toSteps(nanoseconds, 1000), 1000, 2, 3);
}

std::string centisecondText(std::uint64_t nanoseconds) {
    return timeText(toSteps(nanoseconds, 100), 100, 1, 2);
}

std::optional<std::uint64_t> parseTime(std::string_view text) {
    const std::size_t point = text.find_first_of(".,");
    const std::optional<std::uint64_t> seconds = parseSeconds(text.substr(0, point));
    const std::optional<std::uint64_t> fraction =
        point == std::string_view::npos ? 0 : parseFraction(text.substr(point + 1));
    if (!seconds || !fraction) {
        return std::nullopt;
    }
    return *seconds * nanosecondsPerSecond + *fraction;
}

std::optional<std::int64_t> parseShift(std::string_view text) {
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    const std::optional<std::uint64_t> time = parseTime(text);
    if (!time) {
        return std::nullopt;
    }
    const auto shift = static_cast<std::int64_t>(*time);  // mostSeconds leaves room
    return isNegative ? -shift : shift;
}

}  // namespace tool
