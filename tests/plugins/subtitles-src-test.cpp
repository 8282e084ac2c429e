// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/subtitles-src.h"

#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "foundation/path.h"

#include "subtitles/subtitle-loader.h"
#include "subtitles/subtitle-reference.h"

#include "tests/plugins/element-harness.h"
#include "tests/support/temporary-folder.h"

namespace {

constexpr char srt[] =
    "1\n00:00:01,000 --> 00:00:02,000\n<b>One</b> & <i>two</i>\n\n"
    "2\n00:00:04,000 --> 00:00:06,000\nThree\n\n"
    "3\n00:00:05,000 --> 00:00:07,000\nFour\n\n";

constexpr char ass[] =
    "[Script Info]\nTitle: x\n\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,{\\i1}Hi{\\i0} there\n";

using test::Element;

class SubtitlesSrcTest : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& text) {
        return folder.writeFile(name, text);
    }

    test::TemporaryFolder folder;
};

TEST_F(SubtitlesSrcTest, GivesPangoMarkupByItself) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.next(),
              "1000+1000 <span weight=\"700\">One</span> &amp; <span style=\"italic\">two</span>");
    EXPECT_EQ(element.next(), "4000+2000 Three");
    EXPECT_EQ(element.next(), "5000+2000 Four");
    EXPECT_EQ(element.next(), "");
}

TEST_F(SubtitlesSrcTest, GivesPlainTextWhereThatIsWanted) {
    Element element("text/x-raw, format=utf8");
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 One & two");
}

TEST_F(SubtitlesSrcTest, GivesASSWithTheScriptsHead) {
    Element element("application/x-ass");
    element.set("location", write("a.ass", ass).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 0, 0,Default,,0,0,0,,{\\i1}Hi{\\i0} there");
    GstCaps* const caps = gst_pad_get_current_caps(element.harness->sinkpad);
    const GValue* const head =
        gst_structure_get_value(gst_caps_get_structure(caps, 0), "codec_data");
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(gst_buffer_memcmp(gst_value_get_buffer(head), 0, "[Script Info]\nTitle: x\n\n", 24),
              0);
    gst_caps_unref(caps);
}

TEST_F(SubtitlesSrcTest, NoByteZeroLeavesIt) {
    const std::string zero(1, '\0');
    const std::string paths[] = {
        write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nOne" + zero + "\n"),
        write("a.ass",
              std::string(ass) + "Dialogue: 0,0:00:03.00,0:00:04.00,D,,0,0,0,,a" + zero + "b\n")};
    for (const std::string& path : paths) {
        for (const char* const caps :
             {"text/x-raw, format=pango-markup", "text/x-raw, format=utf8", "application/x-ass"}) {
            Element element(caps);
            element.set("location", path.c_str());
            element.play();
            for (std::string cue = element.next(); !cue.empty(); cue = element.next()) {
                EXPECT_EQ(cue.find('\0'), std::string::npos) << caps << ": " << cue;
            }
        }
    }
}

TEST_F(SubtitlesSrcTest, GivesASSAsMarkupToo) {
    Element element("text/x-raw, format=pango-markup");
    element.set("location", write("a.ass", ass).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 <span style=\"italic\">Hi</span> there");
}

TEST_F(SubtitlesSrcTest, GivesSRTAsASSToo) {
    Element element("application/x-ass");
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 0,0,Default,,0,0,0,,{\\b900}One{\\b0} & {\\i1}two");
}

TEST_F(SubtitlesSrcTest, TellsGapsBetweenCues) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    while (!element.next().empty()) {
    }
    EXPECT_EQ(element.events(), "stream-start caps segment tag gap(0+1000) gap(2000+2000) eos");
}

TEST_F(SubtitlesSrcTest, AnswersDurationWhenItHasReadTheFile) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    element.next();
    gint64 duration = 0;
    EXPECT_TRUE(gst_element_query_duration(element.element, GST_FORMAT_TIME, &duration));
    EXPECT_EQ(duration, 7 * static_cast<gint64>(GST_SECOND));
    EXPECT_FALSE(gst_element_query_duration(element.element, GST_FORMAT_BYTES, &duration));
}

