// SPDX-License-Identifier: LGPL-2.1-or-later

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/apps/run-tool.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;
using test::ToolAnswer;
using test::ToolSetup;
using testing::HasSubstr;

constexpr const char* styled =
    "1\n00:00:01,000 --> 00:00:02,500\n<b>Bold</b>, <i>italic</i>,\n<u>under</u> line\n\n"
    "2\n00:00:03,000 --> 00:00:05,250\n<font color=\"#ff0000\">Red</font>\n\n";

class Show : public testing::Test {
protected:
    Show() { setup.folder = folder.path(); }

    ToolAnswer show(const std::string& bytes, const std::vector<std::string>& options = {},
                    const std::string& name = "x.srt") {
        folder.writeFile(name, bytes);
        std::vector<std::string> arguments = {"show", name};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runTool(arguments, setup);
    }

    test::TemporaryFolder folder;
    ToolSetup setup;
};

TEST_F(Show, PrintsCuesWithTheirTimes) {
    const ToolAnswer answer = show(styled);
    EXPECT_EQ(answer.output,
              "00:00:01.000 --> 00:00:02.500\n"
              "Bold, italic,\n"
              "under line\n"
              "\n"
              "00:00:03.000 --> 00:00:05.250\n"
              "Red\n");
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Show, ShowsStylesOnATerminal) {
    setup.outputIsTerminal = true;
    constexpr const char* cues =
        "\x1B[2m00:00:01.000 --> 00:00:02.500\x1B[0m\n"
        "\x1B[1mBold\x1B[0m, \x1B[3mitalic\x1B[0m,\n"
        "\x1B[4munder\x1B[0m line\n"
        "\n"
        "\x1B[2m00:00:03.000 --> 00:00:05.250\x1B[0m\n";
    EXPECT_EQ(show(styled).output, std::string(cues) + "\x1B[38;5;196mRed\x1B[0m\n");
    setup.environment = {{"COLORTERM", "truecolor"}};
    EXPECT_EQ(show(styled).output, std::string(cues) + "\x1B[38;2;255;0;0mRed\x1B[0m\n");
}

TEST_F(Show, IsPlainForPeopleAndTerminalsWithoutColors) {
    const std::string plain = show(styled).output;
    setup.outputIsTerminal = true;
    setup.environment = {{"NO_COLOR", "1"}};
    EXPECT_EQ(show(styled).output, plain);
    setup.environment = {{"NO_COLOR", ""}};
    EXPECT_EQ(show(styled).output, plain);
    setup.environment = {{"TERM", "dumb"}};
    EXPECT_EQ(show(styled).output, plain);
}

TEST_F(Show, SaysWhereAFileIsLongerThanWhatIsRead) {
    const std::string cue = "1\n00:00:01,000 --> 00:00:02,000\nOne\n\n";
    const std::string full = std::string(8388608 - cue.size(), '\n') + cue;
    const ToolAnswer whole = show(full);
    EXPECT_EQ(whole.output, "00:00:01.000 --> 00:00:02.000\nOne\n");
    EXPECT_EQ(whole.error, "");
    EXPECT_EQ(whole.status, 0);
    const ToolAnswer cut = show(full + "2\n00:00:03,000 --> 00:00:04,000\nTwo\n\n");
    EXPECT_EQ(cut.output, whole.output);
    EXPECT_EQ(cut.error, "subtitles: x.srt: longer than 8 MiB, and read no further\n");
    EXPECT_EQ(cut.status, 1);
}

