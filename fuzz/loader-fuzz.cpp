// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The bytes of a file, from decoding to the stream that is played. The first byte of the input
// chooses the encoding, the format, and whether the file was cut at its end.

#include <cstddef>
#include <cstdint>

#include <gst/gst.h>

#include "foundation/byte-array.h"
#include "foundation/exception.h"
#include "foundation/utf8.h"

#include "subtitles/ass-parser.h"
#include "subtitles/ass-reader.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/load-string.h"
#include "subtitles/microdvd-parser.h"
#include "subtitles/smi-loader.h"
#include "subtitles/srt-reader.h"

#include "fuzz/fuzz-require.h"

namespace {

constexpr const char* encodings[] = {"",          "UTF-8",        "windows-1250", "windows-1252",
                                     "CP949",     "CP950",        "UTF-16",       "UTF-16LE",
                                     "UTF-32",    "ISO-2022-KR",  "ISO-2022-JP",  "GB18030",
                                     "Shift_JIS", "no such name", "UTF-7",        "utf8"};

using Data = fn::AutoPtr<subtitles::SubtitleData>;

void requireTexts(const subtitles::SubtitleData& data, GstBuffer* buffer) {
    if (data.mimeType == "application/x-ass") {
        fn::String entry(gst_buffer_get_size(buffer), '\0');
        gst_buffer_extract(buffer, 0, entry.data(), entry.size());
        subtitles::ASSParser().parseEntry(entry);
        return;
    }
    for (const auto& run : subtitles::attributedTextFromBuffer(buffer)) {
        FUZZ_REQUIRE(!run.text.empty());
    }
}

void requirePlayable(const subtitles::SubtitleData& data) {
    GstClockTime last = 0;
    for (const auto& buffer : data.buffers) {
        FUZZ_REQUIRE(gst_buffer_get_size(buffer.get()) > 0);
        FUZZ_REQUIRE(GST_BUFFER_DURATION_IS_VALID(buffer.get()));
        FUZZ_REQUIRE(GST_BUFFER_PTS_IS_VALID(buffer.get()));
        FUZZ_REQUIRE(GST_BUFFER_PTS(buffer.get()) >= last);
        last = GST_BUFFER_PTS(buffer.get());
        requireTexts(data, buffer.get());
    }
}

Data loadSMI(const fn::String& text) {
    subtitles::SMILoader loader;
    Data data(new subtitles::SubtitleData("application/x-attributed-text",
                                          fn::AutoPtr<_GstBuffer>(),
                                          subtitles::SubtitleData::NANOSECONDS));
    data->buffers = loader.loadText(text);
    return data;
}

Data sanitized(Data data) {
    data->sanitize();
    return data;
}

Data parseAs(unsigned format, const fn::String& text) {
    switch (format) {
        case 0: return sanitized(subtitles::parseSRT(text));
        case 1: return sanitized(subtitles::parseMicroDVD(text, -1));
        case 2: return sanitized(subtitles::parseASS(text));
        default: return loadSMI(text);
    }
}

void parse(unsigned format, const fn::String& text) {
    try {
        const Data data = parseAs(format, text);
        requirePlayable(*data);
    } catch (const fn::UTF8Exception&) {
        FUZZ_REQUIRE(!fn::utf8::isValid(fn::to_string_view(text)));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const fn::String encoding = encodings[data[0] % 16];
    fn::ByteArray bytes;
    bytes.append(data + 1, size - 1);
    const unsigned long limit = (data[0] & 16) != 0 ? bytes.size() : subtitles::loadLimit;
    try {
        parse((data[0] >> 5U) & 3U, subtitles::decodeText(bytes, encoding, limit));
    } catch (const fn::RuntimeException&) {
        // A name that detection gives never fails.
        FUZZ_REQUIRE(encoding == "no such name");
    }
    return 0;
}