TEST_F(SubtitlesSrcTest, MissingFileIsAnErrorThatNamesIt) {
    Element element;
    element.set("location", "/nowhere/a.srt");
    element.play();
    EXPECT_EQ(element.error(), "Cannot open '/nowhere/a.srt': No such file or directory");
}

TEST_F(SubtitlesSrcTest, FileWithoutSubtitlesIsAnError) {
    Element element;
    const std::string path = write("a.srt", "nothing\n");
    element.set("location", path.c_str());
    element.play();
    EXPECT_EQ(element.error(), "'" + path + "' holds no subtitles");
}

TEST_F(SubtitlesSrcTest, UnknownEncodingIsAnError) {
    Element element;
    element.set("location", write("a.srt", srt).c_str(), "subtitle-encoding", "no-such-encoding");
    element.play();
    EXPECT_NE(element.error().find("no-such-encoding"), std::string::npos);
}

// A cue each ten minutes, for more than three hours.
TEST_F(SubtitlesSrcTest, FramesBecomeTimesWithoutDrift) {
    constexpr unsigned distance = 14385;
    std::string text;
    for (unsigned i = 1; i <= 20; ++i) {
        text +=
            "{" + std::to_string(i * distance) + "}{" + std::to_string(i * distance + 24) + "}a\n";
    }
    Element element("text/x-raw, format=utf8");
    element.set("location", write("a.sub", text).c_str(), "video-fps", 24000, 1001);
    element.play();
    for (std::uint64_t i = 1; i <= 20; ++i) {
        GstBuffer* const buffer = element.pull();
        ASSERT_NE(buffer, nullptr);
        // A frame takes 1001 / 24000 seconds, which are 125125000 / 3 nanoseconds.
        const std::uint64_t start = i * distance * 125125000 / 3;
        const std::uint64_t end = (i * distance + 24) * 125125000 / 3;
        EXPECT_EQ(GST_BUFFER_PTS(buffer), start);
        EXPECT_EQ(GST_BUFFER_DURATION(buffer), end - start);
        gst_buffer_unref(buffer);
    }
}

TEST_F(SubtitlesSrcTest, TextOfAnErrorIsTheOnlyOneOfItsKind) {
    Element element;
    element.set("location", "/nowhere/a.srt");
    element.play();
    EXPECT_EQ(element.error(), "Cannot open '/nowhere/a.srt': No such file or directory");
    // The base class adds where the stream stopped, and nothing opens the file again.
    EXPECT_EQ(element.error(), "Internal data stream error.");
    EXPECT_EQ(element.error(0), "");
}

TEST_F(SubtitlesSrcTest, FileIsOpenedOnTheStreamingThread) {
    Element element;
    element.set("location", "/nowhere/a.srt");
    EXPECT_EQ(gst_element_set_state(element.element, GST_STATE_PLAYING), GST_STATE_CHANGE_SUCCESS);
    EXPECT_EQ(element.error(), "Cannot open '/nowhere/a.srt': No such file or directory");
}

TEST_F(SubtitlesSrcTest, NothingToReadIsAnError) {
    Element element;
    element.set("location", nullptr);
    element.play();
    EXPECT_EQ(element.error(), "No subtitle file was given");
}

TEST_F(SubtitlesSrcTest, ErrorIsForgottenWithTheNextFile) {
    Element element("text/x-raw, format=utf8");
    element.set("location", "/nowhere/a.srt");
    element.play();
    EXPECT_NE(element.error(), "");
    gst_element_set_state(element.element, GST_STATE_READY);
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    EXPECT_EQ(element.nextAfterEnd(), "1000+1000 One & two");
}

constexpr char smi[] =
    "<SAMI><HEAD><STYLE><!-- .ENCC {Name:English; lang:en-US;} .KRCC {Name:Korean; lang:ko-KR;} -->"
    "</STYLE></HEAD><BODY>"
    "<SYNC Start=1000><P Class=ENCC>Yes<P Class=KRCC>No"
    "<SYNC Start=2000><P Class=ENCC>&nbsp;<P Class=KRCC>&nbsp;</BODY></SAMI>";

