// SPDX-License-Identifier: LGPL-2.1-or-later

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/apps/run-tool.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;
using test::ToolAnswer;
using test::ToolSetup;
using testing::HasSubstr;
using testing::Not;

constexpr const char* styled =
    "1\n00:00:01,000 --> 00:00:02,500\n<b>Bold</b> & plain\nsecond\n\n"
    "2\n01:00:03,004 --> 01:00:05,006\n<i>a --> b</i>\n\n";

constexpr const char* assHead =
    "[Script Info]\n"
    "ScriptType: v4.00+\n"
    "PlayResX: 1280\n"
    "PlayResY: 720\n"
    "WrapStyle: 0\n"
    "ScaledBorderAndShadow: yes\n"
    "\n"
    "[V4+ Styles]\n"
    "Format:Name,Fontname,Fontsize,PrimaryColour,OutlineColour,BackColour,Bold,Italic,BorderStyle,"
    "Outline,Shadow,Alignment,MarginL,MarginR,MarginV\n"
    "Style:Default,Arial,38,&H00FFFFFF,&H3F000000,&H7F000000,-1,0,1,2.5,0,2,20,20,20\n"
    "\n"
    "[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

class Convert : public testing::Test {
protected:
    Convert() { setup.folder = folder.path(); }

    ToolAnswer convert(const std::vector<std::string>& arguments) {
        std::vector<std::string> all = {"convert"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return runTool(all, setup);
    }

    /// The bytes of a subtitle file as WebVTT, on standard output.
    ToolAnswer toWebVTT(const std::string& name, const std::string& bytes,
                        const std::vector<std::string>& options = {}) {
        folder.writeFile(name, bytes);
        std::vector<std::string> arguments = {name, "-"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return convert(arguments);
    }

    std::string content(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(folder.path(name)).rdbuf();
        return text.str();
    }

    test::TemporaryFolder folder;
    ToolSetup setup;
};

TEST_F(Convert, SaysWhereAFileIsLongerThanWhatIsRead) {
    const ToolAnswer answer = toWebVTT("x.srt", styled + std::string(8388608, '\n'));
    EXPECT_THAT(answer.output, HasSubstr("plain\n"));
    EXPECT_EQ(answer.error, "subtitles: x.srt: longer than 8 MiB, and read no further\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(Convert, WritesWebVTT) {
    folder.writeFile("x.srt", styled);
    const ToolAnswer answer = convert({"x.srt", "x.vtt"});
    EXPECT_EQ(answer.output, "");
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(content("x.vtt"),
              "WEBVTT\n"
              "\n"
              "00:00:01.000 --> 00:00:02.500\n"
              "<b>&lrm;Bold</b>&lrm; &amp; plain\n"
              "&lrm;second\n"
              "\n"
              "01:00:03.004 --> 01:00:05.006\n"
              "<i>&lrm;a --&gt; b</i>&lrm;\n");
}

TEST_F(Convert, WritesASS) {
    folder.writeFile("x.srt", styled);
    const ToolAnswer answer = convert({"x.srt", "x.ASS"});
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(content("x.ASS"),
              std::string(assHead) +
                  "Dialogue: 0,0:00:01.00,0:00:02.50,Default,,0,0,0,,"
                  "{\\b900}Bold{\\b0} & plain\\Nsecond\n"
                  "Dialogue: 0,1:00:03.00,1:00:05.01,Default,,0,0,0,,{\\i1}a --> b{\\i0}\n");
}

TEST_F(Convert, WritesToStandardOutput) {
    EXPECT_EQ(toWebVTT("x.srt", "1\n00:00:01,000 --> 00:00:02,500\nx\n").output,
              "WEBVTT\n\n00:00:01.000 --> 00:00:02.500\n&lrm;x\n");
    EXPECT_EQ(
        toWebVTT("x.srt", "1\n00:00:01,000 --> 00:00:02,500\nx\n", {"--format", "ass"}).output,
        std::string(assHead) + "Dialogue: 0,0:00:01.00,0:00:02.50,Default,,0,0,0,,x\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(Convert, WritesNoNulAndNoLineThatEndsACue) {
    const std::string bytes =
        "1\n00:00:01,000 --> 00:00:02,500\na\r\rb\n-->\n\n2\n00:00:03,000 --> 00:00:04,000\n\n";
    EXPECT_EQ(toWebVTT("x.srt", bytes).output,
              "WEBVTT\n"
              "\n"
              "00:00:01.000 --> 00:00:02.500\n"
              "&lrm;a\n"
              "&lrm;\n"
              "&lrm;b\n"
              "&lrm;--&gt;\n"
              "\n"
              "00:00:03.000 --> 00:00:04.000\n"
              "&lrm;\n");
}

TEST_F(Convert, KeepsAnExistingFile) {
    folder.writeFile("x.srt", styled);
    folder.writeFile("x.vtt", "mine");
    const ToolAnswer answer = convert({"x.srt", "x.vtt"});
    EXPECT_EQ(answer.error,
              "subtitles: Cannot write 'x.vtt': it exists already (--force overwrites it)\n");
    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(content("x.vtt"), "mine");
    EXPECT_EQ(convert({"x.srt", "x.vtt", "--force"}).status, 0);
    EXPECT_THAT(content("x.vtt"), HasSubstr("WEBVTT\n"));
}

TEST_F(Convert, WritesNothingWhereItFails) {
    folder.writeFile("empty.srt", "");
    EXPECT_EQ(convert({"missing.srt", "x.vtt"}).error,
              "subtitles: Cannot open 'missing.srt': No such file or directory\n");
    EXPECT_EQ(convert({"empty.srt", "x.vtt"}).error, "subtitles: empty.srt: no cues\n");
    EXPECT_EQ(convert({"empty.srt", "x.vtt"}).status, 2);
    EXPECT_EQ(convert({"empty.srt", "x.vtt", "--encoding", "klingon"}).error,
              "subtitles: empty.srt: Unknown text encoding 'klingon'\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path("x.vtt")));
}

TEST_F(Convert, RefusesArgumentsWithoutSense) {
    folder.writeFile("x.srt", styled);
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"x.srt"},
                                               {"x.srt", "x.srt2"},
                                               {"x.srt", "x"},
                                               {"x.srt", "-", "--json"},
                                               {"x.srt", "-", "--from", "5", "--to", "5"},
                                               {"x.srt", "-", "--from", "soon"},
                                               {"x.srt", "-", "--to", "-1"},
                                               {"x.srt", "-", "--shift", "x"},
                                               {"x.srt", "-", "--format", "srt"},
                                               {"x.srt", "-", "--fps", "0"}}) {
        const ToolAnswer answer = convert(arguments);
        EXPECT_EQ(answer.status, 64) << arguments.back();
        EXPECT_EQ(answer.output, "");
        EXPECT_THAT(answer.error, HasSubstr("(--help tells what there is)\n"));
    }
}

TEST_F(Convert, SelectsAndShifts) {
    folder.writeFile("x.srt", styled);
    EXPECT_THAT(convert({"x.srt", "-", "--to", "2"}).output, Not(HasSubstr("01:00:03")));
    EXPECT_THAT(convert({"x.srt", "-", "--from", "3"}).output, Not(HasSubstr("00:00:01")));
    EXPECT_THAT(convert({"x.srt", "-", "--shift", "-1.5"}).output,
                HasSubstr("\n00:00:00.000 --> 00:00:01.000\n"));
    EXPECT_THAT(convert({"x.srt", "-", "--shift", "+0:01:00,25"}).output,
                HasSubstr("\n00:01:01.250 --> 00:01:02.750\n"));
}

TEST_F(Convert, SaysThatNoCueIsLeft) {
    const ToolAnswer answer = toWebVTT("x.srt", styled, {"--from", "5", "--to", "6"});
    EXPECT_EQ(answer.output, "WEBVTT\n");
    EXPECT_EQ(answer.error, "subtitles: x.srt: no cue is left\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(Convert, ReadsTheEncodingThatItIsTold) {
    const std::string bytes = "1\n00:00:01,000 --> 00:00:02,500\n\xB3\n";
    EXPECT_THAT(toWebVTT("x.srt", bytes, {"--encoding", "windows-1250"}).output,
                HasSubstr("\n&lrm;\u0142\n"));
}

TEST_F(Convert, TellsScriptsWhatItDid) {
    folder.writeFile("x.srt", styled);
    EXPECT_EQ(convert({"x.srt", "x.vtt", "--json"}).output,
              "{\n"
              "  \"input\": \"x.srt\",\n"
              "  \"output\": \"x.vtt\",\n"
              "  \"outputFormat\": \"webvtt\",\n"
              "  \"format\": \"srt\",\n"
              "  \"mimeType\": \"application/x-srt\",\n"
              "  \"languageCode\": \"\",\n"
              "  \"languageName\": \"Unknown\",\n"
              "  \"class\": \"\",\n"
              "  \"encoding\": \"UTF-8\",\n"
              "  \"unit\": \"nanoseconds\",\n"
              "  \"frameRate\": null,\n"
              "  \"cues\": 2\n"
              "}\n");
}

TEST_F(Convert, CountsFramesAtTheRateThatItIsTold) {
    constexpr const char* webVTT = "WEBVTT\n\n00:00:00.400 --> 00:00:00.800\n&lrm;x\n";
    EXPECT_EQ(toWebVTT("x.sub", "{10}{20}x\n", {"--fps", "25"}).output, webVTT);
    EXPECT_EQ(toWebVTT("x.sub", "{1}{1}25\n{10}{20}x\n").output, webVTT);
    EXPECT_EQ(toWebVTT("x.sub", "{1}{1}50\n{10}{20}x\n", {"--fps", "25.0"}).output, webVTT);
    EXPECT_EQ(toWebVTT("x.sub", "{1}{1}25\n{10}{20}x\n").error, "");
}

TEST_F(Convert, TakesTheRateOfFilmsElseAndSaysSo) {
    const ToolAnswer answer = toWebVTT("x.sub", "{24000}{24024}x\n");
    EXPECT_EQ(answer.output, "WEBVTT\n\n00:16:41.000 --> 00:16:42.001\n&lrm;x\n");
    EXPECT_EQ(answer.error,
              "subtitles: x.sub: the frame rate is not told, so it is taken for 24000/1001; --fps "
              "tells another\n");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Convert, HasNoDriftAfterThreeHours) {
    // 258,741 frames at 24000/1001 a second are 10,791.655875 seconds.
    EXPECT_EQ(toWebVTT("x.sub", "{258741}{258742}x\n", {"--fps", "24000/1001"}).output,
              "WEBVTT\n\n02:59:51.656 --> 02:59:51.698\n&lrm;x\n");
}

TEST_F(Convert, RefusesARateThatNoFilmHas) {
    for (const std::string rate : {"0", "1001", "0.0009"}) {
        const ToolAnswer answer = toWebVTT("x.sub", "{1}{1}" + rate + "\n{10}{20}x\n");
        EXPECT_EQ(answer.error, "subtitles: x.sub: its first entry tells a rate of " + rate +
                                    " frames a second, which no film has; --fps tells another\n");
        EXPECT_EQ(answer.output, "");
        EXPECT_EQ(answer.status, 2);
    }
    EXPECT_EQ(toWebVTT("x.sub", "{1}{1}0\n{10}{20}x\n", {"--fps", "25"}).status, 0);
}

TEST_F(Convert, EndsACueWithoutAnEndWithTheNext) {
    EXPECT_THAT(
        toWebVTT("x.sub", "{25}{}a\n{75}{}b\n", {"--fps", "25"}).output,
        HasSubstr("00:00:01.000 --> 00:00:03.000\n&lrm;a\n\n00:00:03.000 --> 00:00:08.000"));
}

TEST_F(Convert, ReadsASSEventByEvent) {
    folder.writeFile("x.ass",
                     "[Script Info]\n[Events]\n"
                     "Format: Start, End, Text\n"
                     "Dialogue: 0:00:01.50,0:00:03.00,{\\pos(1,2)}{\\i1}Hi{\\i0}, there\\Nyou\n"
                     "Dialogue: 0:00:04.00,0:00:05.00,{\\p1}m 0 0 l 1 1{\\p0}\n");
    EXPECT_EQ(convert({"x.ass", "-"}).output,
              "WEBVTT\n"
              "\n"
              "00:00:01.500 --> 00:00:03.000\n"
              "<i>&lrm;Hi</i>&lrm;, there\n"
              "&lrm;you\n"
              "\n"
              "00:00:04.000 --> 00:00:05.000\n");
    EXPECT_EQ(convert({"x.ass", "-", "--format", "ass"}).output,
              std::string(assHead) +
                  "Dialogue: 0,0:00:01.50,0:00:03.00,Default,,0,0,0,,{\\i1}Hi{\\i0}, there\\Nyou\n"
                  "Dialogue: 0,0:00:04.00,0:00:05.00,Default,,0,0,0,,\n");
}

TEST_F(Convert, WantsToKnowWhichOfSeveralLanguages) {
    const std::string samples = std::string(std::getenv("SUBTITLES_SAMPLES")) + "/film";
    setup.folder = samples;
    const ToolAnswer answer = convert({"The Harbour.smi", folder.path("x.vtt")});
    EXPECT_EQ(
        answer.error,
        "subtitles: The Harbour.smi: several subtitles, English (en, class encc), Korean (ko, "
        "class krcc); choose one with --language or --class\n");
    EXPECT_EQ(answer.status, 2);
    EXPECT_FALSE(std::filesystem::exists(folder.path("x.vtt")));
    EXPECT_THAT(convert({"The Harbour.smi", "-", "--language", "ko"}).output,
                HasSubstr("&lrm;\uC624\uB298 \uC544\uCE68\uC740"));
    EXPECT_THAT(convert({"The Harbour.smi", "-", "--class", "encc"}).output,
                HasSubstr("&lrm;The fog is thick this morning.\n"));
}

}  // namespace
