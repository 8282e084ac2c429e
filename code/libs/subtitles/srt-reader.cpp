// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Reading SRT files.
//
// Between cues the reader looks for a time line and passes over everything else: counters, blank
// lines, a byte order mark, rubbish, the text of cues that it has dropped. Behind a time line it
// takes every line up to a blank one, also one that looks like another time line.

#include "subtitles/srt-reader.h"

#include <optional>
#include <utility>

#include <gst/gst.h>

#include "foundation/string-view.h"
#include "foundation/utf8.h"

#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/srt-time-line.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/text-lines.h"

namespace subtitles {

namespace {

/// Stands in for a line that is not valid UTF-8. It is mark-up like any line: what is between its
/// first "<" and its first ">" is an unknown tag, and the second ">" is all that is shown.
constexpr fn::StringView invalidEncoding =
    "<< Invalid Encoding - Please change subtitle encoding in Velquin Settings >>";

/// The same for further lines of a cue. Mark-up does not tell it from the whole notice, in whatever
/// tag or colour it stands, and a file may have a malformed line in every two of its bytes.
constexpr fn::StringView invalidEncodingAgain = "<<>>";

/// Reads the lines up to a blank one into `text`. A line of white space alone is blank. Where the
/// whole file is known to be valid, its lines are not looked through again.
void readCueText(TextLines& lines, bool allValid, fn::String& text) {
    text.clear();
    fn::StringView notice = invalidEncoding;
    while (const auto line = lines.next()) {
        const bool isValid = allValid || fn::utf8::isValid(*line);
        const fn::StringView trimmed = isValid ? fn::utf8::trimmed(*line) : notice;
        if (!isValid) {
            notice = invalidEncodingAgain;
        }
        if (trimmed.empty()) {
            return;
        }
        if (!text.empty()) {
            text += '\n';
        }
        text.append(trimmed);
    }
}

/// A span that shows nothing.
bool isEmpty(const srt::TimeSpan& span) {
    return span.end <= span.start || span.start == GST_CLOCK_TIME_NONE ||
           span.end == GST_CLOCK_TIME_NONE;
}

void appendCue(SubtitleData& data, const srt::TimeSpan& span, fn::AutoPtr<GstBuffer> buffer) {
    if (!buffer) {
        return;
    }
    GST_BUFFER_PTS(buffer.get()) = span.start;
    GST_BUFFER_DURATION(buffer.get()) = span.end - span.start;
    data.buffers.push_back(std::move(buffer));
}

}  // namespace

fn::AutoPtr<SubtitleData> parseSRT(const fn::String& text) {
    fn::AutoPtr<SubtitleData> data(new SubtitleData(
        "application/x-attributed-text", fn::AutoPtr<GstBuffer>(), SubtitleData::NANOSECONDS));
    TextLines lines(fn::to_string_view(text));
    const bool allValid = fn::utf8::isValid(fn::to_string_view(text));
    srt::CueFormatter formatter;
    fn::String cueText;
    while (const auto line = lines.next()) {
        const std::optional<srt::TimeSpan> span = srt::parseTimeLine(*line);
        // A cue that would be shown for no time is dropped with its time line alone: the lines of
        // its text are no time lines, and so are passed over.
        if (span && !isEmpty(*span)) {
            readCueText(lines, allValid, cueText);
            appendCue(*data, *span, formatter.toBuffer(cueText));
        }
    }
    return data;
}

}  // namespace subtitles