TEST_F(Show, PrintsJson) {
    const ToolAnswer answer = show(styled, {"--json"});
    EXPECT_EQ(
        answer.output,
        "{\n"
        "  \"path\": \"x.srt\",\n"
        "  \"format\": \"srt\",\n"
        "  \"mimeType\": \"application/x-srt\",\n"
        "  \"languageCode\": \"\",\n"
        "  \"languageName\": \"Unknown\",\n"
        "  \"class\": \"\",\n"
        "  \"encoding\": \"UTF-8\",\n"
        "  \"unit\": \"nanoseconds\",\n"
        "  \"frameRate\": null,\n"
        "  \"cues\": [\n"
        "    {\"start\":1000000000,\"end\":2500000000,\"text\":\"Bold, italic,\\nunder line\","
        "\"runs\":["
        "{\"text\":\"Bold\",\"bold\":true,\"italic\":false,\"underline\":false,"
        "\"strikeThrough\":false,\"color\":null,\"background\":null},"
        "{\"text\":\", \",\"bold\":false,\"italic\":false,\"underline\":false,"
        "\"strikeThrough\":false,\"color\":null,\"background\":null},"
        "{\"text\":\"italic\",\"bold\":false,\"italic\":true,\"underline\":false,"
        "\"strikeThrough\":false,\"color\":null,\"background\":null},"
        "{\"text\":\",\\n\",\"bold\":false,\"italic\":false,\"underline\":false,"
        "\"strikeThrough\":false,\"color\":null,\"background\":null},"
        "{\"text\":\"under\",\"bold\":false,\"italic\":false,\"underline\":true,"
        "\"strikeThrough\":false,\"color\":null,\"background\":null},"
        "{\"text\":\" line\",\"bold\":false,\"italic\":false,\"underline\":false,"
        "\"strikeThrough\":false,\"color\":null,\"background\":null}]},\n"
        "    {\"start\":3000000000,\"end\":5250000000,\"text\":\"Red\",\"runs\":["
        "{\"text\":\"Red\",\"bold\":false,\"italic\":false,\"underline\":false,"
        "\"strikeThrough\":false,\"color\":\"#ff0000\",\"background\":null}]}\n"
        "  ]\n"
        "}\n");
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Show, ShowsNoNul) {
    EXPECT_EQ(show("1\n00:00:01,000 --> 00:00:02,500\n<b>x</b>\n").output,
              "00:00:01.000 --> 00:00:02.500\nx\n");
    EXPECT_EQ(show("1\n00:00:01,000 --> 00:00:02,500\n\n").output,
              "00:00:01.000 --> 00:00:02.500\n");
}

TEST_F(Show, LetsNoEscapeSequenceReachATerminal) {
    const std::string bytes =
        "1\n00:00:01,000 --> 00:00:02,500\n\x1B]0;owned\x07\u009B31m\x7F\rx\n";
    setup.outputIsTerminal = true;
    EXPECT_EQ(show(bytes).output,
              "\x1B[2m00:00:01.000 --> 00:00:02.500\x1B[0m\n"
              "\u241B]0;owned\u2407\uFFFD31m\u2421\nx\n");
    EXPECT_THAT(show(bytes, {"--json"}).output,
                HasSubstr("\"text\":\"\\u001b]0;owned\\u0007\\u009b31m\\u007f\\nx\""));
}

TEST_F(Show, ReadsTheEncodingThatItIsTold) {
    const std::string bytes = "1\n00:00:01,000 --> 00:00:02,500\n\xB3\n";
    EXPECT_THAT(show(bytes, {"--encoding", "windows-1250"}).output, HasSubstr("\n\u0142\n"));
    EXPECT_THAT(show(bytes, {"--encoding", "windows-1251"}).output, HasSubstr("\n\u0456\n"));
}

TEST_F(Show, DetectsTheEncodingElse) {
    // Korean, in CP949.
    const std::string line =
        "\xBE\xC8\xB3\xE7\xC7\xCF\xBC\xBC\xBF\xE4 "
        "\xB9\xDD\xB0\xA9\xBD\xC0\xB4\xCF\xB4\xD9 "
        "\xB0\xA8\xBB\xE7\xC7\xD5\xB4\xCF\xB4\xD9\n";
    EXPECT_THAT(show("1\n00:00:01,000 --> 00:00:02,500\n" + line).output,
                HasSubstr("\n\uC548\uB155\uD558\uC138\uC694 "));
}

struct FailureCase {
    const char* name;
    const char* file;
    std::vector<std::string> options;
    const char* message;
};

