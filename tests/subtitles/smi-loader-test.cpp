// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The document machine, driven call by call: what libxml2 closes or opens by itself plays no part
// here.

#include "subtitles/smi-loader.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "subtitles/attributed-text-buffer.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

using Attributes = std::map<fn::String, fn::String>;

/// Each buffer as its PTS in milliseconds and its runs; an end mark has no runs.
std::string describeBuffers(const SMILoader& loader) {
    std::string text;
    for (const fn::AutoPtr<_GstBuffer>& buffer : loader.getBuffers()) {
        text += text.empty() ? "" : " ";
        text += std::to_string(GST_BUFFER_PTS(buffer.get()) / GST_MSECOND) + ":";
        text += gst_buffer_get_size(buffer.get()) == 0
                    ? "end"
                    : describe(attributedTextFromBuffer(buffer.get()));
        EXPECT_EQ(GST_BUFFER_DURATION(buffer.get()), GST_CLOCK_TIME_NONE);
    }
    return text;
}

class SMIDocument : public testing::Test {
protected:
    void sync(const char* start) { loader.startElement("sync", {{"start", start}}); }
    void p() { loader.startElement("p", {}); }
    void p(const char* className) { loader.startElement("p", {{"class", className}}); }
    void open(const char* name) { loader.startElement(name, {}); }
    void close(const char* name) { loader.endElement(name); }
    void text(const char* text) { loader.characters(text); }

    SMILoader loader;
};

TEST_F(SMIDocument, StartIsInMilliseconds) {
    sync("1500");
    p();
    text("a");
    loader.finishSync();
    ASSERT_EQ(loader.buffers.size(), 1U);
    EXPECT_EQ(GST_BUFFER_PTS(loader.buffers.front().get()), 1500000000U);
}

TEST_F(SMIDocument, StartOfZeroCounts) {
    sync("0");
    p();
    text("a");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "0:[a]");
}

TEST_F(SMIDocument, StartThatIsNegativeOrAWordDropsTheText) {
    for (const char* const start : {"-5", "soon", "", "99999999999"}) {
        sync(start);
        p();
        text("a");
        close("p");
        close("sync");
    }
    EXPECT_EQ(describeBuffers(loader), "");
}

TEST_F(SMIDocument, SyncWithoutStartDropsTheText) {
    open("sync");
    p();
    text("a");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "");
    EXPECT_EQ(loader.syncStart, -1);
}

TEST_F(SMIDocument, LargestStartDoesNotWrap) {
    sync("2147483647");
    EXPECT_EQ(loader.syncStart, 2147483647000000LL);
}

TEST_F(SMIDocument, ClassesCompareInLowerCase) {
    loader.wantedClass = "krcc";
    sync("1");
    p("KRCC");
    text("a");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a]");
}

TEST_F(SMIDocument, OtherClassesGiveNoTextAndNoEndMark) {
    loader.wantedClass = "krcc";
    sync("1");
    p("ENCC");
    text("a");
    close("p");
    sync("2");
    p("ENCC");
    text("&nbsp;");
    close("p");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "");
}

TEST_F(SMIDocument, TwoParagraphsOfOneBlockAreTwoLines) {
    sync("1");
    p();
    text("a");
    p();
    text("b");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a\\n][b]");
}

TEST_F(SMIDocument, ParagraphBehindAStyledOneStartsALine) {
    sync("1");
    p();
    open("b");
    text("a");
    close("b");
    p();
    text("b");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[weight=700: a][\\n][b]");
}

TEST_F(SMIDocument, BrIsALineFeedInTheRun) {
    sync("1");
    p();
    text("a");
    open("br");
    close("br");
    text("b");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a\\nb]");
}

TEST_F(SMIDocument, BrOutsideACountingParagraphIsNothing) {
    open("br");
    sync("1");
    open("br");
    p();
    text("a");
    close("p");
    open("br");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a]");
}

struct InlineCase {
    const char* name;
    const char* tag;
    const char* expected;
};

