// SPDX-License-Identifier: LGPL-2.1-or-later
//
// MicroDVD: an entry on each line, timed in video frames.
//
// The few control codes that say how text looks become the tags of SRT, whose mark-up machine does
// the rest. The codes have no closing form, so an attribute lasts to the end of its entry.

#include "subtitles/microdvd-parser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gst/gst.h>

#include "foundation/ascii.h"
#include "foundation/utf8.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/brace-blocks.h"
#include "subtitles/decimal-digits.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/text-lines.h"
#include "subtitles/text-rewrite.h"

namespace subtitles {

namespace microdvd {

const fn::RegularExpression pattern("\\{(\\d+)\\}\\s*\\{(\\d*)\\}\\s*(.*)",
                                    fn::RegularExpression::UTF8);

namespace {

// clang-format off
constexpr Rewrite codes[] = {
    {"|",     "\n"},
    // In the format, the lower-case codes hold for a line and the upper-case ones for the entry.
    // Here both hold for the entry.
    {"{y:i}", "<i>"},
    {"{y:u}", "<u>"},
    {"{y:b}", "<b>"},
    {"{Y:i}", "<i>"},
    {"{Y:u}", "<u>"},
    {"{Y:b}", "<b>"},
};
// clang-format on
static_assert(onePassIsEnough(codes), "the rows would have to be replaced one after the other");

constexpr Rewriter rewriter(codes);

template <class Predicate>
fn::StringView take(fn::StringView& rest, Predicate predicate) {
    std::size_t size = 0;
    while (size < rest.size() && predicate(rest[size])) {
        ++size;
    }
    const fn::StringView taken = rest.substr(0, size);
    rest.remove_prefix(size);
    return taken;
}

bool takeByte(fn::StringView& rest, char byte) {
    const bool found = !rest.empty() && rest.front() == byte;
    rest.remove_prefix(found ? 1 : 0);
    return found;
}

/// The entry that begins with the first byte of `rest`, an opening brace. Nothing in the pattern
/// can match in two ways, so there is no going back.
std::optional<Entry> entryAt(fn::StringView rest) {
    Entry entry;
    rest.remove_prefix(1);
    entry.start = take(rest, fn::ascii::isDigit);
    if (entry.start.empty() || !takeByte(rest, '}')) {
        return {};
    }
    take(rest, fn::ascii::isSpace);
    if (!takeByte(rest, '{')) {
        return {};
    }
    entry.end = take(rest, fn::ascii::isDigit);
    if (!takeByte(rest, '}')) {
        return {};
    }
    take(rest, fn::ascii::isSpace);
    entry.text = rest;
    return entry;
}

/// The duration in frames; 0 where the entry names no end or one that is not behind its start.
GstClockTime durationOf(GstClockTime start, long long end) {
    const auto endFrame = static_cast<GstClockTime>(end);
    return end != -1 && endFrame > start ? endFrame - start : 0;
}

fn::AutoPtr<_GstBuffer> makeBuffer(const Entry& entry, const fn::String& markup,
                                   srt::CueFormatter& formatter) {
    const GstClockTime start = decimalNumber<std::uint32_t>(entry.start, 0);
    const long long end = decimalNumber<long long>(entry.end, -1);
    fn::AutoPtr<_GstBuffer> buffer = formatter.toBuffer(markup);
    if (!buffer) {
        // An entry whose text gives no run makes a buffer all the same.
        buffer = attributedTextToBuffer(AttributedText());
    }
    GST_BUFFER_PTS(buffer.get()) = start;
    GST_BUFFER_DURATION(buffer.get()) = durationOf(start, end);
    return buffer;
}

/// The lines before the first that is not valid UTF-8.
fn::StringView validLines(fn::StringView text) {
    const auto valid = static_cast<std::size_t>(
        fn::utf8::findMalformed(text.data(), text.data() + text.size()) - text.data());
    return valid == text.size() ? text : text.substr(0, text.rfind('\n', valid) + 1);
}

/// `findEntry` in a line that is valid UTF-8.
std::optional<Entry> entryIn(fn::StringView line) {
    // A start that fails is given up at the next opening brace at the latest, so no byte is read
    // more than twice, however many braces there are.
    for (std::size_t open = line.find('{'); open != fn::StringView::npos;
         open = line.find('{', open + 1)) {
        if (const auto entry = entryAt(line.substr(open))) {
            return entry;
        }
    }
    return {};
}

}  // namespace

std::optional<Entry> findEntry(fn::StringView line) {
    if (!fn::utf8::isValid(line)) {
        // The expression refuses such a line in its own words.
        std::vector<fn::RegularExpression::Match> groups;
        pattern.match(fn::String(line), 0, groups);
    }
    return entryIn(line);
}

void rewriteCodes(fn::StringView text, fn::String& markup) {
    if (text.find('{') == fn::StringView::npos) {
        // As most entries are: no code but the line ends.
        markup.assign(text);
        std::replace(markup.begin(), markup.end(), '|', '\n');
        return;
    }
    markup.clear();
    rewriter.append(markup, text);
    removeBraceBlocks(markup);
}

}  // namespace microdvd

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reader's own copy is its interface
fn::AutoPtr<SubtitleData> parseMicroDVD(fn::String text, int maxEntries) {
    fn::AutoPtr<SubtitleData> data(new SubtitleData(
        "application/x-attributed-text", fn::AutoPtr<_GstBuffer>(), SubtitleData::FRAMES));
    // Behind a malformed line the file is taken to be of another encoding. What was read before it
    // is the result.
    TextLines lines(microdvd::validLines(fn::to_string_view(text)));
    srt::CueFormatter formatter;
    fn::String markup;  // Of one entry; kept for its memory.
    while (const auto line = lines.next()) {
        const auto entry = microdvd::entryIn(*line);
        if (!entry) {
            continue;
        }
        // The limit is looked at with the next entry in hand.
        if (maxEntries != -1 && static_cast<long long>(data->buffers.size()) >= maxEntries) {
            break;
        }
        microdvd::rewriteCodes(entry->text, markup);
        data->buffers.push_back(microdvd::makeBuffer(*entry, markup, formatter));
    }
    return data;
}

}  // namespace subtitles
