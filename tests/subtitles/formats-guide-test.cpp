// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The tables of "What each format becomes" show what comes out.

#include <string>

#include <gtest/gtest.h>

#include "subtitles/ass-exporter.h"
#include "subtitles/ass-parser.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/microdvd-parser.h"
#include "subtitles/pango-markup.h"
#include "subtitles/smi-loader.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/webvtt-exporter.h"

#include "tests/support/guide.h"

namespace subtitles {
namespace {

AttributedText fromMicroDVD(const fn::String& text) {
    const auto data = parseMicroDVD("{1}{2}" + text, -1);
    return attributedTextFromBuffer(data->buffers.front().get());
}

AttributedText fromASS(const fn::String& text) {
    return ASSParser().parseEntry("0,0,Default,,0,0,0,," + text);
}

AttributedText fromSMI(const fn::String& text) {
    SMILoader loader;
    loader.parseText("<sami><body><sync start=0><p>y" + text + "</p></sync></body></sami>");
    return attributedTextFromBuffer(loader.getBuffers().front().get());
}

std::string lookOfX(const AttributedText& text) {
    for (const AttributedText::Run& run : text) {
        if (run.text.find('x') != std::string::npos) {
            const fn::String look = run.attributes.toString();
            return look.empty() ? "plain" : look;
        }
    }
    return "dropped";
}

struct Format {
    const char* name;
    const char* section;
    AttributedText (*read)(const fn::String& text);
};

constexpr Format formats[] = {
    {"SRT", "SRT", &parseSRTFormatting},
    {"MicroDVD", "MicroDVD", &fromMicroDVD},
    {"ASS", "ASS and SSA", &fromASS},
    {"SMI", "SMI", &fromSMI},
    {"Pango", "Pango markup", &pangoParkupToAttributedText},
};

class FormatsGuide : public testing::TestWithParam<Format> {};

TEST_P(FormatsGuide, ShowsWhatComesOut) {
    const auto rows =
        test::codeRows(test::section(test::readGuide("formats.md"), GetParam().section));
    EXPECT_GT(rows.size(), 9U);
    for (const auto& row : rows) {
        EXPECT_EQ(lookOfX(GetParam().read(row.at(0))), row.at(1)) << row[0];
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, FormatsGuide, testing::ValuesIn(formats),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(FormatsGuide, ShowsWhatTheExportersWrite) {
    const auto rows =
        test::codeRows(test::section(test::readGuide("formats.md"), "What the exporters write"));
    EXPECT_GT(rows.size(), 9U);
    for (const auto& row : rows) {
        const AttributedText text = pangoParkupToAttributedText(row.at(0));
        EXPECT_EQ(std::string(ASSExporter().attributedTextToString(text)), row.at(1)) << row[0];
        EXPECT_EQ(std::string(WebVTTExporter().attributedTextToString(text)), "\n" + row.at(2))
            << row[0];
    }
}

}  // namespace
}  // namespace subtitles