TEST_F(SubtitlesSrcTest, LanguageChoosesOfAFileWithSeveral) {
    const std::string path = write("a.smi", smi);
    for (const char* const language : {"ko", "KO", "Korean", "krcc", "kor"}) {
        Element element("text/x-raw, format=utf8");
        element.set("location", path.c_str(), "language", language);
        element.play();
        EXPECT_EQ(element.next(), "1000+999 No") << language;
    }
    Element element("text/x-raw, format=utf8");
    element.set("location", path.c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+999 Yes");
}

TEST_F(SubtitlesSrcTest, LanguageThatIsNotThereIsAnError) {
    Element element;
    const std::string path = write("a.smi", smi);
    element.set("location", path.c_str(), "language", "fr");
    element.play();
    EXPECT_EQ(element.error(), "'" + path + "' holds no subtitles in the language 'fr'");
}

TEST_F(SubtitlesSrcTest, ReferenceGoesBeforeALocation) {
    const std::string path = write("a.smi", smi);
    for (subtitles::SubtitleLoader* const loader : subtitles::SubtitleLoader::getAllLoaders()) {
        for (const auto& reference : loader->analyzeFile(fn::Path::parsePath(path))) {
            Element element("text/x-raw, format=utf8");
            element.set("reference", reference.serialize().c_str(), "location", "/nowhere/a.srt");
            element.play();
            EXPECT_EQ(element.next(),
                      reference.languageCode == "ko" ? "1000+999 No" : "1000+999 Yes");
        }
    }
}

TEST_F(SubtitlesSrcTest, BrokenReferenceIsAnError) {
    for (const char* const reference : {"{", "7", "{}"}) {
        Element element;
        element.set("reference", reference);
        element.play();
        EXPECT_NE(element.error(), "") << reference;
    }
}

TEST_F(SubtitlesSrcTest, EncodingIsTakenAsGiven) {
    const std::string path = write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\n\xC0\xC1\n");
    Element element("text/x-raw, format=utf8");
    element.set("location", path.c_str(), "subtitle-encoding", "windows-1251");
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 \xD0\x90\xD0\x91");
}

// The language, the title and the stream, which a player's menu is made of.
TEST_F(SubtitlesSrcTest, StreamStartTellsLanguageAndTitle) {
    const std::string path = write("a.smi", smi);
    std::string ids[2];
    for (std::string& id : ids) {
        Element element;
        element.set("location", path.c_str(), "language", "ko");
        element.play();
        element.next();
        const test::StreamStart start(element.harness->sinkpad);
        EXPECT_EQ(start.tags(), "language-code=ko language-name=Korean title=Korean");
        EXPECT_EQ(start.type(), GST_STREAM_TYPE_TEXT);
        EXPECT_EQ(start.flags(), GST_STREAM_FLAG_SPARSE);
        id = start.id();
    }
    EXPECT_EQ(ids[0], ids[1]);
    Element english;
    english.set("location", path.c_str(), "language", "en");
    english.play();
    english.next();
    EXPECT_NE(test::StreamStart(english.harness->sinkpad).id(), ids[0]);
}

TEST_F(SubtitlesSrcTest, CueWithoutTextIsPartOfAGap) {
    Element element("text/x-raw, format=utf8");
    element.set(
        "location",
        write("a.ass", std::string(ass) + "Dialogue: 0,0:00:03.00,0:00:04.00,D,,0,0,0,,{\\i1}\n"
                                          "Dialogue: 0,0:00:05.00,0:00:06.00,D,,0,0,0,,Bye\n")
            .c_str());
    element.play();
    EXPECT_EQ(element.next(), "1000+1000 Hi there");
    EXPECT_EQ(element.next(), "5000+1000 Bye");
    EXPECT_EQ(element.next(), "");
    EXPECT_EQ(element.events(), "stream-start caps segment tag gap(0+1000) gap(2000+3000) eos");
}

TEST_F(SubtitlesSrcTest, PropertiesAreGivenBack) {
    Element element;
    element.set("location", "a", "reference", "b", "language", "c", "subtitle-encoding", "d");
    element.set("video-fps", 30000, 1001);
    for (const auto& [name, value] : {std::pair{"location", "a"},
                                      {"reference", "b"},
                                      {"language", "c"},
                                      {"subtitle-encoding", "d"},
                                      {"detected-format", ""},
                                      {"detected-encoding", ""}}) {
        gchar* text = nullptr;
        g_object_get(element.element, name, &text, nullptr);
        EXPECT_STREQ(text, value) << name;
        g_free(text);
    }
    int numerator = 0;
    int denominator = 0;
    g_object_get(element.element, "video-fps", &numerator, &denominator, nullptr);
    EXPECT_EQ(numerator, 30000);
    EXPECT_EQ(denominator, 1001);
}

TEST_F(SubtitlesSrcTest, TellsWhatItDetected) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    element.play();
    element.next();
    gchar* format = nullptr;
    guint cues = 0;
    g_object_get(element.element, "detected-format", &format, "cue-count", &cues, nullptr);
    EXPECT_STREQ(format, "application/x-srt");
    EXPECT_EQ(cues, 3U);
    g_free(format);
}

