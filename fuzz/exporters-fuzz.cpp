// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Both exporters, on what a buffer holds and on what SRT mark-up makes of the same bytes.

#include <cstddef>
#include <cstdint>

#include <gst/gst.h>

#include "foundation/auto-ptr.h"
#include "foundation/exception.h"
#include "foundation/string.h"
#include "foundation/utf8.h"

#include "subtitles/ass-exporter.h"
#include "subtitles/ass-parser.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/webvtt-exporter.h"

#include "fuzz/fuzz-require.h"
#include "tests/subtitles/formats-reference.h"

namespace {

fn::AutoPtr<_GstBuffer> bufferOf(const fn::String& bytes) {
    fn::AutoPtr<_GstBuffer> buffer(gst_buffer_new_allocate(nullptr, bytes.size(), nullptr));
    gst_buffer_fill(buffer.get(), 0, bytes.data(), bytes.size());
    return buffer;
}

fn::String plainTextOf(const subtitles::AttributedText& text) {
    fn::String plain;
    for (const auto& run : text) {
        plain += run.text;
    }
    return plain;
}

void checkExports(const subtitles::AttributedText& text) {
    const subtitles::WebVTTExporter vtt;
    const fn::String cue = vtt.attributedTextToString(text);
    FUZZ_REQUIRE(cue.empty() == text.empty());
    FUZZ_REQUIRE(cue.empty() || cue.front() == '\n');
    for (const auto& run : text) {
        const fn::String escaped = vtt.processRunText(run.text);
        FUZZ_REQUIRE(escaped == formats_reference::webVTTText(run.text));
        FUZZ_REQUIRE(cue.find(escaped) != fn::String::npos);
    }
    const fn::String event = subtitles::ASSExporter().attributedTextToString(text);
    FUZZ_REQUIRE(event.find('\n') == fn::String::npos);
    FUZZ_REQUIRE(event.size() >= plainTextOf(text).size());
}

/// What has no braces, backslashes and "<" comes back from an event as it went in.
void checkRoundTrip(const subtitles::AttributedText& text) {
    const fn::String plain = plainTextOf(text);
    // A text that ends inside a tag has no NUL at its end, and may be empty.
    if (plain.empty() || plain.find_first_of("{}\\<") != fn::String::npos ||
        plain.find('\0') != plain.size() - 1) {
        return;
    }
    const fn::String event = subtitles::ASSExporter().attributedTextToString(text);
    try {
        FUZZ_REQUIRE(plainTextOf(subtitles::ASSParser().parseEntry(",,,,,,,," + event)) == plain);
    } catch (const fn::UTF8Exception&) {
        // A tag may have parted the bytes of a letter.
        FUZZ_REQUIRE(!fn::utf8::isValid(fn::to_string_view(event)));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String bytes(reinterpret_cast<const char*>(data), size);
    checkExports(subtitles::attributedTextFromBuffer(bufferOf(bytes).get()));
    const subtitles::AttributedText cue = subtitles::parseSRTFormatting(bytes);
    checkExports(cue);
    checkRoundTrip(cue);
    return 0;
}
