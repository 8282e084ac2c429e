// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SRT's inline mark-up: the machine's table, run over the text with the actions of `Markup`.

#include "subtitles/subtitle-parser.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "foundation/string-view.h"

#include "subtitles/attributed-text-writer.h"
#include "subtitles/byte-machine.h"
#include "subtitles/subtitle-parser-actions.h"
#include "subtitles/subtitle-parser-table.h"

namespace subtitles {

namespace {

/// How many runs a text can give at most. A run ends at a tag, and the shortest tag with a byte of
/// text has four bytes.
std::size_t mostRuns(fn::StringView text) {
    const auto tags = static_cast<std::size_t>(std::count(text.begin(), text.end(), '>'));
    return std::min(tags, text.size() / 4) + 1;
}

/// Text that the machine leaves as it is: no byte of it begins a tag or a code, or ends the text.
bool isPlain(const fn::String& text) {
    const auto holds = [&](int byte) {
        return std::memchr(text.data(), byte, text.size()) != nullptr;
    };
    return !holds('<') && !holds('{') && !holds('\0');
}

void readInto(srt::Markup& markup, const fn::String& text) {
    // The NUL at the end goes into the machine, too: it is the last input, and the last byte of the
    // text that comes out. One in the middle ends the text.
    const fn::StringView input(text.c_str(), std::strlen(text.c_str()) + 1);
    // Most cues are one run, which gets its memory once here; a text of a million runs would
    // otherwise be moved again and again.
    markup.state.result.reserve(mostRuns(input));
    markup.state.text.reserve(input.size());
    byte_machine::run(srt::markupMachine, input, markup);
    // In whatever state the machine has stopped, the text so far stands.
    markup.state.runDone();
}

}  // namespace

AttributedText srt::parseFormatting(const fn::String& text) {
    AttributedText result;
    Markup markup(result);
    readInto(markup, text);
    return result;
}

srt::CueFormatter::CueFormatter() : markup(std::make_unique<Markup>(runs)) {}

srt::CueFormatter::~CueFormatter() = default;

fn::AutoPtr<_GstBuffer> srt::CueFormatter::toBuffer(const fn::String& text) {
    if (isPlain(text)) {
        // As most cues are: one run, with the NUL at its end.
        return plainTextToBuffer(fn::StringView(text.c_str(), text.size() + 1), blocks);
    }
    markup->clear();
    readInto(*markup, text);
    return runs.empty() ? fn::AutoPtr<_GstBuffer>() : attributedTextToBuffer(runs, blocks);
}

AttributedText parseSRTFormatting(const fn::String& text) {
    return srt::parseFormatting(text);
}

}  // namespace subtitles
