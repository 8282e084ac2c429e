// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <array>
#include <optional>
#include <vector>

#include <gst/gst.h>

#include "foundation/regular-expression.h"
#include "foundation/string-view.h"
#include "foundation/string.h"

namespace subtitles::srt {

/// What a time line is: "00:00:01,000 --> 00:00:02,000" anywhere in a line. Groups 1 to 4 are the
/// hours, minutes, seconds and fraction of the start, 5 to 8 those of the end.
extern const fn::RegularExpression time;

/// The time in nanoseconds that four groups of a match in `line` tell, from `group` on.
///
/// The fraction counts milliseconds however many digits it has: "5" is 5 ms and "5000" five
/// seconds. Minutes and seconds may exceed 59. A number that does not fit 32 bits counts as 0; the
/// seconds of the hours and of the minutes wrap in 32 bits each.
GstClockTime parseNumber(const fn::String& line,
                         std::vector<fn::RegularExpression::Match>::const_iterator group);

/// The eight groups of a time line: digits, as views of the line.
using TimeGroups = std::array<fn::StringView, 8>;

/// The groups of `time` on `line`, nothing where it is no time line: the expression's answers, in
/// time proportional to the line where the expression needs its square on a long run of digits.
///
/// A line without "-->" is no time line, whatever its bytes. One with "-->" that is not valid UTF-8
/// raises the expression's `fn::UTF8Exception`.
std::optional<TimeGroups> matchTimeLine(fn::StringView line);

/// When a cue is shown, in nanoseconds.
struct TimeSpan {
    GstClockTime start;
    GstClockTime end;
};

/// What a time line tells, with the numbers of `parseNumber`. Nothing, and errors, as in
/// `matchTimeLine`. The end may lie before the start.
std::optional<TimeSpan> parseTimeLine(fn::StringView line);

}  // namespace subtitles::srt
