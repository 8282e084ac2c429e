// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/support/describe.h"

#include <string>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "subtitles/attributed-text-buffer.h"

namespace subtitles {
namespace {

AttributedText::Run boldRun(const fn::String& text) {
    AttributedText::Run run;
    run.attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    run.attributes.attributeMask = TextAttributes::FONT_WEIGHT;
    run.text = text;
    return run;
}

TEST(Describe, EscapesWhatCannotBeSeen) {
    EXPECT_EQ(escaped({"a\0\n\r\t\\\x01\x7F\xFF\xC3\xA9 \xC3", 13}),
              "a\\0\\n\\r\\t\\\\\\x01\\x7F\\xFF\xC3\xA9 \\xC3");
}

TEST(Describe, RunsStandInBrackets) {
    AttributedText text;
    EXPECT_EQ(describe(text), "");
    text.push_back(boldRun("bold"));
    text.push_back({TextAttributes(), fn::String(" plain\0", 7)});
    EXPECT_EQ(describe(text), "[weight=700: bold][ plain\\0]");
}

TEST(Describe, AttributesAreInTheOrderOfTheirBits) {
    TextAttributes attributes;
    attributes.foregroundColor = {0xFF, 0, 0};
    attributes.underline = TextAttributes::UNDERLINE_SINGLE;
    attributes.language = "ko";
    attributes.attributeMask = TextAttributes::FOREGROUND_COLOR | TextAttributes::UNDERLINE |
                               TextAttributes::LANGUAGE | 0x100000;
    EXPECT_EQ(describe(attributes), "color=ff0000 underline=1 language='ko' unknown=100000");
}

TEST(Describe, StreamIsOneLine) {
    SubtitleData* const stream =
        new SubtitleData("application/x-attributed-text", {}, SubtitleData::FRAMES);
    const fn::AutoPtr<SubtitleData> data(stream);
    data->buffers.push_back(attributedTextToBuffer(plainToAttributedText("a")));
    data->buffers.push_back(attributedTextToBuffer({}));
    data->buffers.back()->pts = 3;
    data->buffers.back()->duration = 4;
    EXPECT_EQ(describe(*data), "application/x-attributed-text frames | -+- [a] | 3+4 ");
    EXPECT_EQ(describeTimes(*data), "-+- 3+4");
}

}  // namespace
}  // namespace subtitles