const FailureCase failureCases[] = {
    {"MissingFile", "missing.srt", {}, "Cannot open 'missing.srt': No such file or directory"},
    {"Folder", "folder.srt", {}, "Cannot open 'folder.srt': it is a folder"},
    {"UnknownEncoding",
     "good.srt",
     {"--encoding", "klingon"},
     "good.srt: Unknown text encoding 'klingon'"},
    {"MalformedText",
     "latin.ass",
     {"--encoding", "UTF-8"},
     "latin.ass: it is not valid UTF-8 (--encoding names another)"},
    {"NoSubtitleFile",
     "notes.txt",
     {},
     "notes.txt: no subtitle file by its extension (srt, sub, ass, ssa, smi, sami)"},
    {"NoSuchLanguage",
     "good.srt",
     {"--language", "de"},
     "good.srt: no subtitles in the language \"de\"; there is one in an unknown language"},
    {"NoSuchClass",
     "good.srt",
     {"--class", "encc"},
     "good.srt: no subtitles of the class \"encc\"; there is one in an unknown language"},
};

class ShowFailure : public testing::TestWithParam<FailureCase> {};

TEST_P(ShowFailure, IsToldInOneLine) {
    const test::TemporaryFolder folder;
    folder.makeFolder("folder.srt");
    folder.writeFile("good.srt", styled);
    folder.writeFile("latin.ass", "[Events]\nFormat: Start, End, Text\nDialogue: caf\xE9\n");
    folder.writeFile("notes.txt", styled);
    std::vector<std::string> arguments = {"show", GetParam().file};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    ToolSetup setup;
    setup.folder = folder.path();
    const ToolAnswer answer = runTool(arguments, setup);
    EXPECT_EQ(answer.error, std::string("subtitles: ") + GetParam().message + "\n");
    EXPECT_EQ(answer.output, "");
    EXPECT_EQ(answer.status, 2);
}

INSTANTIATE_TEST_SUITE_P(Cases, ShowFailure, testing::ValuesIn(failureCases),
                         [](const auto& test) { return test.param.name; });

TEST_F(Show, NamesTheFileWithoutPermission) {
    setup.fileRightsHold = true;
    chmod(folder.writeFile("secret.srt", styled).c_str(), 0);
    for (const char* command : {"show", "detect"}) {
        const ToolAnswer answer = runTool({command, "secret.srt"}, setup);
        EXPECT_EQ(answer.error, "subtitles: Cannot open 'secret.srt': Permission denied\n");
        EXPECT_EQ(answer.output, "");
        EXPECT_EQ(answer.status, 2);
    }
}

