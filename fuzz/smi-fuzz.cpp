// SPDX-License-Identifier: LGPL-2.1-or-later
//
// SMI documents, as text that the loader has decoded already.

#include <cstddef>
#include <cstdint>

#include <gst/gst.h>

#include "foundation/string.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/smi-loader.h"
#include "subtitles/subtitle-data.h"

#include "fuzz/fuzz-require.h"

namespace {

void checkText(const subtitles::AttributedText& text) {
    FUZZ_REQUIRE(!text.empty());
    for (const auto& run : text) {
        FUZZ_REQUIRE(!run.text.empty());
    }
}

void checkBuffers(const subtitles::SMILoader& loader) {
    for (const auto& buffer : loader.buffers) {
        FUZZ_REQUIRE(GST_BUFFER_PTS(buffer.get()) <= 2147483647 * GST_MSECOND);
        FUZZ_REQUIRE(!GST_BUFFER_DURATION_IS_VALID(buffer.get()));
        if (gst_buffer_get_size(buffer.get()) != 0) {
            checkText(subtitles::attributedTextFromBuffer(buffer.get()));
        }
    }
}

/// Who wants languages alone is told the same ones, and whether there is any text.
void checkLanguagesOnly(const fn::String& text, const subtitles::SMILoader& whole) {
    subtitles::SMILoader loader;
    loader.languagesOnly = true;
    loader.parseText(text);
    FUZZ_REQUIRE(loader.classes == whole.classes);
    FUZZ_REQUIRE(loader.languages.size() == whole.languages.size());
    FUZZ_REQUIRE(loader.buffers.empty() == whole.buffers.empty());
}

void checkLanguages(const subtitles::SMILoader& loader) {
    const auto languages = loader.getLanguages();
    FUZZ_REQUIRE(languages.size() == loader.classes.size());
    for (const auto& entry : languages) {
        FUZZ_REQUIRE(loader.classes.count(entry.className) == 1);
        FUZZ_REQUIRE(entry.languageCode.empty() || entry.languageName.empty());
    }
}

/// A stream that is loaded is the same as one whose every buffer is made first.
void checkStream(const fn::String& text, const subtitles::SMILoader& whole) {
    subtitles::SubtitleData data("application/x-attributed-text", fn::AutoPtr<_GstBuffer>(),
                                 subtitles::SubtitleData::NANOSECONDS);
    data.buffers = whole.getBuffers();
    data.sanitize();
    subtitles::SMILoader loader;
    const auto loaded = loader.loadText(text);
    FUZZ_REQUIRE(loaded->buffers.size() == data.buffers.size());
    auto expected = data.buffers.begin();
    for (const auto& buffer : loaded->buffers) {
        FUZZ_REQUIRE(GST_BUFFER_PTS(buffer.get()) == GST_BUFFER_PTS(expected->get()));
        FUZZ_REQUIRE(GST_BUFFER_DURATION(buffer.get()) == GST_BUFFER_DURATION(expected->get()));
        FUZZ_REQUIRE(gst_buffer_get_size(buffer.get()) == gst_buffer_get_size(expected->get()));
        ++expected;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(reinterpret_cast<const char*>(data), size);
    subtitles::SMILoader analysis;
    analysis.parseText(text);
    checkBuffers(analysis);
    checkLanguages(analysis);
    checkLanguagesOnly(text, analysis);

    subtitles::SMILoader loading;
    loading.parseStyleSheets = false;
    loading.parseText(text);
    // What a style sheet says changes no cue.
    FUZZ_REQUIRE(loading.buffers.size() == analysis.buffers.size());
    FUZZ_REQUIRE(loading.classes == analysis.classes);
    FUZZ_REQUIRE(loading.languages.empty());

    checkStream(text, analysis);

    for (const fn::String& wanted : analysis.classes) {
        subtitles::SMILoader one;
        one.parseStyleSheets = false;
        one.wantedClass = wanted;
        one.parseText(text);
        checkBuffers(one);
        FUZZ_REQUIRE(one.buffers.size() <= analysis.buffers.size());
    }
    return 0;
}
