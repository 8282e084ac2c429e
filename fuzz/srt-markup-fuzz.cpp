// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SRT's inline mark-up, held against the alternatives of its language.

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/string.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/attributed-text.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/subtitle-parser.h"

#include "fuzz/fuzz-require.h"
#include "tests/subtitles/srt-markup-reference.h"
#include "tests/support/describe.h"

namespace {

constexpr std::uint32_t setByTags =
    subtitles::TextAttributes::FONT_WEIGHT | subtitles::TextAttributes::FONT_STYLE |
    subtitles::TextAttributes::UNDERLINE | subtitles::TextAttributes::FOREGROUND_COLOR;

// The reference reads slowly.
constexpr std::size_t referenceLimit = 4096;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String input(reinterpret_cast<const char*>(data), size);
    const subtitles::AttributedText text = subtitles::parseSRTFormatting(input);
    std::size_t length = 0;
    for (const auto& run : text) {
        FUZZ_REQUIRE(!run.text.empty());
        FUZZ_REQUIRE((run.attributes.attributeMask & ~setByTags) == 0);
        length += run.text.size();
    }
    FUZZ_REQUIRE(length <= size + 1);
    const std::string description = subtitles::describe(text);
    const auto buffer = subtitles::attributedTextToBuffer(text);
    FUZZ_REQUIRE(subtitles::describe(subtitles::attributedTextFromBuffer(buffer.get())) ==
                 description);
    if (size <= referenceLimit) {
        FUZZ_REQUIRE(subtitles::describe(srt_reference::parse(input)) == description);
    }
    return 0;
}
