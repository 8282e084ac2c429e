// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The bytes of a file, from decoding to the stream that is played. The first byte of the input
// chooses the format and whether the file was cut at its end, the second one the encoding.

#include <cstddef>
#include <cstdint>

#include <gst/gst.h>

#include "foundation/byte-array.h"
#include "foundation/exception.h"
#include "foundation/string.h"
#include "foundation/utf8.h"

#include "subtitles/ass-parser.h"
#include "subtitles/ass-reader.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/load-string.h"
#include "subtitles/microdvd-parser.h"
#include "subtitles/smi-loader.h"
#include "subtitles/srt-reader.h"

#include "fuzz/fuzz-playable.h"
#include "fuzz/fuzz-require.h"

namespace {

// All names that detection gives out, some that people give, and what is none.
// clang-format off
constexpr const char* encodings[] = {
    "", "UTF-8", "windows-1250", "windows-1252", "CP949", "CP950", "UTF-16", "UTF-16LE", "UTF-32",
    "ISO-2022-KR", "ISO-2022-JP", "GB18030", "SHIFT_JIS", "no such name", "UTF-7", "utf8",
    // Detected.
    "BIG5", "EUC-JP", "EUC-KR", "EUC-TW", "HZ-GB-2312", "IBM852", "IBM855", "IBM866", "ISO-2022-CN",
    "ISO-8859-1", "ISO-8859-2", "ISO-8859-3", "ISO-8859-4", "ISO-8859-5", "ISO-8859-6",
    "ISO-8859-7", "ISO-8859-8", "ISO-8859-9", "ISO-8859-10", "ISO-8859-11", "ISO-8859-13",
    "ISO-8859-15", "ISO-8859-16", "KOI8-R", "MAC-CENTRALEUROPE", "MAC-CYRILLIC", "TIS-620", "UHC",
    "UTF-16BE", "UTF-32BE", "UTF-32LE", "VISCII", "WINDOWS-1251", "WINDOWS-1253", "WINDOWS-1255",
    "WINDOWS-1256", "WINDOWS-1257", "WINDOWS-1258", "X-ISO-10646-UCS-4-2143",
    "X-ISO-10646-UCS-4-3412",
    // Given. Some have letters of two kinds, states, or text that they write for ever.
    "WINDOWS-1254", "WINDOWS-874", "IBM437", "IBM850", "KOI8-U", "MACINTOSH", "ISO-8859-14",
    "BIG5-HKSCS", "CP932", "CP936", "EUC-JISX0213", "SHIFT_JISX0213", "GBK", "JOHAB", "IBM930",
    "IBM1390", "ISO-2022-CN-EXT", "ISO-2022-JP-2", "ISO-2022-JP-3", "TSCII", "ARMSCII-8",
    "UCS-2", "UCS-4", "UNICODE", "UTF-16//TRANSLIT", "IBM037", "T.61", "TCVN5712-1",
};
// clang-format on
constexpr std::size_t encodingCount = sizeof(encodings) / sizeof(encodings[0]);

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

void requireReadable(const subtitles::SubtitleData& data) {
    for (const auto& buffer : data.buffers) {
        requireTexts(data, buffer.get());
    }
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
        default: return subtitles::SMILoader().loadText(text);
    }
}

void parse(unsigned format, const fn::String& text) {
    try {
        const Data data = parseAs(format, text);
        requirePlayable(*data);
        requireReadable(*data);
    } catch (const fn::UTF8Exception&) {
        FUZZ_REQUIRE(!fn::utf8::isValid(fn::to_string_view(text)));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    const fn::String encoding = encodings[data[1] % encodingCount];
    fn::ByteArray bytes;
    bytes.append(data + 2, size - 2);
    const unsigned long limit = (data[0] & 4) != 0 ? bytes.size() : subtitles::loadLimit;
    try {
        parse(data[0] & 3U, subtitles::decodeText(bytes, encoding, limit));
    } catch (const fn::RuntimeException&) {
        // The empty name, which asks for detection, is always known.
        FUZZ_REQUIRE(!fn::String::isKnownEncoding(encoding));
    }
    return 0;
}
