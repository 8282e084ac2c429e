// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/pango-markup.h"

#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/support/describe.h"
#include "tests/support/file-watch.h"
#include "tests/support/temporary-folder.h"

namespace subtitles {
namespace {

struct Case {
    const char* name;
    const char* markup;
    const char* expected;
};

class PangoMarkup : public testing::TestWithParam<Case> {};

TEST_P(PangoMarkup, GivesRuns) {
    EXPECT_EQ(describe(pangoParkupToAttributedText(GetParam().markup)), GetParam().expected);
}

std::string caseName(const testing::TestParamInfo<Case>& test) {
    return test.param.name;
}

constexpr Case textCases[] = {
    {"EmptyTextHasNoRuns", "", ""},
    {"PlainTextIsOneRun", "plain", "[plain]"},
    {"LoneAmpersandFallsBack", "a & b", "[a & b\\0]"},
    {"OpenTagFallsBack", "<b>a", "[weight=700: a\\0]"},
    {"CarriageReturnGoes", "a\r\nb", "[a\\nb]"},
    {"CarriageReturnStaysInTheFallback", "a\r\nb&", "[a\\r\\nb&\\0]"},
    {"SelfClosedTagChangesNothing", "a<b/>c", "[ac]"},
    {"SelfClosedTagInATag", "<i>a<b/>c</i>", "[style=2: ac]"},
    {"NestedTagsAddUp", "<b>a<i>c</i>d</b>e",
     "[weight=700: a][style=2 weight=700: c][weight=700: d][e]"},
    {"SubInSupIsNotASum", "<sup>a<sub>b</sub></sup>",
     "[size=1 rise=5000: a][size=2 rise=-5000: b]"},
    {"BigTwiceCountsDown", "<big>a<big>b</big></big>", "[size=-1: a][size=-2: b]"},
    {"SmallAtTheEndOfTheScaleBreaksTheRun",
     "<small><small><small>a<small>b</small></small></small></small>", "[size=3: a][size=3: b]"},
    {"BigAtTheEndOfTheScaleBreaksTheRun", "<big><big><big>a<big>b</big></big></big></big>",
     "[size=-3: a][size=-3: b]"},
    {"BlankBetweenTagsIsLost", "<b>a</b> <i>c</i>", "[weight=700: a][style=2: c]"},
    {"BlankWithTextStays", "<b>a</b> c", "[weight=700: a][ c]"},
    {"UnknownTagFlowsOn", "a<q>b</q>c", "[abc]"},
    {"TagsAreLowerCase", "a<B>b</B>c", "[abc]"},
    {"EntitiesAreExpanded", "a &amp; &lt;b&gt; &#233;", "[a & <b> \xC3\xA9]"},
    {"UnknownEntityFallsBack", "a&nbsp;b", "[a&nbsp;b\\0]"},
    {"CommentIsNothing", "a<!-- b -->c", "[ac]"},
    {"CharacterDataSectionIsNoText", "a<![CDATA[b]]>c", "[ac]"},
    {"EndTagWithoutStartFallsBack", "a</b>c", "[a][c\\0]"},
    {"MalformedTextFallsBack", "a\xFF", "[a\\xFF\\0]"},
};

INSTANTIATE_TEST_SUITE_P(Text, PangoMarkup, testing::ValuesIn(textCases), caseName);

constexpr Case tagCases[] = {
    {"Span", "<span color='red'>x</span>", "[color=ff0000: x]"},
    {"Bold", "<b>x</b>", "[weight=700: x]"},
    {"Big", "<big>x</big>", "[size=-1: x]"},
    {"Italic", "<i>x</i>", "[style=2: x]"},
    {"StrikeThrough", "<s>x</s>", "[strike=1: x]"},
    {"Subscript", "<sub>x</sub>", "[size=1 rise=-5000: x]"},
    {"Superscript", "<sup>x</sup>", "[size=1 rise=5000: x]"},
    {"Small", "<small>x</small>", "[size=1: x]"},
    {"Teletype", "<tt>x</tt>", "[family='Monospace': x]"},
    {"Underline", "<u>x</u>", "[underline=1: x]"},
};

INSTANTIATE_TEST_SUITE_P(Tags, PangoMarkup, testing::ValuesIn(tagCases), caseName);

struct SpanCase {
    const char* name;
    const char* attributes;
    const char* expected;  ///< The attributes of the run.
};

class PangoSpan : public testing::TestWithParam<SpanCase> {};

TEST_P(PangoSpan, SetsAttributes) {
    const std::string markup = std::string("<span ") + GetParam().attributes + ">x</span>";
    const AttributedText runs = pangoParkupToAttributedText(markup);
    ASSERT_EQ(runs.size(), 1U);
    EXPECT_EQ(describe(runs.front().attributes), GetParam().expected);
    EXPECT_EQ(runs.front().text, "x");
}

constexpr SpanCase spanCases[] = {
    {"Font", "font='Sans 12'", "description='Sans 12'"},
    {"FontDesc", "font_desc='Sans 12'", "description='Sans 12'"},
    {"LaterRowWins", "font_desc='a' font='b'", "description='a'"},
    {"FontFamily", "font_family='Serif'", "family='Serif'"},
    {"Face", "face='Serif'", "family='Serif'"},
    {"FontSize", "font_size='12800'", "points=12800"},
    {"Size", "size='12800'", "points=12800"},
    {"SizeOverFontSize", "size='2' font_size='1'", "points=2"},
    {"SizeWithATail", "size='12pt'", "points=12"},
    {"SizeOfZeroIsAWord", "size='0'", "size=0"},
    {"SizeWord", "size='XX-Large'", "size=3"},
    {"SizeWordUnknown", "size='huge'", "size=0"},
    {"SizeSmaller", "size='smaller'", "size=1"},
    {"SizeLarger", "size='LARGER'", "size=-1"},
    {"FontStyle", "font_style='italic'", "style=2"},
    {"Style", "style='oblique'", "style=1"},
    {"FontWeight", "font_weight='heavy'", "weight=900"},
    {"Weight", "weight='550'", "weight=600"},
    {"FontVariant", "font_variant='smallcaps'", "variant=1"},
    {"Variant", "variant='small-caps'", "variant=1"},
    {"FontStretch", "font_stretch='condensed'", "stretch=-2"},
    {"Stretch", "stretch='expanded'", "stretch=2"},
    {"Foreground", "foreground='#00ff00'", "color=00ff00"},
    {"Fgcolor", "fgcolor='blue'", "color=0000ff"},
    {"Color", "color='Red'", "color=ff0000"},
    {"ColorOverForeground", "color='red' foreground='blue' fgcolor='green'", "color=ff0000"},
    {"NoColor", "color='nosuchcolour'", ""},
    {"Background", "background='red'", "background=ff0000"},
    {"Bgcolor", "bgcolor='red'", "background=ff0000"},
    {"Underline", "underline='double'", "underline=2"},
    {"UnderlineColor", "underline_color='red'", "underlineColor=ff0000"},
    {"Rise", "rise='-1000'", "rise=-1000"},
    {"StrikeThroughSetsTheRise", "strikethrough='true'", "rise=0"},
    {"StrikeThroughTakesTheRiseForItsTruth", "strikethrough='false' rise='1'", "rise=1"},
    {"StrikeThroughOverwritesTheRise", "strikethrough='true' rise='1000'", "rise=0"},
    {"StrikeThroughIsAColor", "strikethrough='red'", "rise=0 strikeColor=ff0000"},
    {"Fallback", "fallback='false'", "fallback=0"},
    {"FallbackTrue", "fallback='yes'", "fallback=1"},
    {"Lang", "lang='ko'", "language='ko'"},
    {"LetterSpacingAloneIsDropped", "letter_spacing='100'", ""},
    {"LetterSpacingGoesWithGravity", "letter_spacing='100' gravity='east'",
     "spacing=100 gravity=2"},
    {"GravityTakesLetterSpacingAlong", "gravity='west'", "spacing=0 gravity=4"},
    {"GravityHint", "gravity_hint='strong'", "gravityHint=1"},
    {"UnknownAttribute", "alpha='50%'", ""},
};

INSTANTIATE_TEST_SUITE_P(Cases, PangoSpan, testing::ValuesIn(spanCases),
                         [](const auto& test) { return test.param.name; });

// A port of this machine, at which nobody must knock.
class Listener {
public:
    Listener() : handle(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        auto* const place = reinterpret_cast<sockaddr*>(&address);
        if (handle < 0 || bind(handle, place, size) != 0 || listen(handle, 1) != 0 ||
            getsockname(handle, place, &size) != 0) {
            throw std::runtime_error("no port to listen at");
        }
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() { close(handle); }

    std::string url() const {
        return "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/secret";
    }

    /// Knocks, as a fetch would.
    void call() const {
        const int caller = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        // It need not be answered.
        static_cast<void>(
            connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof(address)));
        close(caller);
    }

