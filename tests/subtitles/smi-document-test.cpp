// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Whole documents through the HTML parser, which opens and closes elements by itself and cuts texts
// where it likes.

#include <iterator>
#include <new>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/smi-loader.h"
#include "subtitles/subtitle-data.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

std::string describeBuffers(const SMILoader& loader) {
    std::string text;
    for (const fn::AutoPtr<_GstBuffer>& buffer : loader.getBuffers()) {
        text += text.empty() ? "" : " ";
        text += std::to_string(GST_BUFFER_PTS(buffer.get()) / GST_MSECOND) + ":";
        text += gst_buffer_get_size(buffer.get()) == 0
                    ? "end"
                    : describe(attributedTextFromBuffer(buffer.get()));
    }
    return text;
}

std::string buffersOf(const std::string& document, const char* wantedClass = "") {
    SMILoader loader;
    loader.wantedClass = wantedClass;
    loader.parseText(document);
    return describeBuffers(loader);
}

std::string describeLanguages(const SMILoader& loader) {
    std::string text;
    for (const SMILoader::LanguageEntry& entry : loader.getLanguages()) {
        text += "[" + entry.className + " " + entry.languageCode + entry.languageName + "]";
    }
    return text;
}

std::string languagesOf(const std::string& document) {
    SMILoader loader;
    loader.parseText(document);
    return describeLanguages(loader);
}

struct Case {
    const char* name;
    const char* document;
    const char* expected;
};

class SMIText : public testing::TestWithParam<Case> {};

TEST_P(SMIText, GivesBuffers) {
    EXPECT_EQ(buffersOf(GetParam().document), GetParam().expected);
}

constexpr Case cases[] = {
    {"NoEndTags", "<SAMI><BODY><SYNC Start=1><P>a<SYNC Start=2><P>&nbsp;</BODY></SAMI>",
     "1:[a] 2:end"},
    {"AllEndTags",
     "<SAMI><BODY><SYNC Start=1><P>a</P></SYNC><SYNC Start=2><P>&nbsp;</P></SYNC></BODY></SAMI>",
     "1:[a] 2:end"},
    {"LowerCaseAndQuotes", "<sync start=\"1\"><p class='x'>a</p></sync>", "1:[a]"},
    {"EntityOfText", "<sync start=1><p>a &amp; b &lt;c&gt; &#233;</p>", "1:[a & b <c> \xC3\xA9]"},
    {"NumericNoBreakSpace", "<sync start=1><p>&#160;</p>", "1:end"},
    {"TextOutsideAParagraphDoesNotCount", "<sync start=1>a<sync start=2>", ""},
    {"BrInEitherSpelling", "<sync start=1><p>a<br>b<BR/>c", "1:[a\\nb\\nc]"},
    {"StylesNest", "<sync start=1><p><b>a<i>b</i></b>c",
     "1:[weight=700: a][style=2 weight=700: b][c]"},
    {"CommentsAreNothing", "<sync start=1><p>a<!-- b -->c", "1:[ac]"},
    {"AttributeWithoutValueInFrontOfStart", "<sync wide start=1><p>a</p>", ""},
    {"SecondStartInOneTagIsDropped", "<sync start=1 start=2><p>a</p>", "1:[a]"},
    {"NothingAtAll", "", ""},
    {"NoDocument", "just text", ""},
    {"CutInsideATag", "<sync start=1><p>a<sync start=2><p cla", "1:[a]"},
    {"MetaCharsetDoesNotCount",
     "<head><meta http-equiv=Content-Type content=\"text/html; charset=euc-kr\"></head>"
     "<sync start=1><p>\xED\x95\x9C",
     "1:[\xED\x95\x9C]"},
    {"MalformedByteHarmsNoOther", "<sync start=1><p>\xED\x95\x9C\xFF\xEA\xB8\x80",
     "1:[\xED\x95\x9C\xEF\xBF\xBD\xEA\xB8\x80]"},
    {"ByteOrderMark", "\xEF\xBB\xBF<SAMI><BODY><SYNC Start=1><P>a", "1:[a]"},
};