TEST_F(Show, SaysThatThereAreNoCues) {
    const ToolAnswer answer = show("Nothing that looks like a subtitle\n");
    EXPECT_EQ(answer.output, "");
    EXPECT_EQ(answer.error, "subtitles: x.srt: no cues\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(Show, ReadsAFileWhoseFirstCueComesLate) {
    const std::string notes(100000, '\n');
    EXPECT_EQ(show(notes + styled).output, show(styled).output);
}

constexpr const char* microDVD = "{10}{20}Hello|World\n{30}{}{y:i}Open\n";

TEST_F(Show, CountsFramesWhereNobodyTellsTheRate) {
    EXPECT_EQ(show(microDVD, {}, "x.sub").output,
              "{10} --> {20}\n"
              "Hello\n"
              "World\n"
              "\n"
              "{30} -->\n"
              "Open\n");
    const ToolAnswer answer = show(microDVD, {"--json"}, "x.sub");
    EXPECT_THAT(answer.output, HasSubstr("  \"unit\": \"frames\",\n  \"frameRate\": null,\n"));
    EXPECT_THAT(answer.output, HasSubstr("{\"start\":30,\"end\":null,\"text\":\"Open\",\"runs\":"));
    EXPECT_EQ(answer.error, "");
}

TEST_F(Show, TakesTheRateThatItIsTold) {
    constexpr const char* times = "00:00:00.400 --> 00:00:00.800\nHello\n";
    EXPECT_THAT(show(microDVD, {"--fps", "25"}, "x.sub").output, HasSubstr(times));
    EXPECT_EQ(show(std::string("{1}{1}25\n") + microDVD, {}, "x.sub").output,
              show(microDVD, {"--fps", "25"}, "x.sub").output);
    EXPECT_EQ(show(std::string("{1}{1}50\n") + microDVD, {"--fps", "25"}, "x.sub").output,
              show(microDVD, {"--fps", "25"}, "x.sub").output);
    EXPECT_THAT(show(microDVD, {"--fps", "24000/1001", "--json"}, "x.sub").output,
                HasSubstr("  \"unit\": \"nanoseconds\",\n  \"frameRate\": \"24000/1001\",\n"));
}

TEST_F(Show, CountsFramesWhereTheRateMakesNoSense) {
    EXPECT_EQ(show(std::string("{1}{1}0\n") + microDVD, {}, "x.sub").output,
              show(microDVD, {}, "x.sub").output);
}

TEST_F(Show, ReadsSRTUnderTheOtherFormatsName) {
    EXPECT_EQ(show(styled, {}, "x.sub").output, show(styled).output);
}

TEST_F(Show, ReadsASS) {
    constexpr const char* script =
        "[Script Info]\n[Events]\n"
        "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
        "Dialogue: 0,0:00:01.50,0:00:03.00,Default,,0,0,0,,{\\an8}{\\i1}Hi{\\i0}, there\\Nyou\n"
        "Dialogue: 0,0:00:04.00,0:00:05.00,Default,,0,0,0,,{\\p1}m 0 0 l 1 1{\\p0}\n";
    EXPECT_EQ(show(script, {}, "x.ass").output,
              "00:00:01.500 --> 00:00:03.000\n"
              "Hi, there\n"
              "you\n"
              "\n"
              "00:00:04.000 --> 00:00:05.000\n");
    setup.outputIsTerminal = true;
    EXPECT_THAT(show(script, {}, "x.ssa").output, HasSubstr("\n\x1B[3mHi\x1B[0m, there\nyou\n"));
}

TEST_F(Show, NamesTheFileThatCannotBeDecoded) {
    const ToolAnswer answer = show("[Events]\n\xFF\n", {"--encoding", "UTF-8"}, "x.ass");
    EXPECT_THAT(answer.error, testing::StartsWith("subtitles: x.ass: "));
    EXPECT_EQ(answer.error.find('\n'), answer.error.size() - 1);
    EXPECT_EQ(answer.status, 2);
}

constexpr const char* twoLanguages =
    "<SAMI><HEAD><STYLE TYPE=\"text/css\"><!--\n"
    ".ENCC {Name: English; lang: en-US; SAMIType: CC;}\n"
    ".FRCC {Name: French; lang: fr-FR; SAMIType: CC;}\n"
    "--></STYLE></HEAD><BODY>\n"
    "<SYNC Start=1000><P Class=ENCC>Hello\n<SYNC Start=1000><P Class=FRCC>Bonjour\n"
    "<SYNC Start=3000><P Class=ENCC>&nbsp;\n<SYNC Start=3000><P Class=FRCC>&nbsp;\n"
    "</BODY></SAMI>\n";

TEST_F(Show, ShowsTheFirstOfSeveralLanguages) {
    const ToolAnswer answer = show(twoLanguages, {}, "x.smi");
    EXPECT_EQ(answer.output, "00:00:01.000 --> 00:00:03.000\nHello\n");
    EXPECT_EQ(answer.error.find("subtitles: x.smi: several subtitles, English ("), 0U);
    EXPECT_THAT(answer.error, HasSubstr("class encc), French ("));
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Show, ShowsTheLanguageThatIsChosen) {
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{"--language", "fr"},
                                               {"--language", "FR"},
                                               {"--language", "fre"},
                                               {"--language", "fr-FR"},
                                               {"--language", "french"},
                                               {"--class", "frcc"},
                                               {"--class", "FRCC"},
                                               {"--language", "fr", "--class", "frcc"}}) {
        const ToolAnswer answer = show(twoLanguages, options, "x.smi");
        EXPECT_EQ(answer.output, "00:00:01.000 --> 00:00:03.000\nBonjour\n") << options.back();
        EXPECT_EQ(answer.error, "") << options.back();
    }
    const ToolAnswer answer = show(twoLanguages, {"--language", "de"}, "x.smi");
    EXPECT_THAT(answer.error, HasSubstr("no subtitles in the language \"de\"; there is English ("));
    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(show(twoLanguages, {"--language", "en", "--class", "frcc"}, "x.smi").status, 2);
}

}  // namespace
