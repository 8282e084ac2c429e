// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Time lines of SRT files.
//
// Around a given "-->" the expression can match in one way only: each of its parts ends where the
// next byte is of another kind, so that all its runs of digits and of white space are whole ones.
// They are read from the arrow outward, to the left and to the right, and the first arrow for which
// both succeed is the leftmost match. No run reaches over another arrow: each byte is looked at
// twice at most.

#include "subtitles/srt-time-line.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "foundation/ascii.h"
#include "foundation/utf8.h"

namespace subtitles::srt {

const fn::RegularExpression time(
    R"((\d+):(\d+):(\d+)[\.,](\d+)\s*-->\s*(\d+):(\d+):(\d+)[\.,](\d+).*)",
    fn::RegularExpression::UTF8);

namespace {

constexpr fn::StringView arrow = "-->";
constexpr std::size_t groupsOfTime = 4;

/// What may stand before the second, third and fourth number of a time.
bool isSeparator(char byte, std::size_t group) {
    return group == groupsOfTime - 1 ? byte == '.' || byte == ',' : byte == ':';
}

fn::StringView withoutLeadingSpace(fn::StringView text) {
    const auto begin = std::find_if_not(text.begin(), text.end(), fn::ascii::isSpace);
    return text.substr(static_cast<std::size_t>(begin - text.begin()));
}

fn::StringView withoutTrailingSpace(fn::StringView text) {
    const auto end = std::find_if_not(text.rbegin(), text.rend(), fn::ascii::isSpace);
    return text.substr(0, static_cast<std::size_t>(text.rend() - end));
}

fn::StringView leadingDigits(fn::StringView text) {
    const auto end = std::find_if_not(text.begin(), text.end(), fn::ascii::isDigit);
    return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

fn::StringView trailingDigits(fn::StringView text) {
    const auto begin = std::find_if_not(text.rbegin(), text.rend(), fn::ascii::isDigit);
    return text.substr(static_cast<std::size_t>(text.rend() - begin));
}

/// Reads the time at the end of `text` from right to left; false where there is none.
bool readTimeAtEnd(fn::StringView text, fn::StringView* groups) {
    text = withoutTrailingSpace(text);
    for (std::size_t i = groupsOfTime; i-- > 0;) {
        groups[i] = trailingDigits(text);
        text.remove_suffix(groups[i].size());
        if (groups[i].empty()) {
            return false;
        }
        if (i != 0) {
            if (text.empty() || !isSeparator(text.back(), i)) {
                return false;
            }
            text.remove_suffix(1);
        }
    }
    return true;
}

/// Reads the time at the start of `text`; false where there is none.
bool readTimeAtStart(fn::StringView text, fn::StringView* groups) {
    text = withoutLeadingSpace(text);
    for (std::size_t i = 0; i < groupsOfTime; ++i) {
        if (i != 0) {
            if (text.empty() || !isSeparator(text.front(), i)) {
                return false;
            }
            text.remove_prefix(1);
        }
        groups[i] = leadingDigits(text);
        text.remove_prefix(groups[i].size());
        if (groups[i].empty()) {
            return false;
        }
    }
    return true;
}

/// `fn::String::toUInt` of digits, without a string: 0 for a number that does not fit.
std::uint32_t toUInt(fn::StringView digits) {
    constexpr std::uint64_t limit = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t number = 0;
    for (const char digit : digits) {
        number = number * 10 + static_cast<std::uint64_t>(digit - '0');
        if (number > limit) {
            return 0;
        }
    }
    return static_cast<std::uint32_t>(number);
}

GstClockTime toTime(std::uint32_t hours, std::uint32_t minutes, std::uint32_t seconds,
                    std::uint32_t fraction) {
    // Both products wrap in 32 bits; the sum and all that follows has 64.
    const std::uint32_t secondsOfHours = hours * 3600U;
    const std::uint32_t secondsOfMinutes = minutes * 60U;
    const std::uint64_t sum = std::uint64_t{secondsOfHours} + secondsOfMinutes + seconds;
    // Milliseconds, however many digits there are.
    return sum * GST_SECOND + fraction * GST_MSECOND;
}

GstClockTime toTime(const fn::StringView* groups) {
    return toTime(toUInt(groups[0]), toUInt(groups[1]), toUInt(groups[2]), toUInt(groups[3]));
}

/// How nearly every time line looks. Each 0 stands for a digit, each comma for one or for a point.
constexpr fn::StringView usualLine = "00:00:00,000 --> 00:00:00,000";
constexpr std::size_t startPosition = 0;
constexpr std::size_t endPosition = 17;
constexpr std::size_t fractionPosition = 8;  ///< Of its separator, in a time.

/// Which bytes may stand where: from the lowest one on, so many more. Filled up to whole words with
/// places where only NUL may stand.
struct UsualBytes {
    std::array<unsigned char, 32> lowest = {};
    std::array<unsigned char, 32> span = {};
};

constexpr UsualBytes usualBytes() {
    UsualBytes bytes;
    for (std::size_t i = 0; i < usualLine.size(); ++i) {
        bytes.lowest[i] = static_cast<unsigned char>(usualLine[i]);
        bytes.span[i] = usualLine[i] == '0' ? 9 : usualLine[i] == ',' ? '.' - ',' : 0;
    }
    return bytes;
}

bool isUsual(fn::StringView line) {
    static constexpr UsualBytes usual = usualBytes();
    if (line.size() != usualLine.size()) {
        return false;
    }
    std::array<unsigned char, 32> bytes = {};
    std::memcpy(bytes.data(), line.data(), usualLine.size());
    // No way out of the loop: so the compiler compares many bytes at once.
    unsigned char beyond = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto distance = static_cast<unsigned char>(bytes[i] - usual.lowest[i]);
        beyond |= static_cast<unsigned char>(distance > usual.span[i] ? 1 : 0);
    }
    // A hyphen lies between the comma and the point.
    return beyond == 0 && line[startPosition + fractionPosition] != '-' &&
           line[endPosition + fractionPosition] != '-';
}

/// The time at a position of a line that is as usual.
GstClockTime usualTime(fn::StringView line, std::size_t position) {
    const auto digit = [&](std::size_t i) {
        return static_cast<std::uint32_t>(line[position + i] - '0');
    };
    return toTime(digit(0) * 10 + digit(1), digit(3) * 10 + digit(4), digit(6) * 10 + digit(7),
                  digit(9) * 100 + digit(10) * 10 + digit(11));
}

}  // namespace

GstClockTime parseNumber(const fn::String& line,
                         std::vector<fn::RegularExpression::Match>::const_iterator group) {
    std::array<std::uint32_t, groupsOfTime> numbers = {};
    for (std::uint32_t& number : numbers) {
        number = fn::String(line, group->offset, group->length).toUInt(0, 10, nullptr);
        ++group;
    }
    return toTime(numbers[0], numbers[1], numbers[2], numbers[3]);
}

std::optional<TimeGroups> matchTimeLine(fn::StringView line) {
    std::size_t found = line.find(arrow);
    if (found == fn::StringView::npos) {
        return std::nullopt;
    }
    if (!fn::utf8::isValid(line)) {
        // The expression refuses the line in its own words.
        std::vector<fn::RegularExpression::Match> matches;
        time.match(fn::String(line.data(), line.size()), 0, matches);
    }
    TimeGroups groups;
    while (found != fn::StringView::npos) {
        if (readTimeAtEnd(line.substr(0, found), groups.data()) &&
            readTimeAtStart(line.substr(found + arrow.size()), &groups[groupsOfTime])) {
            return groups;
        }
        found = line.find(arrow, found + arrow.size());
    }
    return std::nullopt;
}

std::optional<TimeSpan> parseTimeLine(fn::StringView line) {
    if (isUsual(line)) {
        return TimeSpan{usualTime(line, startPosition), usualTime(line, endPosition)};
    }
    const std::optional<TimeGroups> groups = matchTimeLine(line);
    if (!groups) {
        return std::nullopt;
    }
    return TimeSpan{toTime(groups->data()), toTime(&(*groups)[groupsOfTime])};
}

}  // namespace subtitles::srt
