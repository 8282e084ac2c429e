// SPDX-License-Identifier: LGPL-2.1-or-later

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gst/gst.h>
#include <gtest/gtest.h>

#include "tests/apps/run-tool.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;
using test::ToolAnswer;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* cues =
    "1\n00:00:01,000 --> 00:00:02,000\nOne\n\n2\n00:00:03,000 --> 00:00:04,000\nTwo\n";

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// "1280x720" of a PNG; empty where it is none.
std::string sizeOf(const std::string& png) {
    constexpr const char* signature = "\x89PNG\r\n\x1A\n";
    if (png.size() < 24 || png.compare(0, 8, signature) != 0) {
        return "";
    }
    const auto number = [&](std::size_t at) {
        unsigned value = 0;
        for (std::size_t i = at; i < at + 4; ++i) {
            value = value * 256 + static_cast<unsigned char>(png[i]);
        }
        return std::to_string(value);
    };
    return number(16) + "x" + number(20);
}

class Preview : public testing::Test {
protected:
    void SetUp() override {
        for (const char* const name : {"textoverlay", "timeoverlay", "pngenc", "theoraenc"}) {
            GstElementFactory* const factory = gst_element_factory_find(name);
            if (factory == nullptr) {
                GTEST_SKIP() << "GStreamer has no " << name;
            }
            gst_object_unref(factory);
        }
    }

    ToolAnswer preview(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "preview");
        return runTool(arguments);
    }

    /// Two seconds of a film of 64 by 48 pixels that are twice as wide as high.
    std::string makeFilm() {
        const std::string film = folder.path("film.ogv");
        const std::string command =
            "gst-launch-1.0 -q videotestsrc num-buffers=50 ! "
            "'video/x-raw,width=64,height=48,framerate=25/1,pixel-aspect-ratio=2/1' ! theoraenc ! "
            "oggmux ! filesink location=" +
            film;
        EXPECT_EQ(std::system(command.c_str()), 0);
        return film;
    }

    test::TemporaryFolder folder;
    std::string subtitle = folder.writeFile("film.en.srt", cues);
    std::string picture = folder.path("frame.png");
};

TEST_F(Preview, DrawsOnAPlainBackground) {
    const ToolAnswer answer = preview({"--subtitle", subtitle, "--at", "1.5", "-o", picture});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "");
    EXPECT_EQ(answer.error, "");
    EXPECT_EQ(sizeOf(contentOf(picture)), "1280x720");
}

TEST_F(Preview, ShowsAFilmWithSquarePixels) {
    const ToolAnswer answer = preview({makeFilm(), "--at", "1.5", "-o", picture});
    EXPECT_EQ(answer.status, 0) << answer.error;
    EXPECT_EQ(sizeOf(contentOf(picture)), "128x48");
}

TEST_F(Preview, LanguageChoosesAmongThoseBesideTheFilm) {
    folder.writeFile("film.ko.srt", cues);
    const ToolAnswer answer =
        preview({makeFilm(), "--language", "ko", "--at", "1.5", "-o", picture, "--json"});
    EXPECT_EQ(answer.status, 0) << answer.error;
    EXPECT_THAT(answer.output, HasSubstr("film.ko.srt"));
}

TEST_F(Preview, StripHasACellForEachCueThatTheFilmReaches) {
    EXPECT_EQ(preview({"--subtitle", subtitle, "--strip", "9", "-o", picture}).status, 0);
    EXPECT_EQ(sizeOf(contentOf(picture)), "914x264");
    EXPECT_EQ(preview({makeFilm(), "--strip", "9", "-o", picture, "--force"}).status, 0);
    EXPECT_EQ(sizeOf(contentOf(picture)), "460x180");
}

TEST_F(Preview, GoesToStandardOutput) {
    const ToolAnswer answer = preview({"--subtitle", subtitle, "--at", "1", "-o", "-"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(sizeOf(answer.output), "1280x720");
}

TEST_F(Preview, TellsWhatItDidToScripts) {
    const ToolAnswer answer =
        preview({"--subtitle", subtitle, "--at", "1", "-o", picture, "--json"});
    EXPECT_THAT(answer.output, HasSubstr("\"film\": null"));
    EXPECT_THAT(answer.output, HasSubstr("\"width\": 1280"));
    EXPECT_THAT(answer.output, HasSubstr("\"format\": \"srt\""));
}

TEST_F(Preview, SaysWhereNoCueIsInThePicture) {
    const ToolAnswer answer = preview({"--subtitle", subtitle, "--at", "2", "-o", picture});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.error, "subtitles: " + subtitle + ": no cue at 00:00:02.000\n");
    EXPECT_EQ(sizeOf(contentOf(picture)), "1280x720");
}

TEST_F(Preview, OverwritesNothingUnasked) {
    folder.writeFile("frame.png", "mine");
    const ToolAnswer answer = preview({"--subtitle", subtitle, "--at", "1", "-o", picture});
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.error, HasSubstr("it exists already"));
    EXPECT_EQ(contentOf(picture), "mine");
}

TEST_F(Preview, FailsBehindTheEndOfTheFilm) {
    const ToolAnswer answer = preview({makeFilm(), "--at", "3.5", "-o", picture});
    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(answer.error,
              "subtitles: " + folder.path("film.ogv") + ": the film ends at 00:00:02.000\n");
}

TEST_F(Preview, FailsOnWhatIsNoFilm) {
    const ToolAnswer answer =
        preview({subtitle, "--subtitle", subtitle, "--at", "1", "-o", picture});
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.error, StartsWith("subtitles: " + subtitle + ": "));
}

TEST_F(Preview, FailsOnAFilmThatIsMissing) {
    const std::string film = folder.path("film.mkv");
    for (const char* const name : {"", "film.en.srt"}) {
        std::vector<std::string> arguments = {film, "--at", "1", "-o", picture};
        if (*name != '\0') {
            arguments.insert(arguments.end(), {"--subtitle", folder.path(name)});
        }
        const ToolAnswer answer = preview(arguments);
        EXPECT_EQ(answer.status, 2);
        EXPECT_EQ(answer.error,
                  "subtitles: Cannot open '" + film + "': No such file or directory\n");
    }
}

TEST_F(Preview, FailsWithoutSubtitlesBesideTheFilm) {
    const std::string film = folder.writeFile("other.ogv", "");
    const ToolAnswer answer = preview({film, "--at", "1", "-o", picture});
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.error, HasSubstr("no subtitles beside the film"));
}

TEST_F(Preview, WantsEitherATimeOrAStrip) {
    EXPECT_EQ(preview({"--subtitle", subtitle, "-o", picture}).status, 64);
    EXPECT_EQ(preview({"--subtitle", subtitle, "--at", "1", "--strip", "2", "-o", picture}).status,
              64);
    EXPECT_EQ(preview({"--at", "1", "-o", picture}).status, 64);
    EXPECT_EQ(preview({"--subtitle", subtitle, "--at", "1"}).status, 64);
    EXPECT_EQ(preview({"--subtitle", subtitle, "--strip", "0", "-o", picture}).status, 64);
}

}  // namespace