class SMIInlineTag : public SMIDocument, public testing::WithParamInterface<InlineCase> {};

TEST_P(SMIInlineTag, SetsItsAttributeUpToItsEnd) {
    sync("1");
    p();
    text("a");
    open(GetParam().tag);
    text("b");
    close(GetParam().tag);
    text("c");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), GetParam().expected);
}

constexpr InlineCase inlineCases[] = {
    {"Bold", "b", "1:[a][weight=700: b][c]"},
    {"Italic", "i", "1:[a][style=2: b][c]"},
    {"Underline", "u", "1:[a][underline=1: b][c]"},
    {"StrikeThrough", "s", "1:[a][strike=1: b][c]"},
    {"FontIsNothing", "font", "1:[abc]"},
    {"SpanIsNothing", "span", "1:[abc]"},
    {"DivIsNothing", "div", "1:[abc]"},
};

INSTANTIATE_TEST_SUITE_P(Cases, SMIInlineTag, testing::ValuesIn(inlineCases),
                         [](const auto& test) { return test.param.name; });

TEST_F(SMIDocument, OpenBoldEndsWithTheParagraph) {
    sync("1");
    p();
    open("b");
    text("a");
    close("p");
    p();
    text("b");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[weight=700: a][\\n][b]");
}

TEST_F(SMIDocument, BadlyNestedTagsEndWhatTheirKindSet) {
    sync("1");
    p();
    open("b");
    text("1");
    open("i");
    text("2");
    close("b");
    text("3");
    close("i");
    text("4");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[weight=700: 1][style=2 weight=700: 2][style=2: 3][4]");
}

TEST_F(SMIDocument, OneClosingTagEndsAllOfItsKind) {
    sync("1");
    p();
    open("b");
    open("b");
    text("1");
    close("b");
    text("2");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[weight=700: 1][2]");
}

TEST_F(SMIDocument, EmptyBoldAtAParagraphsEndMakesTheNextOneBold) {
    sync("1");
    p();
    open("b");
    close("p");
    p();
    text("a");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[weight=700: a]");
}

TEST_F(SMIDocument, LineEndsOfTheSourceAreNoText) {
    sync("1");
    p();
    text("\n");
    text("\r\n");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "");
}

TEST_F(SMIDocument, LineEndsJoinWordsAndTabsBecomeBlanks) {
    sync("1");
    p();
    text("one\r\ntwo\tthree  four");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[onetwo three  four]");
}

struct BlankCase {
    const char* name;
    const char* text;
    const char* expected;
};

class SMIBlankText : public SMIDocument, public testing::WithParamInterface<BlankCase> {};

TEST_P(SMIBlankText, MayBeAnEndMark) {
    sync("1");
    p();
    text(GetParam().text);
    close("sync");
    EXPECT_EQ(describeBuffers(loader), GetParam().expected);
}

constexpr BlankCase blankCases[] = {
    {"Blank", " ", "1:end"},
    {"NoBreakSpace", "\xC2\xA0", "1:end"},
    {"Entity", "&nbsp;", "1:end"},
    {"EntityWithoutSemicolon", "&nbsp", "1:end"},
    {"AllOfThem", " \xC2\xA0&nbsp;&nbsp ", "1:end"},
    {"BlankBetweenNoBreakSpacesIsText", "\xC2\xA0 \xC2\xA0", "1:[\xC2\xA0 \xC2\xA0]"},
    {"SemicolonAloneIsText", "&nbsp;;", "1:[&nbsp;;]"},
    {"NothingIsNoBuffer", "", ""},
};

INSTANTIATE_TEST_SUITE_P(Cases, SMIBlankText, testing::ValuesIn(blankCases),
                         [](const auto& test) { return test.param.name; });

TEST_F(SMIDocument, TwoBlankRunsAreARealBuffer) {
    sync("1");
    p();
    text("&nbsp;");
    open("b");
    text("&nbsp;");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[&nbsp;][weight=700: &nbsp;]");
}

