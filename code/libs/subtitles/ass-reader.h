// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <vector>

#include <gst/gst.h>

#include "foundation/auto-ptr.h"
#include "foundation/regular-expression.h"
#include "foundation/string.h"

#include "subtitles/subtitle-data.h"

namespace subtitles {

namespace ass {

/// A time: hours, minutes, seconds and the digits of a fraction, with any one byte but a line feed
/// before the fraction. It is not anchored, and it works on bytes.
extern const fn::RegularExpression timePattern;

/// What the groups of `timePattern` hold. The views are of the text.
struct TimeFields {
    fn::StringView hours;
    fn::StringView minutes;
    fn::StringView seconds;
    fn::StringView fraction;
};

/// Looks for the first match of `timePattern`: the answers of the expression, in linear time.
/// All views are empty where there is none.
TimeFields findTime(fn::StringView text);

/// The time in nanoseconds, `GST_CLOCK_TIME_NONE` where all fields are empty.
///
/// The fraction is a decimal fraction of a second: "5" and "500" are half a second both. The sum
/// runs in double precision, so very large times lose their lowest digits. A number that does not
/// fit 32 bits counts as 0.
GstClockTime toNanoseconds(const TimeFields& fields);

/// The first time in the text in nanoseconds, `GST_CLOCK_TIME_NONE` where there is none.
GstClockTime parseTime(const fn::String& text);

/// The same for a view: `toNanoseconds` of what `findTime` finds, only faster where the text is a
/// time as most scripts have it.
GstClockTime timeIn(fn::StringView text);

/// The entry of `values` that stands where `name` first stands in `names`; `defaultValue` where
/// there is none.
fn::String getSegment(const std::vector<fn::String>& names, const std::vector<fn::String>& values,
                      const fn::String& name, const fn::String& defaultValue);

}  // namespace ass

/// Reads an ASS or SSA script: a stream of raw events, never null, with all lines before the events
/// section as its header. The buffers stand in file order and are not sanitized.
///
/// An event is the text "read order,layer,style,name,left margin,right margin,vertical margin,
/// effect,text" without a NUL at its end, whatever the order of the file's columns; the values
/// stand as in the file. Its times are those of the buffer, in nanoseconds; a buffer whose end is
/// missing or not behind its start has no duration. Lines without a start time are dropped.
///
/// Raises `fn::UTF8Exception` where any line is malformed UTF-8.
fn::AutoPtr<SubtitleData> parseASS(const fn::String& text);

}  // namespace subtitles
