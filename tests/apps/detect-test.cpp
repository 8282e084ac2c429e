// SPDX-License-Identifier: LGPL-2.1-or-later

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/apps/run-tool.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;
using test::ToolAnswer;
using test::ToolSetup;

/// Runs in a folder of its own, so that names in outputs are short.
class Detect : public testing::Test {
protected:
    Detect() { setup.folder = folder.path(); }

    ToolAnswer detect(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "detect");
        return runTool(arguments, setup);
    }

    std::string encodingOf(const std::string& bytes) {
        folder.writeFile("x.srt", bytes);
        const ToolAnswer answer = detect({"x.srt"});
        EXPECT_EQ(answer.error, "");
        EXPECT_EQ(answer.status, 0);
        return answer.output;
    }

    test::TemporaryFolder folder;
    ToolSetup setup;
};

TEST_F(Detect, NamesAnEncodingThatCanBeGivenBack) {
    EXPECT_EQ(encodingOf(""), "x.srt: UTF-8\n");
    EXPECT_EQ(encodingOf("Plain letters"), "x.srt: UTF-8\n");
    EXPECT_EQ(encodingOf("Sch\u00F6ne Gr\u00FC\u00DFe aus \u65E5\u672C"), "x.srt: UTF-8\n");
    EXPECT_EQ(encodingOf("\xEF\xBB\xBFx"), "x.srt: UTF-8\n");
    // Bytes that fit nothing are read as Western text.
    EXPECT_EQ(encodingOf("\x81"), "x.srt: windows-1252\n");
    EXPECT_EQ(encodingOf(std::string("a\0b", 3)), "x.srt: UTF-8\n");
}

TEST_F(Detect, TakesACharacterThatTheLimitCutsForNoOtherEncoding) {
    // Eight mebibytes are read: the first half of the letter is the last of them.
    const std::string letters(8388607, 'x');
    EXPECT_EQ(encodingOf(letters + "\u00E9"), "x.srt: UTF-8\n");
}

TEST_F(Detect, NamesNoEncodingThatNobodyCanDecode) {
    // What the detector calls HZ-GB-2312.
    EXPECT_EQ(encodingOf("~{VPND~} ~{VPND~} ~{VPND~} ~{VPND~}\n"), "x.srt: UTF-8\n");
}

TEST_F(Detect, NamesTheSamplesEncodings) {
    const std::string samples = std::string(std::getenv("SUBTITLES_SAMPLES")) + "/film";
    setup.folder = samples;
    EXPECT_EQ(detect({"The Harbour.cs.srt", "The Harbour.es.srt", "The Harbour.fr.srt",
                      "The Harbour.ja.srt", "The Harbour.ko.srt", "The Harbour.ru.srt",
                      "The Harbour.zh.srt"})
                  .output,
              "The Harbour.cs.srt: windows-1250\n"
              "The Harbour.es.srt: UTF-16\n"
              "The Harbour.fr.srt: UTF-8\n"
              "The Harbour.ja.srt: SHIFT_JIS\n"
              "The Harbour.ko.srt: CP949\n"
              "The Harbour.ru.srt: WINDOWS-1251\n"
              "The Harbour.zh.srt: CP950\n");
}

TEST_F(Detect, GoesOnBehindABadFile) {
    folder.writeFile("a.srt", "a");
    folder.makeFolder("b.srt");
    folder.writeFile("d.srt", "d");
    const ToolAnswer answer = detect({"a.srt", "b.srt", "c.srt", "d.srt"});
    EXPECT_EQ(answer.output, "a.srt: UTF-8\nd.srt: UTF-8\n");
    EXPECT_EQ(answer.error,
              "subtitles: Cannot open 'b.srt': it is a folder\n"
              "subtitles: Cannot open 'c.srt': No such file or directory\n");
    EXPECT_EQ(answer.status, 2);
}

TEST_F(Detect, PrintsJson) {
    folder.writeFile("a.srt", "a");
    const ToolAnswer answer = detect({"--json", "a.srt", "c.srt"});
    EXPECT_EQ(answer.output,
              "{\n"
              "  \"files\": [\n"
              "    {\"path\":\"a.srt\",\"encoding\":\"UTF-8\"}\n"
              "  ],\n"
              "  \"errors\": [\n"
              "    {\"path\":\"c.srt\",\"message\":\"Cannot open 'c.srt': No such file or "
              "directory\"}\n"
              "  ]\n"
              "}\n");
    EXPECT_EQ(answer.error, "subtitles: Cannot open 'c.srt': No such file or directory\n");
    EXPECT_EQ(answer.status, 2);
}

TEST_F(Detect, KeepsNamesApartFromTheTerminal) {
    const std::string name = "\x1B[31m\n\xFF.srt";
    folder.writeFile(name, "a");
    EXPECT_EQ(detect({name}).output, "\u241B[31m\u240A\uFFFD.srt: UTF-8\n");
    EXPECT_EQ(detect({"--json", name}).output,
              "{\n"
              "  \"files\": [\n"
              "    {\"path\":\"\\u001b[31m\\n\uFFFD.srt\",\"encoding\":\"UTF-8\"}\n"
              "  ],\n"
              "  \"errors\": []\n"
              "}\n");
}

TEST_F(Detect, TakesNamesInBracketsAsTheyStand) {
    folder.writeFile("[a,b]", "a");
    folder.writeFile("[c]", "a");
    EXPECT_EQ(detect({"[a,b]", "[c]"}).output, "[a,b]: UTF-8\n[c]: UTF-8\n");
}

TEST_F(Detect, TakesNamesBehindTwoHyphensAsTheyStand) {
    folder.writeFile("--json", "a");
    EXPECT_EQ(detect({"--", "--json"}).output, "--json: UTF-8\n");
}

}  // namespace