TEST_F(SMIDocument, NextSyncEndsTheBlock) {
    sync("1");
    p();
    text("a");
    sync("2");
    p();
    text("&nbsp;");
    sync("3");
    EXPECT_EQ(describeBuffers(loader), "1:[a] 2:end");
}

TEST_F(SMIDocument, TextBehindASyncCountsBeforeItsParagraph) {
    sync("1");
    p();
    text("a");
    sync("2");
    text("early ");
    p();
    text("b");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a] 2:[early \\n][b]");
}

TEST_F(SMIDocument, TextOfABrokenBlockJoinsTheNextOne) {
    sync("1");
    p();
    text("a");
    sync("soon");
    text("lost?");
    sync("3");
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a] 3:[lost?]");
}

TEST_F(SMIDocument, ParagraphOutsideASyncEndsTheCounting) {
    sync("1");
    p();
    close("sync");
    p();
    text("a");
    EXPECT_FALSE(loader.inParagraph);
    EXPECT_EQ(loader.run.text, "");
}

TEST_F(SMIDocument, BlockThatIsNotClosedIsLost) {
    sync("1");
    p();
    text("a");
    EXPECT_EQ(describeBuffers(loader), "");
}

/// A run for each number, every second one bold.
AttributedText numbers(int count) {
    AttributedText runs;
    for (int i = 0; i < count; ++i) {
        AttributedText::Run run;
        run.text = std::to_string(i);
        if (i % 2 != 0) {
            run.attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
            run.attributes.attributeMask = TextAttributes::FONT_WEIGHT;
        }
        runs.push_back(run);
    }
    return runs;
}

TEST_F(SMIDocument, RunsOfACueMayBeMany) {
    for (const int count : {2, 63, 64, 65, 66, 20000}) {
        loader.buffers.clear();
        sync("1");
        p();
        for (int i = 0; i < count; ++i) {
            i % 2 != 0 ? open("b") : close("b");
            text(std::to_string(i).c_str());
        }
        sync("2");
        p();
        text("next");
        close("sync");
        ASSERT_EQ(loader.buffers.size(), 2U);
        EXPECT_EQ(describe(attributedTextFromBuffer(loader.buffers.front().get())),
                  describe(numbers(count)));
        EXPECT_EQ(describe(attributedTextFromBuffer(loader.buffers.back().get())), "[next]");
    }
}

TEST_F(SMIDocument, ClassesAreNotedOutsideSyncBlocksToo) {
    p("ENCC");
    p("KRCC");
    p("");
    p();
    EXPECT_EQ(loader.classes, (std::set<fn::String>{"encc", "krcc"}));
}

TEST_F(SMIDocument, ClassesThatAreManyAreAllNoted) {
    loader.wantedClass = "c1400";
    for (int round = 1; round <= 2; ++round) {
        sync(std::to_string(round).c_str());
        for (int i = 0; i < 1500; ++i) {
            p(("C" + std::to_string(i)).c_str());
            text(std::to_string(i).c_str());
        }
    }
    close("sync");
    EXPECT_EQ(loader.classes.size(), 1500U);
    EXPECT_EQ(loader.classes.count("c1499"), 1U);
    EXPECT_EQ(describeBuffers(loader), "1:[1400] 2:[1400]");
}

TEST_F(SMIDocument, WhereLanguagesAloneAreWantedTheFirstBufferIsEnough) {
    loader.languagesOnly = true;
    for (const char* const className : {"ENCC", "KRCC", "JPCC"}) {
        sync("1");
        p(className);
        text("a");
    }
    close("sync");
    EXPECT_EQ(describeBuffers(loader), "1:[a]");
    EXPECT_EQ(loader.classes, (std::set<fn::String>{"encc", "jpcc", "krcc"}));
}

