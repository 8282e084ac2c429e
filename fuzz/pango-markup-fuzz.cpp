// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Pango's markup: what a run may hold, and that no markup makes more text than it is long.

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/string.h"
#include "foundation/xml-reader.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/attributed-text.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/pango-markup.h"
#include "subtitles/subtitle-parser.h"

#include "fuzz/fuzz-require.h"
#include "tests/support/describe.h"

namespace {

using subtitles::AttributedText;
using subtitles::TextAttributes;

bool isWellFormed(const fn::String& markup) {
    fn::String wrapped = "<root>" + markup + "</root>";
    wrapped.replaceAll("\r\n", "\n");
    fn::XMLReader reader = fn::XMLReader::readerForText(wrapped, fn::XMLReader::SubstituteEntities);
    while (reader.read(false)) {
    }
    return !reader.failed;
}

void checkRun(const AttributedText::Run& run) {
    const TextAttributes& attributes = run.attributes;
    FUZZ_REQUIRE(!run.text.empty());
    FUZZ_REQUIRE(attributes.attributeMask < (1U << 20U));
    FUZZ_REQUIRE(attributes.fontSizeRelative >= -3 && attributes.fontSizeRelative <= 3);
    // The two go together in this markup.
    const bool hasGravity = (attributes.attributeMask & TextAttributes::GRAVITY) != 0;
    const bool hasSpacing = (attributes.attributeMask & TextAttributes::LETTER_SPACING) != 0;
    FUZZ_REQUIRE(hasGravity == hasSpacing);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String markup(reinterpret_cast<const char*>(data), size);
    const AttributedText text = subtitles::pangoParkupToAttributedText(markup);
    std::size_t length = 0;
    for (const AttributedText::Run& run : text) {
        checkRun(run);
        length += run.text.size();
    }
    // A reference is longer than the letter that it stands for. The NUL is the fallback's.
    FUZZ_REQUIRE(length <= size + 1);
    const std::string description = subtitles::describe(text);
    const auto buffer = subtitles::attributedTextToBuffer(text);
    FUZZ_REQUIRE(subtitles::describe(subtitles::attributedTextFromBuffer(buffer.get())) ==
                 description);
    if (!isWellFormed(markup)) {
        FUZZ_REQUIRE(subtitles::describe(subtitles::parseSRTFormatting(markup)) == description);
    }
    return 0;
}
