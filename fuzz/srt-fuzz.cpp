// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SRT files, as text that the loader has decoded already.

#include <cstddef>
#include <cstdint>

#include <gst/gst.h>

#include "foundation/exception.h"
#include "foundation/string.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/srt-reader.h"

#include "fuzz/fuzz-require.h"

namespace {

void checkCues(const subtitles::SubtitleData& data) {
    for (const auto& buffer : data.buffers) {
        FUZZ_REQUIRE(GST_BUFFER_PTS_IS_VALID(buffer.get()));
        FUZZ_REQUIRE(GST_BUFFER_DURATION(buffer.get()) > 0);
        const subtitles::AttributedText text = subtitles::attributedTextFromBuffer(buffer.get());
        FUZZ_REQUIRE(!text.empty());
        for (const auto& run : text) {
            FUZZ_REQUIRE(!run.text.empty());
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(reinterpret_cast<const char*>(data), size);
    try {
        const fn::AutoPtr<subtitles::SubtitleData> cues = subtitles::parseSRT(text);
        checkCues(*cues);
        // A blank line more ends what the end of the file has ended.
        FUZZ_REQUIRE(subtitles::parseSRT(text + "\n\n")->buffers.size() == cues->buffers.size());
        const std::size_t count = cues->buffers.size();
        cues->sanitize();
        FUZZ_REQUIRE(cues->buffers.size() <= count);
    } catch (const fn::UTF8Exception&) {
        FUZZ_REQUIRE(text.find("-->") != fn::String::npos);
    }
    return 0;
}
