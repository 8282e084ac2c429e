// SPDX-License-Identifier: LGPL-2.1-or-later

#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/apps/run-tool.h"
#include "tests/support/file-watch.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;
using test::ToolAnswer;
using test::ToolSetup;
using testing::HasSubstr;
using testing::Not;

constexpr const char* twoCues =
    "1\n00:00:01,000 --> 00:00:02,500\nOne\n\n2\n01:00:03,000 --> 01:00:05,000\nTwo\n";

class Find : public testing::Test {
protected:
    Find() {
        setup.folder = folder.path();
        folder.writeFile("Film.mkv", "");
    }

    ToolAnswer find(const std::vector<std::string>& arguments = {"Film.mkv"}) {
        std::vector<std::string> all = {"find"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return runTool(all, setup);
    }

    test::TemporaryFolder folder;
    ToolSetup setup;
};

TEST_F(Find, ListsWhatBelongsToTheFilm) {
    folder.writeFile("Film.de.srt", twoCues);
    folder.writeFile("FILM.en.SRT", std::string(twoCues) + "\n\xC3\xA9");
    folder.writeFile("Film.Directors Cut.srt", twoCues);
    folder.writeFile("film.srt", twoCues);
    folder.writeFile("Other.de.srt", twoCues);
    folder.writeFile("Film.txt", twoCues);
    folder.writeFile("Film.empty.srt", "");
    const ToolAnswer answer = find();
    EXPECT_EQ(answer.output,
              "FORMAT  LANGUAGE       ENCODING  CUES         FIRST          LAST  FILE\n"
              "SRT     English        UTF-8        2  00:00:01.000  01:00:05.000  FILM.en.SRT\n"
              "SRT     Directors Cut  UTF-8        2  00:00:01.000  01:00:05.000  "
              "Film.Directors Cut.srt\n"
              "SRT     German         UTF-8        2  00:00:01.000  01:00:05.000  Film.de.srt\n"
              "SRT     Unknown        UTF-8        2  00:00:01.000  01:00:05.000  film.srt\n");
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Find, TakesAFolderAndAPrefix) {
    folder.writeFile("films/Film.de.srt", twoCues);
    folder.writeFile("films/Other.de.srt", twoCues);
    constexpr const char* listed =
        "FORMAT  LANGUAGE  ENCODING  CUES         FIRST          LAST  FILE\n"
        "SRT     German    UTF-8        2  00:00:01.000  01:00:05.000  films/Film.de.srt\n";
    EXPECT_EQ(find({"films", "film"}).output, listed);
    EXPECT_EQ(find({"films/", "film"}).output, listed);
}

TEST_F(Find, TakesAFolderAlone) {
    folder.writeFile("a.srt", twoCues);
    folder.writeFile("b.srt", twoCues);
    EXPECT_EQ(find({"."}).output,
              "FORMAT  LANGUAGE  ENCODING  CUES         FIRST          LAST  FILE\n"
              "SRT     a         UTF-8        2  00:00:01.000  01:00:05.000  a.srt\n"
              "SRT     b         UTF-8        2  00:00:01.000  01:00:05.000  b.srt\n");
}

TEST_F(Find, ExcludesTheFilmsOwnSuffix) {
    folder.writeFile("Film.srt", twoCues);
    // Somebody asks with a subtitle in place of the film: all of its kind are excluded.
    EXPECT_EQ(find({"Film.srt"}).status, 1);
}

TEST_F(Find, TakesAFilmWithoutASuffix) {
    folder.writeFile("Film", "");
    folder.writeFile("Film.de.srt", twoCues);
    EXPECT_THAT(find({"Film"}).output, HasSubstr("  Film.de.srt\n"));
}

TEST_F(Find, SaysThatThereIsNone) {
    folder.writeFile("Other.de.srt", twoCues);
    const ToolAnswer answer = find();
    EXPECT_EQ(answer.output, "");
    EXPECT_EQ(answer.error, "subtitles: no subtitles in '.' whose names begin with 'Film'\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(Find, SaysWhereAFileIsLongerThanWhatIsRead) {
    folder.writeFile("Film.de.srt", twoCues + std::string(8388608, '\n'));
    const ToolAnswer answer = find();
    EXPECT_THAT(answer.output, HasSubstr("  Film.de.srt\n"));
    EXPECT_EQ(answer.error, "subtitles: Film.de.srt: longer than 8 MiB, and read no further\n");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Find, ReportsABadFileAndListsTheOthers) {
    folder.writeFile("Film.de.srt", twoCues);
    folder.makeFolder("Film.en.srt");
    folder.writeFile("Film.fr.srt", twoCues);
    const ToolAnswer answer = find();
    EXPECT_EQ(answer.output,
              "FORMAT  LANGUAGE  ENCODING  CUES         FIRST          LAST  FILE\n"
              "SRT     German    UTF-8        2  00:00:01.000  01:00:05.000  Film.de.srt\n"
              "SRT     French    UTF-8        2  00:00:01.000  01:00:05.000  Film.fr.srt\n");
    EXPECT_EQ(answer.error.find("subtitles: Cannot open '"), 0U);
    EXPECT_THAT(answer.error, HasSubstr("/Film.en.srt': it is a folder\n"));
    EXPECT_EQ(answer.status, 2);
}

TEST_F(Find, ReportsAFileWithoutPermission) {
    setup.fileRightsHold = true;
    folder.writeFile("Film.fr.srt", twoCues);
    chmod(folder.writeFile("Film.de.srt", twoCues).c_str(), 0);
    const ToolAnswer answer = find();
    EXPECT_THAT(answer.error, HasSubstr("/Film.de.srt': Permission denied\n"));
    EXPECT_THAT(answer.output, HasSubstr("Film.fr.srt")) << "the others are listed";
    EXPECT_EQ(answer.status, 2);
}

TEST_F(Find, FailsInAFolderWithoutPermission) {
    setup.fileRightsHold = true;
    chmod(folder.makeFolder("films").c_str(), 0);
    EXPECT_EQ(find({"films"}).error,
              "subtitles: Cannot list the folder 'films': Permission denied\n");
    EXPECT_EQ(find({"films/Film.mkv"}).error,
              "subtitles: Cannot open 'films/Film.mkv': Permission denied\n");
    EXPECT_EQ(find({"films"}).status, 2);
    chmod(folder.path("films").c_str(), 0700);
}

TEST_F(Find, OpensNothingThatDoesNotBelongToTheFilm) {
    for (const char* name :
         {"Film.de.srt", "Film.en.sub", "Other.srt", "A Film.srt", "Other.smi"}) {
        folder.writeFile(name, twoCues);
    }
    folder.writeFile("Film.txt", twoCues);
    const test::FileWatch watch(folder.path());
    EXPECT_EQ(find().status, 0);
    const std::vector<std::string> opened = watch.opened();
    EXPECT_EQ(std::set<std::string>(opened.begin(), opened.end()),
              (std::set<std::string>{"Film.de.srt", "Film.en.sub"}));
}

TEST_F(Find, FailsWithoutTheFilmOrTheFolder) {
    EXPECT_EQ(find({"Missing.mkv"}).error,
              "subtitles: Cannot open 'Missing.mkv': No such file or directory\n");
    EXPECT_EQ(find({"Missing.mkv"}).status, 2);
    EXPECT_EQ(find({"missing", "Film"}).status, 2);
}

TEST_F(Find, TakesAPrefixWithAFolderOnly) {
    const ToolAnswer answer = find({"Film.mkv", "Film"});
    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.error, HasSubstr("a prefix goes with a folder"));
}

TEST_F(Find, PrintsJson) {
    folder.writeFile("Film.de.srt", twoCues);
    folder.writeFile("Film.Klingon.srt", "1\n00:00:01,000 --> 00:00:02,500\nx");
    folder.makeFolder("Film.en.srt");
    const ToolAnswer answer = find({"--json", folder.path(), "film"});
    const std::string start = "    {\"path\":\"" + folder.path();
    EXPECT_EQ(answer.output,
              "{\n"
              "  \"folder\": \"" +
                  folder.path() +
                  "\",\n"
                  "  \"prefix\": \"film\",\n"
                  "  \"subtitles\": [\n" +
                  start +
                  "/Film.Klingon.srt\",\"format\":\"srt\",\"mimeType\":\"application/x-srt\","
                  "\"languageCode\":\"\",\"languageName\":\"Klingon\",\"class\":\"\","
                  "\"encoding\":\"UTF-8\",\"unit\":\"nanoseconds\",\"frameRate\":null,"
                  "\"cues\":1,\"first\":1000000000,\"last\":2500000000},\n" +
                  start +
                  "/Film.de.srt\",\"format\":\"srt\",\"mimeType\":\"application/x-srt\","
                  "\"languageCode\":\"de\",\"languageName\":\"German\",\"class\":\"\","
                  "\"encoding\":\"UTF-8\",\"unit\":\"nanoseconds\",\"frameRate\":null,"
                  "\"cues\":2,\"first\":1000000000,\"last\":3605000000000}\n"
                  "  ],\n"
                  "  \"errors\": [\n" +
                  start + "/Film.en.srt\",\"message\":\"Cannot open '" + folder.path() +
                  "/Film.en.srt': it is a folder\"}\n"
                  "  ]\n"
                  "}\n");
    EXPECT_EQ(answer.status, 2);
}

TEST_F(Find, PrintsJsonWhereThereIsNone) {
    const ToolAnswer answer = find({"--json", ".", "film"});
    EXPECT_EQ(answer.output,
              "{\n  \"folder\": \".\",\n  \"prefix\": \"film\",\n  \"subtitles\": [],\n"
              "  \"errors\": []\n}\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(Find, ShowsProgressInLargeFoldersOnATerminal) {
    folder.writeFile("Film.de.srt", twoCues);
    for (int i = 0; i < 2500; ++i) {
        folder.writeFile("Other " + std::to_string(i), "");
    }
    const std::string listed = find().output;
    EXPECT_EQ(find().error, "");
    setup.errorIsTerminal = true;
    const ToolAnswer answer = find();
    EXPECT_THAT(answer.error, testing::StartsWith("\r\x1B[K1000 files, "));
    EXPECT_THAT(answer.error, testing::EndsWith("\r\x1B[K"));
    EXPECT_THAT(answer.error, Not(HasSubstr("\n")));
    EXPECT_EQ(answer.output, listed);
    setup.environment = {{"TERM", "dumb"}};
    EXPECT_EQ(find().error, "");
}

TEST_F(Find, ShowsProgressOverManyCandidates) {
    for (int i = 0; i < 60; ++i) {
        folder.writeFile("Film " + std::to_string(i) + ".txt", "");
    }
    setup.errorIsTerminal = true;
    EXPECT_THAT(find().error, testing::StartsWith("\r\x1B[K1 of 60: Film"));
}

TEST_F(Find, KeepsProgressInOneLineOfTheTerminal) {
    for (int i = 0; i < 60; ++i) {
        folder.writeFile("Film \uAC00\uAC00 with a long name " + std::to_string(i) + ".txt", "");
    }
    setup.errorIsTerminal = true;
    setup.columns = 18;
    EXPECT_THAT(find().error, testing::StartsWith("\r\x1B[K1 of 60: Film \uAC00\r\x1B[K"));
}

TEST_F(Find, IsQuietInSmallFolders) {
    folder.writeFile("Film.de.srt", twoCues);
    setup.errorIsTerminal = true;
    EXPECT_EQ(find().error, "");
}

TEST_F(Find, ListsSubtitlesOfEveryFormat) {
    folder.writeFile("Film.a.sub", "{10}{20}x\n{30}{45}y\n");
    folder.writeFile("Film.b.sub", "{1}{1}25\n{25}{50}x\n");
    folder.writeFile("Film.c.ass",
                     "[Events]\nFormat: Start, End, Text\nDialogue: 0:00:01.50,0:00:03.00,x\n");
    folder.writeFile("Film.d.ssa", "not even a script");
    folder.writeFile("Film.e.sub", twoCues);
    folder.writeFile("Film.f.sub", std::string(twoCues) + "{10}{20}x\n");
    folder.writeFile("Film.smi",
                     "<SAMI><BODY><SYNC Start=1000><P Class=ENCC>Hello<P Class=KRCC>Hi\n"
                     "<SYNC Start=3000><P Class=ENCC>&nbsp;\n</BODY></SAMI>\n");
    EXPECT_EQ(find().output,
              "FORMAT    LANGUAGE  ENCODING  CUES         FIRST          LAST  FILE\n"
              "MicroDVD  a         UTF-8        2          {10}          {45}  Film.a.sub\n"
              "MicroDVD  b         UTF-8        1  00:00:01.000  00:00:02.000  Film.b.sub\n"
              "ASS       c         UTF-8        1  00:00:01.500  00:00:03.000  Film.c.ass\n"
              "ASS       d         UTF-8        0             -             -  Film.d.ssa\n"
              "SRT       e         UTF-8        2  00:00:01.000  01:00:05.000  Film.e.sub\n"
              "SRT       f         UTF-8        2  00:00:01.000  01:00:05.000  Film.f.sub\n"
              "MicroDVD  f         UTF-8        1          {10}          {20}  Film.f.sub\n"
              "SMI       ENCC      UTF-8        1  00:00:01.000  00:00:03.000  Film.smi\n"
              "SMI       KRCC      UTF-8        1  00:00:01.000  00:00:06.000  Film.smi\n");
}

}  // namespace
