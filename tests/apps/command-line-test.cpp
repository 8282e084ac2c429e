// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What every command has in common: help, faults of the arguments, streams and exit statuses.

#include <filesystem>
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
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* manyLines = "1\n00:00:01,000 --> 00:00:02,500\n";

/// A file whose cues are more than a pipe holds.
std::string bigFile(const test::TemporaryFolder& folder) {
    std::string text = manyLines;
    for (int line = 0; line < 20000; ++line) {
        text += "A line that a person who looks at the first screen will never see\n";
    }
    return folder.writeFile("big.srt", text);
}

TEST(CommandLine, TellsItsVersion) {
    const ToolAnswer answer = runTool({"--version"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, testing::MatchesRegex("subtitles [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    EXPECT_EQ(answer.error, "");
}

TEST(CommandLine, HelpsWithEveryCommand) {
    const ToolAnswer help = runTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.error, "");
    for (const std::string command : {"find", "show", "detect"}) {
        EXPECT_THAT(help.output, HasSubstr("\n  " + command + " "));
        const ToolAnswer answer = runTool({command, "--help"});
        EXPECT_EQ(answer.status, 0) << command;
        EXPECT_EQ(answer.error, "") << command;
        EXPECT_THAT(answer.output, HasSubstr("subtitles " + command)) << command;
        EXPECT_THAT(answer.output, HasSubstr("--json")) << command;
        EXPECT_THAT(answer.output, HasSubstr("Exit status")) << command;
    }
}

struct UsageCase {
    const char* name;
    std::vector<std::string> arguments;
    const char* message;
};

const UsageCase usageCases[] = {
    {"NoCommand", {}, "a command is missing"},
    {"UnknownCommand", {"frobnicate", "x"}, "frobnicate: no such command"},
    {"UnknownOption", {"show", "x.srt", "--colour"}, "--colour"},
    {"NoFile", {"show"}, "FILE is required"},
    {"NoFiles", {"detect"}, "FILE is required"},
    {"NoPlace", {"find"}, "PLACE is required"},
    {"TooManyFiles", {"show", "a.srt", "b.srt"}, "b.srt"},
    {"OptionWithoutValue", {"show", "x.srt", "--encoding"}, "--encoding"},
    {"RateOfZero", {"show", "x.sub", "--fps", "0"}, "\"0\" is no rate"},
    {"RateTooHigh", {"show", "x.sub", "--fps", "1000.1"}, "\"1000.1\" is no rate"},
    {"RateTooLow", {"show", "x.sub", "--fps", "1/1001"}, "\"1/1001\" is no rate"},
    {"InfiniteRate", {"show", "x.sub", "--fps", "inf"}, "\"inf\" is no rate"},
    {"RateWithoutSense", {"show", "x.sub", "--fps", "1/0"}, "\"1/0\" is no rate"},
};

class Usage : public testing::TestWithParam<UsageCase> {};

TEST_P(Usage, IsToldInOneLine) {
    const ToolAnswer answer = runTool(GetParam().arguments);
    EXPECT_EQ(answer.status, 64);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.error, StartsWith("subtitles: "));
    EXPECT_THAT(answer.error, HasSubstr(GetParam().message));
    EXPECT_THAT(answer.error, EndsWith("(--help tells what there is)\n"));
    EXPECT_EQ(answer.error.find('\n'), answer.error.size() - 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, Usage, testing::ValuesIn(usageCases),
                         [](const auto& test) { return test.param.name; });

TEST(CommandLine, TakesACommandsNameForAFile) {
    const test::TemporaryFolder folder;
    ToolSetup setup;
    setup.folder = folder.path();
    folder.writeFile("find", "abc");
    EXPECT_EQ(runTool({"detect", "find"}, setup).output, "find: UTF-8\n");
}

TEST(CommandLine, TakesAnEmptyValueBehindAnEqualsSign) {
    const test::TemporaryFolder folder;
    ToolSetup setup;
    setup.folder = folder.path();
    folder.writeFile("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nOne\n");
    EXPECT_EQ(runTool({"show", "--encoding=", "--language=", "a.srt"}, setup).status, 0);
    folder.writeFile("--a=", "abc");
    EXPECT_EQ(runTool({"detect", "--", "--a="}, setup).output, "--a=: UTF-8\n");
}

TEST(CommandLine, LeavesGStreamersOptionsAlone) {
    const ToolAnswer answer = runTool({"--gst-version"});
    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.error, HasSubstr("--gst-version"));
}

TEST(CommandLine, LeavesNoPluginCacheBehind) {
    const test::TemporaryFolder home;
    ToolSetup setup;
    setup.environment = {{"HOME", home.path()}, {"XDG_CACHE_HOME", home.path("cache")}};
    EXPECT_EQ(runTool({"--version"}, setup).status, 0);
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

TEST(CommandLine, IsQuietWhereTheReaderHasGone) {
    const test::TemporaryFolder folder;
    ToolSetup setup;
    setup.closeOutput = true;
    const ToolAnswer answer = runTool({"show", bigFile(folder)}, setup);
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(answer.status, 0);
}

TEST(CommandLine, FailsWhereTheDiskIsFull) {
    const test::TemporaryFolder folder;
    ToolSetup setup;
    setup.outputFile = "/dev/full";
    for (const std::string& file : {bigFile(folder), folder.writeFile("s.srt", manyLines)}) {
        const ToolAnswer answer = runTool({"show", file}, setup);
        EXPECT_EQ(answer.status, 2);
        EXPECT_EQ(answer.error, "subtitles: standard output: No space left on device\n");
    }
}

TEST(CommandLine, ShowsNoControlCharactersInMessages) {
    const ToolAnswer answer = runTool({"show", "a\x1B[31m\n.srt"});
    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(answer.error,
              "subtitles: Cannot open 'a\u241B[31m\u240A.srt': No such file or directory\n");
}

}  // namespace
