// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/ass-loader.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/describe.h"
#include "tests/support/encode.h"
#include "tests/support/temporary-folder.h"

using subtitles::describe;
using subtitles::SubtitleReference;

namespace {

constexpr const char* script =
    "[Script Info]\n[Events]\nFormat: Start,End,Text\n"
    "Dialogue: 0:00:05.00,0:00:06.50,later, still\n"
    "Dialogue: 0:00:01.00,0:00:01.20,short\n"
    "Dialogue: 0:00:02.00,x,open\n";

constexpr const char* stream =
    "application/x-ass ns | header \"[Script Info]\\n\""
    " | 1000000000+1000000000 \"1,,,,,,,,short\""
    " | 2000000000+2999999999 \"2,,,,,,,,open\""
    " | 5000000000+1500000000 \"0,,,,,,,,later, still\"";

class ASSLoader : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) {
        return folder.writeFile(name, bytes);
    }

    /// What the loader finds: "type mime-type path" of each reference.
    std::string analyze(const std::string& path) {
        std::string found;
        for (const SubtitleReference& each : loader.analyzeFile(fn::Path::parsePath(path))) {
            found += std::to_string(each.type) + " " + each.mimeType + " " + each.path + "\n";
            EXPECT_EQ(each.languageCode + each.customLanguageName + each.name + each.streamName,
                      "");
        }
        return found;
    }

    static SubtitleReference reference(const std::string& path) {
        SubtitleReference made;
        made.type = SubtitleReference::FILE;
        made.mimeType = "application/x-ass";
        made.path = path;
        return made;
    }

    std::string load(const std::string& path, const char* encoding = "") {
        return describe(*loader.loadSubtitle(reference(path), encoding));
    }

    test::TemporaryFolder folder;
    subtitles::ASSSubtitleLoader loader;
};

TEST_F(ASSLoader, FindsFilesOfItsExtensionsInAnyCase) {
    for (const char* name : {"movie.ass", "movie.ssa", "MOVIE.ASS", "movie.Ssa"}) {
        const std::string path = folder.path(name);
        EXPECT_EQ(analyze(path), "0 application/x-ass " + path + "\n") << "it need not exist";
    }
    for (const char* name : {"movie.txt", "movie.sub", "movie.ass.bak", "ass"}) {
        EXPECT_EQ(analyze(write(name, script)), "") << name;
    }
}

TEST_F(ASSLoader, FindsFilesOfAnyContent) {
    EXPECT_NE(analyze(write("a.ass", "")), "");
    EXPECT_NE(analyze(write("a.ass", "\xFF\xFF")), "");
    EXPECT_NE(analyze(folder.makeFolder("folder.ass")), "");
}

TEST_F(ASSLoader, RaisesForAFileThatCannotBeLoaded) {
    EXPECT_NE(analyze(folder.path("missing.ass")), "");
    EXPECT_THROW(load(folder.path("missing.ass")), fn::Exception);
    EXPECT_THROW(load(folder.makeFolder("folder.ass")), fn::Exception);
    EXPECT_THROW(load(write("a.ass", script), "no such encoding"), fn::Exception);
}

TEST_F(ASSLoader, HandlesFilesOfItsTypeAlone) {
    SubtitleReference mine = reference("/no/such/file.txt");
    EXPECT_TRUE(loader.canHandle(mine)) << "the path does not count";
    mine.type = SubtitleReference::STREAM;
    EXPECT_FALSE(loader.canHandle(mine));
    mine.type = SubtitleReference::FILE;
    for (const char* type : {"", "application/x-ssa", "application/x-ASS"}) {
        mine.mimeType = type;
        EXPECT_FALSE(loader.canHandle(mine)) << type;
    }
}

TEST_F(ASSLoader, LoadsSortedAndClean) {
    EXPECT_EQ(load(write("a.ass", script)), stream);
}

TEST_F(ASSLoader, LoadsTheSameFromEveryEncoding) {
    EXPECT_EQ(load(write("a.ass", test::encode(script, "UTF-16"))), stream);
    const std::string path = write("a.ass", std::string(script) + "; \xE9\n");
    EXPECT_EQ(load(path, "windows-1252"), stream);
}

TEST_F(ASSLoader, RaisesForMalformedText) {
    EXPECT_THROW(load(write("a.ass", std::string(script) + "; \xE9\n"), "UTF-8"),
                 fn::UTF8Exception);
}

TEST_F(ASSLoader, LoadsAFileWithoutEventsAsItsHeader) {
    EXPECT_EQ(load(write("a.ass", "text")), "application/x-ass ns | header \"text\\n\"");
}

TEST_F(ASSLoader, CutsAFileBehindEightMebibytes) {
    const std::string filling(8 * 1024 * 1024, ' ');
    const std::string late = "\nDialogue: 0:00:09.00,0:00:10.50,late\n";
    EXPECT_EQ(load(write("a.ass", script + filling + late), "UTF-8"), stream);
}

}  // namespace
