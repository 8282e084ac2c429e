// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The example of "The attributed-text buffer format" is what the writer writes and the reader
// reads.

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/subtitle-parser.h"

#include "tests/support/describe.h"
#include "tests/support/guide.h"

namespace subtitles {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The cue that the example is of.
AttributedText cue() {
    return parseSRTFormatting("<i>Hi</i>!");
}

// A line of the example is an offset, bytes in hexadecimal, and what they are: two blanks apart.
Bytes exampleBytes() {
    Bytes bytes;
    for (const std::string& line : test::fencedLines(test::readGuide("buffer-format.md"), "text")) {
        EXPECT_EQ(std::stoul(line), bytes.size()) << line;
        std::istringstream words(line.substr(5, 12));
        for (std::string word; words >> word;) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
        }
    }
    return bytes;
}

TEST(BufferFormatGuide, ShowsTheBytesOfItsExample) {
    const auto buffer = attributedTextToBuffer(cue());
    Bytes written(gst_buffer_get_size(buffer.get()));
    gst_buffer_extract(buffer.get(), 0, written.data(), written.size());
    EXPECT_EQ(exampleBytes(), written);
    EXPECT_NE(test::readGuide("buffer-format.md")
                  .find("\n" + std::to_string(written.size()) + " bytes in all."),
              std::string::npos);
}

TEST(BufferFormatGuide, ShowsBytesThatReadAsItsExample) {
    const Bytes bytes = exampleBytes();
    const fn::AutoPtr<_GstBuffer> buffer(
        gst_buffer_new_memdup(bytes.data(), static_cast<gsize>(bytes.size())));
    EXPECT_EQ(describe(attributedTextFromBuffer(buffer.get())), describe(cue()));
    EXPECT_EQ(describe(cue()), "[style=2: Hi][!\\0]");
}

}  // namespace
}  // namespace subtitles
