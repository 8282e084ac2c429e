// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Events as a player hands them back, held against one replacement after the other.

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/exception.h"
#include "foundation/string.h"

#include "subtitles/ass-parser.h"
#include "subtitles/subtitle-parser.h"

#include "fuzz/fuzz-require.h"
#include "tests/subtitles/formats-reference.h"
#include "tests/support/describe.h"

namespace {

// The expression takes quadratic time.
constexpr std::size_t referenceLimit = 4096;

subtitles::AttributedText reference(const fn::String& entry) {
    const auto pieces = entry.split(',', fn::String::KeepEmptyParts, 9);
    if (pieces.size() < 9 || pieces[8].find("\\p1") != fn::String::npos) {
        return {};
    }
    return subtitles::parseSRTFormatting(formats_reference::assMarkup(pieces[8]));
}

template <class Parse>
std::string answer(const fn::String& entry, Parse parse) {
    try {
        return subtitles::describe(parse(entry));
    } catch (const fn::UTF8Exception&) {
        return "malformed";
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String entry(reinterpret_cast<const char*>(data), size);
    const std::string found = answer(
        entry, [](const fn::String& text) { return subtitles::ASSParser().parseEntry(text); });
    if (size <= referenceLimit) {
        FUZZ_REQUIRE(found == answer(entry, reference));
    }
    return 0;
}
