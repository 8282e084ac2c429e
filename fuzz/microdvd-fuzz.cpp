// SPDX-License-Identifier: LGPL-2.1-or-later
//
// MicroDVD files, as text that the loader has decoded already. Each line is held against the
// expression that tells what an entry is.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include <gst/gst.h>

#include "foundation/exception.h"
#include "foundation/string.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/microdvd-parser.h"

#include "fuzz/fuzz-require.h"
#include "tests/subtitles/formats-reference.h"
#include "tests/support/describe.h"

namespace {

// The expressions take quadratic time.
constexpr std::size_t referenceLimit = 4096;

using Groups = std::optional<std::array<fn::String, 3>>;

Groups entryOf(const fn::String& line) {
    const auto entry = subtitles::microdvd::findEntry(fn::to_string_view(line));
    if (!entry) {
        return {};
    }
    return {{fn::String(entry->start), fn::String(entry->end), fn::String(entry->text)}};
}

/// What a line gives, and whether it is refused.
template <class Find>
std::pair<Groups, bool> answer(const fn::String& line, Find find) {
    try {
        return {find(line), false};
    } catch (const fn::UTF8Exception&) {
        return {Groups(), true};
    }
}

void checkLine(const fn::String& line) {
    const auto found = answer(line, entryOf);
    FUZZ_REQUIRE(found == answer(line, formats_reference::microDVDEntry));
    if (found.first) {
        const fn::String& text = found.first->back();
        fn::String markup;
        subtitles::microdvd::rewriteCodes(fn::to_string_view(text), markup);
        FUZZ_REQUIRE(markup == formats_reference::microDVDMarkup(text));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(reinterpret_cast<const char*>(data), size);
    const auto entries = subtitles::parseMicroDVD(text, -1);
    FUZZ_REQUIRE(entries->timestampUnit == subtitles::SubtitleData::FRAMES);
    for (const auto& buffer : entries->buffers) {
        FUZZ_REQUIRE(GST_BUFFER_PTS(buffer.get()) <= UINT32_MAX);
        FUZZ_REQUIRE(GST_BUFFER_DURATION_IS_VALID(buffer.get()));
        subtitles::attributedTextFromBuffer(buffer.get());
    }
    // A limit cuts the same stream short.
    const auto first = subtitles::parseMicroDVD(text, 3);
    FUZZ_REQUIRE(first->buffers.size() == std::min<std::size_t>(3, entries->buffers.size()));
    FUZZ_REQUIRE(subtitles::describe(*entries).find(subtitles::describe(*first)) == 0);
    const std::size_t count = entries->buffers.size();
    entries->sanitize();
    FUZZ_REQUIRE(entries->buffers.size() == count);
    if (size <= referenceLimit) {
        for (const fn::String& line : text.split('\n', fn::String::KeepEmptyParts, -1)) {
            checkLine(line);
        }
    }
    return 0;
}