INSTANTIATE_TEST_SUITE_P(Cases, SMIText, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

// libxml2 before 2.14 leaves "&nbsp" without its semicolon as text, later ones decode it.
TEST(SMIDocumentText, EndMarkWithoutSemicolon) {
    EXPECT_EQ(buffersOf("<sync start=1><p>a<sync start=2><p>&nbsp<sync start=3><p>b"),
              "1:[a] 2:end 3:[b]");
}

// The HTML parser closes the first paragraph and the bold in it before the second one opens, so
// that an empty "b" does not reach over.
TEST(SMIDocumentText, EmptyBoldIsClosedByTheParser) {
    const std::string buffers = buffersOf("<sync start=1><p><b></p><p>a");
    EXPECT_EQ(buffers, "1:[a]");
}

// The parser ends the first paragraph, and with it its run, before the second one opens; so the
// line feed between them is a run of its own.
TEST(SMIDocumentText, TwoParagraphsOfOneBlock) {
    EXPECT_EQ(buffersOf("<sync start=1><p>a<p>b"), "1:[a][\\n][b]");
}

TEST(SMIDocumentText, WantedClass) {
    const char* const document =
        "<sync start=1><p class=ENCC>a<p class=KRCC>b<sync start=2><p class=ENCC>&nbsp;";
    EXPECT_EQ(buffersOf(document, "krcc"), "1:[b]");
    EXPECT_EQ(buffersOf(document, "encc"), "1:[a] 2:end");
    EXPECT_EQ(buffersOf(document, "jpcc"), "");
}

TEST(SMIDocumentText, StyleSheetNamesTheClasses) {
    EXPECT_EQ(languagesOf("<SAMI><HEAD><STYLE TYPE=\"text/css\"><!--\n"
                          "P {margin-left:8pt; color:white}\n"
                          ".KRCC {Name:Korean; lang:ko-KR; SAMIType:CC;}\n"
                          "#Small {Name:SmallTxt; font-size:10pt;}\n"
                          "--></STYLE></HEAD><BODY><SYNC Start=1><P Class=KRCC>a"
                          "<P Class=ENCC>b</BODY></SAMI>"),
              "[encc ENCC][krcc ko]");
}

TEST(SMIDocumentText, StyleSheetBehindTheBodyCounts) {
    EXPECT_EQ(languagesOf("<sync start=1><p class=x>a</p></sync><style>.x {lang:ko} </style>"),
              "[x ko]");
}

TEST(SMIDocumentText, StyleElementThatNothingClosesCounts) {
    EXPECT_EQ(languagesOf("<p class=x>a</p><style>.x {lang:ko} "), "[x ko]");
}

TEST(SMIDocumentText, LongStyleElementsAreOneSheetWhereverTheyAreCut) {
    for (const std::size_t size : {900U, 1000U, 1001U, 5000U}) {
        for (std::size_t back = 0; back < 40; ++back) {
            const std::string rule = ".x {Name:Korean; lang:ko-KR;} ";
            const std::string filler = "/*" + std::string(size - 4 - back, 'c') + "*/";
            ASSERT_EQ(languagesOf("<style>" + filler + rule + filler + "</style><p class=x>a"),
                      "[x ko]")
                << size << " - " << back;
        }
    }
}

TEST(SMIDocumentText, LongParagraphsStayWhole) {
    for (const std::size_t size : {900U, 1000U, 1001U, 5000U}) {
        std::string text;
        while (text.size() < size) {
            text += "\xED\x95\x9C ";
        }
        const std::string buffers = buffersOf("<sync start=1><p>" + text + "x");
        EXPECT_EQ(buffers, "1:[" + text + "x]") << size;
    }
}

TEST(SMIDocumentText, EveryPrefixOfADocumentReturns) {
    const std::string document =
        "\xEF\xBB\xBF<SAMI><HEAD><STYLE><!-- .K {lang:ko} --></STYLE></HEAD><BODY>"
        "<SYNC Start=1><P Class=K>\xED\x95\x9C<b>a</i>&nbsp;<br/>&#x41;<!-- c --></P>"
        "<SYNC Start=2><P Class=K>&nbsp;</SYNC></BODY></SAMI>";
    for (std::size_t size = 0; size <= document.size(); ++size) {
        EXPECT_LE(describeBuffers([&] {
                      SMILoader loader;
                      loader.parseText(document.substr(0, size));
                      return loader;
                  }())
                      .size(),
                  200U);
    }
}

TEST(SMIDocumentText, NulsInTheTextEnd) {
    constexpr char text[] = "<sync start=1><p>a\0b<sync start=2><p>c";
    const std::string document(text, sizeof text - 1);
    EXPECT_NE(buffersOf(document).find("2:[c]"), std::string::npos);
}

TEST(SMIDocumentText, StyleSheetThatWouldNeverEndDoes) {
    EXPECT_EQ(languagesOf("<style>.x {lang:ko} color: red; )</style><p class=x>a"), "[x ko]");
}

TEST(SMIDocumentText, MillionNestedTags) {
    std::string document = "<sync start=1><p>";
    for (int i = 0; i < 1000000; ++i) {
        document += "<b>x";
    }
    SMILoader loader;
    loader.parseText(document);
    ASSERT_EQ(loader.buffers.size(), 1U);
    const AttributedText runs = attributedTextFromBuffer(loader.buffers.front().get());
    ASSERT_EQ(runs.size(), 1000000U);
    EXPECT_EQ(runs.back().text, "x");
    EXPECT_EQ(describe(runs.back().attributes), "weight=700");
}

TEST(SMIDocumentText, HalfAMillionStyleElements) {
    std::string document = "<style>.x{lang:ko}</style>";
    // As many as fit into a file that is not cut.
    for (int i = 0; i < 500000; ++i) {
        document += "<style></style>";
    }
    EXPECT_EQ(languagesOf(document + "<p class=x>a"), "[x ko]");
}

TEST(SMIDocumentText, StyleElementsInAStyleElementAreText) {
    std::string document;
    for (int i = 0; i < 1000000; ++i) {
        document += "<style>";
    }
    EXPECT_EQ(languagesOf(document + "</style><p class=x>a"), "[x X]");
}

/// The stream of a document by the long way: every buffer is made, end marks too, and then cleaned
/// up like those of the other formats.
std::string sanitizedText(const std::string& document) {
    SMILoader loader;
    loader.parseText(document);
    SubtitleData data("application/x-attributed-text", fn::AutoPtr<_GstBuffer>(),
                      SubtitleData::NANOSECONDS);
    data.buffers = loader.getBuffers();
    data.sanitize();
    return describe(data);
}

std::string loadedText(const std::string& document) {
    SMILoader loader;
    const fn::AutoPtr<SubtitleData> data = loader.loadText(document);
    EXPECT_TRUE(loader.buffers.empty());
    return describe(*data);
}

TEST_P(SMIText, LoadsAsSanitized) {
    EXPECT_EQ(loadedText(GetParam().document), sanitizedText(GetParam().document));
}

// Blocks in every order of few times, so that many are equal, with end marks, blocks that show
// nothing and mark-up between them.
TEST(SMIDocumentText, LoadsAsSanitizedInAnyOrder) {
    constexpr const char* texts[] = {"a", "&nbsp;", "<i>b</i>", "", " ", "<b>c</b>d"};
    std::mt19937 random(20);
    for (int document = 0; document < 2000; ++document) {
        std::string text;
        for (unsigned blocks = random() % 8; blocks > 0; --blocks) {
            text += "<sync start=" + std::to_string(random() % 4) + "><p>" +
                    texts[random() % std::size(texts)];
        }
        ASSERT_EQ(loadedText(text), sanitizedText(text)) << text;
    }
}

struct LongCase {
    const char* name;
    const char* head;
    const char* piece;
    const char* tail;
    const char* expected;  ///< Languages and the number of buffers.
};

class LongSMIText : public testing::TestWithParam<LongCase> {};

// The largest files are sixteen times as long; that time grows with the length alone is for the
// benchmarks to tell.
TEST_P(LongSMIText, Ends) {
    constexpr std::size_t size = 524288;
    std::string document = GetParam().head;
    const std::string piece = GetParam().piece;
    while (document.size() < size) {
        document += piece;
    }
    document += GetParam().tail;
    SMILoader loader;
    loader.parseText(document);
    EXPECT_EQ(describeLanguages(loader) + " " + std::to_string(loader.buffers.size()),
              GetParam().expected);
}

constexpr LongCase longCases[] = {
    {"StyleElementOfRules", "<style>", ".x{lang:ko}", "</style><p class=x>", "[x ko] 0"},
    {"ChainOfNames", "<style>.x{lang:ko}", "a ", "{x:1}</style><p class=x>", "[x ko] 0"},
    {"OpenAttributes", "<style>.x{lang:ko}", "a[;", "</style><p class=x>", "[x ko] 0"},
    {"OpenRules", "<style>.x{lang:ko}", "a{;", "</style><p class=x>", "[x ko] 0"},
    {"RootProperties", "<style>.x{lang:ko}", "a:b;", "</style><p class=x>", "[x ko] 0"},
    {"StyleElements", "<style>.x{lang:ko} </style>", "<style></style>", "<p class=x>", "[x ko] 0"},
    {"NestedInlineTags", "<sync start=1><p class=x>", "<b>x", "", "[x X] 1"},
    {"InlineTags", "<sync start=1><p class=x>", "<b>x</b>", "", "[x X] 1"},
    {"Paragraphs", "<sync start=1>", "<p class=x>x", "", "[x X] 1"},
    {"Classes", "<sync start=1>", "<p class=x>", "", "[x X] 0"},
    {"Syncs", "<p class=x>", "<sync start=1><p>x", "", "[x X] 29127"},
    {"EndMarks", "<p class=x>", "<sync start=1><p>&nbsp;", "", "[x X] 22795"},
    {"LineEnds", "<sync start=1><p class=x>", "\n", "x", "[x X] 1"},
    {"OpenBrackets", "<sync start=1><p class=x>x", "<", " <sync start=2><p>x", "[x X] 2"},
    {"OpenComments", "<sync start=1><p class=x>x", "<!--", "", "[x X] 1"},
    {"Ampersands", "<sync start=1><p class=x>x", "&", "", "[x X] 1"},
    {"MalformedBytes", "<sync start=1><p class=x>x", "\xFF", "", "[x X] 1"},
};

INSTANTIATE_TEST_SUITE_P(Cases, LongSMIText, testing::ValuesIn(longCases),
                         [](const auto& test) { return test.param.name; });

// The HTML parser looks for each of these among all that came before, so that these take the square
// of their length: the sizes are small.
TEST(SMIDocumentText, AttributesOfOneTagEnd) {
    std::string document = "<sync start=1><p class=x";
    for (int i = 0; i < 5000; ++i) {
        document += " a" + std::to_string(i) + "=1";
    }
    EXPECT_EQ(buffersOf(document + ">a", "x"), "1:[a]");
}

TEST(SMIDocumentText, UnmatchedEndTagsUnderDeepNestingEnd) {
    std::string document = "<sync start=1><p>";
    for (int i = 0; i < 5000; ++i) {
        document += "<b>";
    }
    for (int i = 0; i < 5000; ++i) {
        document += "</i>";
    }
    EXPECT_EQ(buffersOf(document + "a"), "1:[weight=700: a]");
}

TEST(SMIDocumentText, MessagesOfTheParserReachNobody) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    buffersOf("<sync start=1><p>&foo;</i></b><<<>>&#xFFFFFFFF;&#0;</nothing><p a=1 a=2");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
}  // namespace subtitles
