// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Times of ASS events.
//
// The expression tells what a time is, but it takes quadratic time on a long run of digits: it
// tries every digit as the start of the hours. All starts within one run of digits fare alike, so
// the search here tries the first digit of each run only.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "foundation/ascii.h"

#include "subtitles/ass-reader.h"
#include "subtitles/decimal-digits.h"

namespace subtitles::ass {

const fn::RegularExpression timePattern("(\\d+):(\\d+):(\\d+).(\\d+)", 0);

namespace {

std::size_t findDigit(fn::StringView text, std::size_t position) {
    while (position < text.size() && !fn::ascii::isDigit(text[position])) {
        ++position;
    }
    return position;
}

bool isColonAt(fn::StringView text, std::size_t position) {
    return position < text.size() && text[position] == ':';
}

/// Seconds and fraction, from the first digit of the seconds. Any byte may separate them, a digit
/// among others: where no digit follows behind the run, the run's last digit is the fraction, the
/// one before it the separator, and the seconds are what is left.
bool splitSeconds(fn::StringView text, std::size_t position, TimeFields& fields) {
    const fn::StringView run = digitsAt(text, position);
    const std::size_t separator = position + run.size();
    if (run.empty()) {
        return false;
    }
    if (separator < text.size() && text[separator] != '\n') {
        fields.fraction = digitsAt(text, separator + 1);
        fields.seconds = run;
    }
    if (fields.fraction.empty() && run.size() > 2) {
        fields.fraction = run.substr(run.size() - 1);
        fields.seconds = run.substr(0, run.size() - 2);
    }
    return !fields.fraction.empty();
}

/// The time whose hours are the run of digits at `position`; empty fields where there is none.
TimeFields timeAt(fn::StringView text, std::size_t position) {
    TimeFields fields;
    fields.hours = digitsAt(text, position);
    position += fields.hours.size();
    if (!isColonAt(text, position)) {
        return {};
    }
    fields.minutes = digitsAt(text, position + 1);
    position += 1 + fields.minutes.size();
    if (fields.minutes.empty() || !isColonAt(text, position)) {
        return {};
    }
    return splitSeconds(text, position + 1, fields) ? fields : TimeFields();
}

std::uint32_t toNumber(fn::StringView digits) {
    return decimalNumber<std::uint32_t>(digits, 0);
}

/// Ten to the power of a number of digits.
double powerOfTen(std::size_t exponent) {
    // Those of fractions as people write them; the function takes longer than all the rest.
    constexpr double powers[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
    return exponent < std::size(powers) ? powers[exponent]
                                        : std::pow(10.0, static_cast<double>(exponent));
}

/// A time as scripts have it: "0:00:00.00", and nothing else.
bool isUsual(fn::StringView text) {
    constexpr fn::StringView usual = "0:00:00.00";
    if (text.size() != usual.size()) {
        return false;
    }
    // All bytes are compared, which takes less time than to stop early.
    bool differs = false;
    for (std::size_t i = 0; i < usual.size(); ++i) {
        differs |= usual[i] == '0' ? !fn::ascii::isDigit(text[i]) : text[i] != usual[i];
    }
    return !differs;
}

/// Its nanoseconds: numbers so small are the same without double precision.
GstClockTime usualTime(fn::StringView text) {
    const auto digit = [text](std::size_t i) { return static_cast<GstClockTime>(text[i] - '0'); };
    const auto digits = [&](std::size_t i) { return digit(i) * 10 + digit(i + 1); };
    return (digit(0) * 3600 + digits(2) * 60 + digits(5)) * GST_SECOND +
           digits(8) * (GST_SECOND / 100);
}

}  // namespace

TimeFields findTime(fn::StringView text) {
    std::size_t start = findDigit(text, 0);
    while (start < text.size()) {
        const TimeFields fields = timeAt(text, start);
        if (!fields.fraction.empty()) {
            return fields;
        }
        start = findDigit(text, start + digitsAt(text, start).size());
    }
    return {};
}

GstClockTime toNanoseconds(const TimeFields& fields) {
    constexpr std::uint64_t second = 1000000000;
    if (fields.fraction.empty()) {
        return GST_CLOCK_TIME_NONE;
    }
    // Hours and minutes wrap at 32 bits, each by itself; what follows has 64.
    const std::uint32_t hours = toNumber(fields.hours) * 3600U;
    const std::uint32_t minutes = toNumber(fields.minutes) * 60U;
    const std::uint64_t seconds = std::uint64_t{hours} + minutes + toNumber(fields.seconds);
    const std::uint64_t fraction = std::uint64_t{toNumber(fields.fraction)} * second;
    return static_cast<GstClockTime>(static_cast<double>(seconds * second) +
                                     static_cast<double>(fraction) /
                                         powerOfTen(fields.fraction.size()));
}

GstClockTime timeIn(fn::StringView text) {
    return isUsual(text) ? usualTime(text) : toNanoseconds(findTime(text));
}

GstClockTime parseTime(const fn::String& text) {
    return timeIn(fn::to_string_view(text));
}

}  // namespace subtitles::ass