    bool wasCalled() const { return accept(handle, nullptr, nullptr) >= 0; }

private:
    int handle;
    sockaddr_in address = {};
};

// Ways in which XML names something that is elsewhere.
std::vector<std::string> markupsThatName(const std::string& place) {
    const std::string quoted = '"' + place + '"';
    return {
        "<!DOCTYPE root [<!ENTITY x SYSTEM " + quoted + ">]><b>&x;</b>",
        "<!DOCTYPE root SYSTEM " + quoted + "><b>x</b>",
        "<!DOCTYPE root [<!ENTITY % x SYSTEM " + quoted + "> %x;]><b>x</b>",
        "</root><!DOCTYPE root [<!ENTITY x SYSTEM " + quoted + ">]><root>&x;",
        "<?xml version='1.0'?><!DOCTYPE root PUBLIC \"x\" " + quoted + "><b>x</b>",
        "<?xml-stylesheet href=" + quoted + "?><b>x</b>",
        "<x:include xmlns:x='http://www.w3.org/2001/XInclude' href=" + quoted +
            " parse='text'/><b>x</b>",
        "<span xmlns=" + quoted + " font=" + quoted + ">x</span>",
        "<b xsi:noNamespaceSchemaLocation=" + quoted + ">x</b>",
    };
}

TEST(PangoMarkupText, OpensNoFile) {
    const test::TemporaryFolder folder;
    const std::string path = folder.writeFile("secret", "SECRET");
    const test::FileWatch watch(folder.path());
    for (const std::string& place : {path, "file://" + path}) {
        for (const std::string& markup : markupsThatName(place)) {
            EXPECT_EQ(describe(pangoParkupToAttributedText(markup)).find("SECRET"),
                      std::string::npos);
            EXPECT_TRUE(watch.opened().empty()) << markup;
        }
    }
    EXPECT_TRUE(std::ifstream(path).is_open());
    EXPECT_FALSE(watch.opened().empty());
}

TEST(PangoMarkupText, CallsNoAddress) {
    const Listener listener;
    for (const std::string& markup : markupsThatName(listener.url())) {
        pangoParkupToAttributedText(markup);
        EXPECT_FALSE(listener.wasCalled()) << markup;
    }
    listener.call();
    EXPECT_TRUE(listener.wasCalled());
}

std::size_t lengthOf(const AttributedText& text) {
    std::size_t length = 0;
    for (const AttributedText::Run& run : text) {
        length += run.text.size();
    }
    return length;
}

TEST(PangoMarkupText, DoesNotGrowByEntities) {
    std::string declarations = "<!ENTITY e0 'haha'>";
    for (int i = 1; i < 30; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        declarations.append("<!ENTITY e").append(std::to_string(i)).append(" '");
        declarations.append(inner).append(inner).append(inner).append("'>");
    }
    for (const std::string& markup :
         {"<!DOCTYPE root [" + declarations + "]><b>&e29;</b>",
          "</root><!DOCTYPE root [" + declarations + "]><root>&e29;",
          "<![CDATA[" + declarations + "]]>&e29;", declarations + "<b>&e29;</b>"}) {
        EXPECT_LE(lengthOf(pangoParkupToAttributedText(markup)), markup.size() + 1);
    }
}

TEST(PangoMarkupText, NamedAndNumberedReferencesOnlyShrink) {
    std::string markup;
    for (int i = 0; i < 100000; ++i) {
        markup += "&amp;&#x1F600;";
    }
    EXPECT_EQ(lengthOf(pangoParkupToAttributedText(markup)), 500000U);
}

TEST(PangoMarkupText, DeepNestingReturns) {
    std::string markup;
    for (int i = 0; i < 100000; ++i) {
        markup += "<b>";
    }
    EXPECT_EQ(describe(pangoParkupToAttributedText(markup + "x")), "[weight=700: x\\0]");
}

}  // namespace
}  // namespace subtitles