TEST_F(SMIDocument, StyleElementIsReadInAnalysis) {
    open("style");
    text("<!-- Generated by KMPlayer\n.KRCC {Name:Korean; lang:ko-KR}\n-->");
    close("STYLE");
    ASSERT_EQ(loader.languages.count("krcc"), 1U);
    EXPECT_EQ(loader.languages["krcc"].languageCode, "ko");
    EXPECT_FALSE(loader.inStyle);
}

TEST_F(SMIDocument, EachTextOfAStyleElementIsASheetOfItsOwn) {
    open("style");
    text(".KRCC {Name:Ko");
    text("rean; lang:ko-KR} ");
    EXPECT_TRUE(loader.languages.empty());
}

TEST_F(SMIDocument, StyleElementIsSkippedInLoading) {
    loader.parseStyleSheets = false;
    open("style");
    EXPECT_FALSE(loader.inStyle);
    text(".KRCC {Name:Korean; lang:ko-KR} ");
    EXPECT_TRUE(loader.languages.empty());
}

TEST_F(SMIDocument, StyleTextInAParagraphIsBoth) {
    sync("1");
    p();
    open("style");
    text(".k {lang:ko} ");
    close("sync");
    EXPECT_EQ(loader.languages.count("k"), 1U);
    EXPECT_EQ(describeBuffers(loader), "1:[.k {lang:ko} ]");
}

TEST_F(SMIDocument, MalformedBlankTextRaises) {
    sync("1");
    p();
    text("\xFF");
    EXPECT_THROW(close("sync"), fn::UTF8Exception);
}

/// What the entry points for the HTML parser make of a list of attributes.
std::string attributesThrough(const char** attributes) {
    SMILoader loader;
    SMILoader::_startElement(&loader, reinterpret_cast<const unsigned char*>("SYNC"),
                             reinterpret_cast<const unsigned char**>(attributes));
    return std::to_string(loader.syncStart);
}

TEST(SMIEntryPoints, AttributeNamesComeInAnyCase) {
    const char* attributes[] = {"START", "7", nullptr, nullptr};
    EXPECT_EQ(attributesThrough(attributes), "7000000");
}

TEST(SMIEntryPoints, AttributeWithoutValueHidesWhatStandsBehindIt) {
    const char* attributes[] = {"nowrap", nullptr, "start", "7", nullptr, nullptr};
    EXPECT_EQ(attributesThrough(attributes), "-1");
}

TEST(SMIEntryPoints, LaterAttributeOverwrites) {
    const char* attributes[] = {"start", "7", "Start", "8", nullptr, nullptr};
    EXPECT_EQ(attributesThrough(attributes), "8000000");
}

TEST(SMIEntryPoints, NullPointersAreEmpty) {
    SMILoader loader;
    SMILoader::_startElement(&loader, nullptr, nullptr);
    SMILoader::_endElement(&loader, nullptr);
    EXPECT_TRUE(loader.classes.empty());
    EXPECT_EQ(attributesThrough(nullptr), "-1");
}

// Nothing unwinds through the HTML parser: what an action raised is raised behind it, once.
TEST(SMIEntryPoints, ExceptionsAreKeptForTheEndOfTheText) {
    SMILoader loader;
    loader.startElement("sync", {{"start", "1"}});
    loader.startElement("p", {});
    loader.characters("\xFF");
    EXPECT_NO_THROW(
        SMILoader::_endElement(&loader, reinterpret_cast<const unsigned char*>("sync")));
    EXPECT_THROW(loader.parseText("<sync start=2><p>b</p></sync>"), fn::UTF8Exception);
    EXPECT_TRUE(loader.buffers.empty()) << "nothing is read behind an exception";
    EXPECT_NO_THROW(loader.parseText(""));
}

TEST(SMIEntryPoints, EndTagsOtherThanStyleAreTakenAsTheyStand) {
    SMILoader loader;
    loader.startElement("sync", {{"start", "1"}});
    SMILoader::_endElement(&loader, reinterpret_cast<const unsigned char*>("SYNC"));
    EXPECT_EQ(loader.syncStart, 1000000);
}

}  // namespace
}  // namespace subtitles
