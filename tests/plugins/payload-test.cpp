// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/payload.h"

#include <gtest/gtest.h>

namespace subtitles::element {
namespace {

AttributedText run(const char* text, TextAttributes attributes = TextAttributes()) {
    AttributedText runs;
    AttributedText::Run single;
    single.attributes = std::move(attributes);
    single.text = text;
    runs.push_back(single);
    return runs;
}

TEST(Payload, MarkupCharactersAreEscaped) {
    EXPECT_EQ(toPangoMarkup(run("a < b & c > d")), "a &lt; b &amp; c &gt; d");
    EXPECT_EQ(toPlainText(run("a < b & c > d")), "a < b & c > d");
}

TEST(Payload, MalformedTextIsRepaired) {
    EXPECT_EQ(toPangoMarkup(run("a\xFF")), "a\xEF\xBF\xBD");
    EXPECT_EQ(toPlainText(run("a\xFF")), "a\xEF\xBF\xBD");
}

struct Case {
    const char* name;
    TextAttributes::Attribute attribute;
    const char* expected;  ///< The attribute of the span.
};

class PayloadAttribute : public testing::TestWithParam<Case> {};

TEST_P(PayloadAttribute, BecomesASpan) {
    TextAttributes attributes;
    attributes.fontDescription = "Sans \"12\"";
    attributes.fontFamily = "Serif";
    attributes.fontSizeRelative = 2;
    attributes.fontSizeAbsolute = 12800;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    attributes.foregroundColor.red = 0xFF;
    attributes.backgroundColor.green = 0x0F;
    attributes.underline = TextAttributes::UNDERLINE_SINGLE;
    attributes.strikeThrough = true;
    attributes.attributeMask = GetParam().attribute;
    EXPECT_EQ(toPangoMarkup(run("x", attributes)),
              std::string("<span ") + GetParam().expected + ">x</span>");
    EXPECT_EQ(toPlainText(run("x", attributes)), "x");
}

constexpr Case cases[] = {
    {"Description", TextAttributes::FONT_DESCRIPTION, "font_desc=\"Sans &quot;12&quot;\""},
    {"Family", TextAttributes::FONT_FAMILY, "face=\"Serif\""},
    {"RelativeSize", TextAttributes::FONT_SIZE_RELATIVE, "size=\"x-large\""},
    {"AbsoluteSize", TextAttributes::FONT_SIZE_ABSOLUTE, "size=\"12800\""},
    {"Style", TextAttributes::FONT_STYLE, "style=\"italic\""},
    {"Weight", TextAttributes::FONT_WEIGHT, "weight=\"700\""},
    {"Foreground", TextAttributes::FOREGROUND_COLOR, "foreground=\"#FF0000\""},
    {"Background", TextAttributes::BACKGROUND_COLOR, "background=\"#000F00\""},
    {"Underline", TextAttributes::UNDERLINE, "underline=\"single\""},
    {"StrikeThrough", TextAttributes::STRIKE_THROUGH, "strikethrough=\"true\""},
};

INSTANTIATE_TEST_SUITE_P(Cases, PayloadAttribute, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(Payload, ValuesOutsideTheTablesReadNothingBeyondThem) {
    TextAttributes attributes;
    attributes.fontSizeRelative = 100;
    attributes.underline = static_cast<TextAttributes::Underline>(-7);
    attributes.attributeMask = TextAttributes::FONT_SIZE_RELATIVE | TextAttributes::UNDERLINE;
    EXPECT_EQ(toPangoMarkup(run("x", attributes)),
              "<span size=\"xx-small\" underline=\"none\">x</span>");
}

TEST(Payload, TwoSizesAreOneAttribute) {
    TextAttributes attributes;
    attributes.fontSizeAbsolute = 7;
    attributes.attributeMask =
        TextAttributes::FONT_SIZE_ABSOLUTE | TextAttributes::FONT_SIZE_RELATIVE;
    EXPECT_EQ(toPangoMarkup(run("x", attributes)), "<span size=\"7\">x</span>");
}

}  // namespace
}  // namespace subtitles::element