TEST_F(SubtitlesSrcTest, TellsTheEncodingThatItReadIn) {
    // Plain ASCII, bytes that fit nothing, and an encoding that is detected and that nobody
    // decodes.
    for (const auto& [line, expected] : {std::pair{"One", "UTF-8"},
                                         {"\x81", "windows-1252"},
                                         {"\xCF\xF0\xE8\xE2\xE5\xF2 \xEC\xE8\xF0, \xEA\xE0\xEA "
                                          "\xE4\xE5\xEB\xE0?",
                                          "WINDOWS-1251"},
                                         {"~{VPND~} ~{VPND~} ~{VPND~}", "UTF-8"}}) {
        Element element;
        const std::string cue = std::string("1\n00:00:01,000 --> 00:00:02,000\n") + line + "\n";
        element.set("location", write("a.srt", cue).c_str());
        element.play();
        element.next();
        gchar* encoding = nullptr;
        g_object_get(element.element, "detected-encoding", &encoding, nullptr);
        EXPECT_STREQ(encoding, expected);
        g_free(encoding);
    }
}

TEST_F(SubtitlesSrcTest, ReferenceThatNoReaderTakesIsAnError) {
    Element element;
    element.set("reference", R"({"type":0,"mime-type":"application/x-mystery","path":"a"})");
    element.play();
    EXPECT_EQ(element.error(), "No reader takes subtitles of the type 'application/x-mystery'");
}

TEST_F(SubtitlesSrcTest, MalformedTextIsAnErrorThatNamesTheFile) {
    Element element;
    const std::string path = write("a.ass", std::string(ass) + "Dialogue: \xE9\n");
    element.set("location", path.c_str(), "subtitle-encoding", "UTF-8");
    element.play();
    EXPECT_EQ(element.error(), "'" + path + "' is not valid UTF-8");
}

// A file's name may be in any old encoding, and a language is read out of it.
TEST_F(SubtitlesSrcTest, TagsAreUTF8WhateverBytesTheReferenceHolds) {
    subtitles::SubtitleReference reference;
    reference.type = subtitles::SubtitleReference::FILE;
    reference.mimeType = "application/x-smi";
    reference.path = write(
        "film.fran\xE7"
        "ais.smi",
        smi);
    reference.languageCode = "k\xE9";
    reference.customLanguageName =
        "fran\xE7"
        "ais";
    reference.loaderProperties["class"] = "krc\xFF";
    Element element;
    element.set("reference", reference.serialize().c_str());
    element.play();
    EXPECT_EQ(element.next(), "");
    const test::StreamStart start(element.harness->sinkpad);
    EXPECT_EQ(start.tags(),
              "language-code=k\uFFFD language-name=fran\uFFFDais title=fran\uFFFDais");
    EXPECT_NE(start.id().find("krc\uFFFD"), std::string::npos);
}

TEST_F(SubtitlesSrcTest, AThousandStateChangesInARow) {
    Element element;
    element.set("location", write("a.srt", srt).c_str());
    for (int i = 0; i < 1000; ++i) {
        const GstState state = i % 2 == 0 ? GST_STATE_PLAYING : GST_STATE_READY;
        ASSERT_NE(gst_element_set_state(element.element, state), GST_STATE_CHANGE_FAILURE);
    }
}

}  // namespace
