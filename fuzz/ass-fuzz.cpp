// SPDX-License-Identifier: LGPL-2.1-or-later
//
// ASS scripts, as text that the loader has decoded already, and the times in them.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include <gst/gst.h>

#include "foundation/exception.h"
#include "foundation/string.h"
#include "foundation/utf8.h"

#include "subtitles/ass-parser.h"
#include "subtitles/ass-reader.h"

#include "fuzz/fuzz-require.h"
#include "tests/subtitles/formats-reference.h"

namespace {

// The expression takes quadratic time.
constexpr std::size_t referenceLimit = 4096;

fn::String bytesOf(_GstBuffer* buffer) {
    fn::String bytes;
    bytes.resize(gst_buffer_get_size(buffer));
    gst_buffer_extract(buffer, 0, bytes.data(), bytes.size());
    return bytes;
}

void checkEvent(_GstBuffer* buffer, int readOrder) {
    FUZZ_REQUIRE(GST_BUFFER_PTS_IS_VALID(buffer));
    FUZZ_REQUIRE(GST_BUFFER_DURATION(buffer) > 0);
    const fn::String event = bytesOf(buffer);
    FUZZ_REQUIRE(event.find(std::to_string(readOrder) + ",") == 0);
    FUZZ_REQUIRE(std::count(event.begin(), event.end(), ',') >= 8);
    // What the reader lets through is well-formed, so an event's text is never refused.
    subtitles::ASSParser().parseEntry(event);
}

void checkScript(const fn::String& text) {
    const auto script = subtitles::parseASS(text);
    FUZZ_REQUIRE(gst_buffer_get_size(script->header.get()) <= text.size() + 1);
    int readOrder = 0;
    for (const auto& buffer : script->buffers) {
        checkEvent(buffer.get(), readOrder++);
    }
    const std::size_t count = script->buffers.size();
    script->sanitize();
    FUZZ_REQUIRE(script->buffers.size() <= count);
}

void checkTime(const fn::String& text) {
    const subtitles::ass::TimeFields fields = subtitles::ass::findTime(fn::to_string_view(text));
    const auto expected = formats_reference::assTime(text);
    FUZZ_REQUIRE(expected.has_value() == !fields.fraction.empty());
    FUZZ_REQUIRE(expected.has_value() == (subtitles::ass::parseTime(text) != GST_CLOCK_TIME_NONE));
    const std::array<fn::StringView, 4> found = {fields.hours, fields.minutes, fields.seconds,
                                                 fields.fraction};
    FUZZ_REQUIRE(!expected || std::equal(found.begin(), found.end(), expected->begin()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(reinterpret_cast<const char*>(data), size);
    try {
        checkScript(text);
    } catch (const fn::UTF8Exception&) {
        FUZZ_REQUIRE(!fn::utf8::isValid(fn::to_string_view(text)));
    }
    if (size <= referenceLimit) {
        checkTime(text);
    }
    return 0;
}
