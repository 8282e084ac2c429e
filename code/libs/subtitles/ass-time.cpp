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

#include "subtitles/ass-reader.h"

namespace subtitles::ass {

const fn::RegularExpression timePattern("(\\d+):(\\d+):(\\d+).(\\d+)", 0);

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

std::size_t findDigit(fn::StringView text, std::size_t position) {
    while (position < text.size() && !isDigit(text[position])) {
        ++position;
    }
    return position;
}

/// The run of digits at a position; empty where there is none.
fn::StringView digitsAt(fn::StringView text, std::size_t position) {
    std::size_t end = position;
    while (end < text.size() && isDigit(text[end])) {
        ++end;
    }
    return position < text.size() ? text.substr(position, end - position) : fn::StringView();
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
    return fn::String(digits).toUInt(0, 10, nullptr);
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

GstClockTime parseTime(const fn::String& text) {
    constexpr std::uint64_t second = 1000000000;
    const TimeFields fields = findTime(fn::to_string_view(text));
    if (fields.fraction.empty()) {
        return GST_CLOCK_TIME_NONE;
    }
    // Hours and minutes wrap at 32 bits, each by itself; what follows has 64.
    const std::uint32_t hours = toNumber(fields.hours) * 3600U;
    const std::uint32_t minutes = toNumber(fields.minutes) * 60U;
    const std::uint64_t seconds = std::uint64_t{hours} + minutes + toNumber(fields.seconds);
    const std::uint64_t fraction = std::uint64_t{toNumber(fields.fraction)} * second;
    const double digits = std::pow(10.0, static_cast<double>(fields.fraction.size()));
    return static_cast<GstClockTime>(static_cast<double>(seconds * second) +
                                     static_cast<double>(fraction) / digits);
}

}  // namespace subtitles::ass
