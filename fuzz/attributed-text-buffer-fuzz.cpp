// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Buffers as a broken producer may send them.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <gst/gst.h>

#include "subtitles/attributed-text-buffer.h"

#include "fuzz/fuzz-require.h"
#include "tests/support/describe.h"

namespace {

using subtitles::AttributedText;

// In memory of exactly its size, so that a read behind it is seen.
fn::AutoPtr<_GstBuffer> bufferOf(const std::uint8_t* data, std::size_t size) {
    auto* const copy = static_cast<std::uint8_t*>(g_malloc(std::max<std::size_t>(size, 1)));
    std::copy_n(data, size, copy);
    return fn::AutoPtr<_GstBuffer>(gst_buffer_new_wrapped(copy, size));
}

std::string everything(const AttributedText& text) {
    std::string result;
    for (const AttributedText::Run& run : text) {
        result += subtitles::describeFields(run.attributes) + ": " + run.text + "\n";
    }
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const AttributedText text = subtitles::attributedTextFromBuffer(bufferOf(data, size).get());
    const fn::AutoPtr<_GstBuffer> written = subtitles::attributedTextToBuffer(text);
    // What was read lay in the input, all of it.
    FUZZ_REQUIRE(gst_buffer_get_size(written.get()) <= std::max<std::size_t>(size, 4));
    const AttributedText again = subtitles::attributedTextFromBuffer(written.get());
    FUZZ_REQUIRE(again.size() == text.size());
    FUZZ_REQUIRE(everything(again) == everything(text));
    for (const AttributedText::Run& run : text) {
        FUZZ_REQUIRE((run.attributes.attributeMask & 0xFFF00000U) == 0);
    }
    return 0;
}
