// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/srt-loader.h"

#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "foundation/exception.h"

#include "subtitles/load-string.h"

#include "tests/support/describe.h"
#include "tests/support/encode.h"
#include "tests/support/file-rights.h"
#include "tests/support/temporary-folder.h"

using subtitles::describe;
using subtitles::SubtitleReference;
using testing::HasSubstr;

namespace {

constexpr const char* cue = "1\n00:00:01,000 --> 00:00:03,000\ntext\n\n";

class SrtLoader : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) {
        return folder.writeFile(name, bytes);
    }

    /// What the file is found to hold: "type mime-type path" of each reference.
    std::string analyze(const std::string& path) {
        std::ostringstream out;
        for (const SubtitleReference& each : loader.analyzeFile(fn::Path::parsePath(path))) {
            out << each.type << ' ' << each.mimeType << ' ' << each.path << '\n';
            EXPECT_EQ(each.languageCode + each.customLanguageName + each.name + each.streamName,
                      "");
            EXPECT_TRUE(each.loaderProperties.empty());
        }
        return out.str();
    }

    std::string load(const std::string& path, const char* encoding = "") {
        return describe(*loader.loadSubtitle(reference(path), encoding));
    }

    /// What is said where loading fails.
    std::string complaint(const std::string& path, const char* encoding = "") {
        try {
            loader.loadSubtitle(reference(path), encoding);
        } catch (const fn::Exception& exception) {
            return exception.displayText();
        }
        return "no exception";
    }

    static SubtitleReference reference(const std::string& path) {
        SubtitleReference made;
        made.type = SubtitleReference::FILE;
        made.mimeType = "application/x-srt";
        made.path = path;
        return made;
    }

    test::TemporaryFolder folder;
    subtitles::SrtSubtitleLoader loader;
};

}  // namespace

TEST_F(SrtLoader, FindsSrtUnderItsThreeExtensionsInAnyCase) {
    for (const char* name :
         {"movie.srt", "MOVIE.SRT", "movie.Srt", "movie.sub", "movie.smi", "movie.SMI"}) {
        const std::string path = write(name, cue);
        EXPECT_EQ(analyze(path), "0 application/x-srt " + path + "\n");
    }
}

TEST_F(SrtLoader, DoesNotOpenFilesOfOtherExtensions) {
    for (const char* name : {"movie.txt", "movie.ass", "movie.srt.bak", "movie.srtx", "srt"}) {
        EXPECT_EQ(analyze(write(name, cue)), "") << name;
        EXPECT_EQ(analyze(folder.path(std::string("missing ") + name)), "") << name;
    }
}

TEST_F(SrtLoader, RaisesForAMissingFileOfItsExtension) {
    EXPECT_THROW(analyze(folder.path("missing.srt")), fn::Exception);
    EXPECT_THROW(analyze(folder.makeFolder("folder.srt")), fn::Exception);
    EXPECT_EQ(analyze(folder.path("missing.txt")), "");
}

TEST_F(SrtLoader, FindsNothingInAFileWithoutValidCue) {
    EXPECT_EQ(analyze(write("a.srt", "")), "");
    EXPECT_EQ(analyze(write("a.srt", "just text\n")), "");
    EXPECT_EQ(analyze(write("a.sub", "{0}{25}text\n")), "");
    EXPECT_EQ(analyze(write("a.srt", "1\n00:00:03,000 --> 00:00:03,000\ntext\n\n")), "")
        << "a cue has to end after it starts";
}

TEST_F(SrtLoader, NeedsOneValidCueAmongRubbish) {
    const std::string path = write("a.srt", "rubbish\n\n" + std::string(cue) + "rubbish\n");
    EXPECT_EQ(analyze(path), "0 application/x-srt " + path + "\n");
}

TEST_F(SrtLoader, FindsNothingWhereTheParserRaises) {
    // A time line that is no UTF-8, in a file that says by its mark that it is.
    const std::string path = write("a.srt", "\xEF\xBB\xBF\n\xFF --> \xFF\n" + std::string(cue));
    EXPECT_EQ(analyze(path), "");
    EXPECT_THROW(load(path), fn::Exception);
}

TEST_F(SrtLoader, LooksAtTheFirst65536BytesOnly) {
    const std::string within = std::string(65536 - std::string(cue).size(), '\n') + cue;
    const std::string path = write("a.srt", within);
    EXPECT_EQ(analyze(path), "0 application/x-srt " + path + "\n");
    const std::string beyond = write("b.srt", std::string(65536, '\n') + cue);
    EXPECT_EQ(analyze(beyond), "");
    EXPECT_EQ(load(beyond), load(path)) << "loading reads on";
    // The time line alone is a cue, so the border runs through it.
    const std::string through = std::string(65536 - 20, '\n') + cue;
    EXPECT_EQ(analyze(write("c.srt", through)), "");
}

TEST_F(SrtLoader, TellsAFileOfAnyEncoding) {
    for (const char* encoding : {"WINDOWS-1250", "UTF-8", "UTF-16", "UTF-32"}) {
        const std::string text = test::readTestData("encodings/czech.srt");
        const std::string path = write("a.srt", test::encode(text, encoding));
        EXPECT_EQ(analyze(path), "0 application/x-srt " + path + "\n") << encoding;
    }
}

TEST_F(SrtLoader, HandlesFilesOfItsTypeAlone) {
    SubtitleReference mine = reference("/no/such/file.txt");
    EXPECT_TRUE(loader.canHandle(mine)) << "the path does not count";
    mine.type = SubtitleReference::STREAM;
    EXPECT_FALSE(loader.canHandle(mine));
    mine.type = SubtitleReference::INVALID;
    EXPECT_FALSE(loader.canHandle(mine));
    mine.type = SubtitleReference::FILE;
    for (const char* type : {"", "application/x-ass", "application/x-SRT", "application/x-srt "}) {
        mine.mimeType = type;
        mine.path = "/films/movie.srt";
        EXPECT_FALSE(loader.canHandle(mine)) << type;
    }
}

TEST_F(SrtLoader, LoadsSortedAndClean) {
    const std::string path = write("a.srt",
                                   "2\n00:00:05,000 --> 00:00:06,500\n<i>later</i>\n\n"
                                   "1\n00:00:01,000 --> 00:00:01,200\nshort\n\n");
    EXPECT_EQ(load(path),
              "application/x-attributed-text ns | 1000000000+1000000000 [short\\0]"
              " | 5000000000+1500000000 [style=2: later][\\0]");
}

TEST_F(SrtLoader, LoadsAFileWithoutCuesAsAnEmptyStream) {
    EXPECT_EQ(load(write("a.srt", "")), "application/x-attributed-text ns");
    EXPECT_EQ(load(write("a.srt", "just text")), "application/x-attributed-text ns");
}

TEST_F(SrtLoader, LoadsUnderAnyName) {
    EXPECT_EQ(load(write("movie.txt", cue)), load(write("movie.srt", cue)));
}

TEST_F(SrtLoader, LoadsTheSameFromEveryEncoding) {
    struct Case {
        const char* file;
        const char* encoding;
    };
    const Case cases[] = {
        {"czech.srt", "WINDOWS-1250"}, {"czech.srt", "UTF-16"}, {"french.srt", "WINDOWS-1252"},
        {"korean.srt", "CP949"},       {"chinese.srt", "BIG5"}, {"english.srt", "US-ASCII"},
    };
    for (const Case& each : cases) {
        const std::string text = test::readTestData(std::string("encodings/") + each.file);
        const std::string expected = load(write("utf8.srt", text), "UTF-8");
        const std::string path = write("encoded.srt", test::encode(text, each.encoding));
        EXPECT_THAT(expected, HasSubstr("1000000000+"));
        EXPECT_EQ(load(path), expected) << each.file << " detected as " << each.encoding;
        EXPECT_EQ(load(path, each.encoding), expected) << each.file << " in " << each.encoding;
        // The mark stands on the counter's line, which is no part of any cue.
        const std::string marked = write("marked.srt", "\xEF\xBB\xBF" + text);
        EXPECT_EQ(load(marked), expected) << each.file << " with a byte order mark";
    }
}

TEST_F(SrtLoader, TakesTheEncodingOfTheCallerAtItsWord) {
    const std::string path = write("a.srt", "1\n00:00:01,000 --> 00:00:03,000\n\xE9\xE8\n\n");
    EXPECT_THAT(load(path, "windows-1252"), HasSubstr("[\xC3\xA9\xC3\xA8\\0]"));
    EXPECT_THAT(load(path, "windows-1250"), HasSubstr("[\xC3\xA9\xC4\x8D\\0]"));
}

TEST_F(SrtLoader, CutsAFileBehindEightMebibytes) {
    constexpr std::size_t limit = subtitles::loadLimit;
    const std::string late = "2\n00:00:04,000 --> 00:00:06,000\nlate\n\n";
    const std::string text = cue + std::string(limit - std::string(cue).size(), '\n');
    ASSERT_EQ(text.size(), limit);
    const std::string path = write("a.srt", text + late);
    EXPECT_EQ(load(path, "UTF-8"), load(write("short.srt", cue)))
        << "the cue behind the limit is absent";
    const std::string fits =
        cue + std::string(limit - std::string(cue).size() - late.size(), '\n') + late;
    EXPECT_EQ(load(write("a.srt", fits), "UTF-8"), load(write("short.srt", cue + late)));
}

TEST_F(SrtLoader, NamesTheFileThatCannotBeRead) {
    for (const std::string& path : {folder.path("missing.srt"), folder.makeFolder("folder.srt")}) {
        EXPECT_THAT(complaint(path), HasSubstr(path));
        EXPECT_THAT(complaint(path, "UTF-8"), HasSubstr(path));
    }
}

TEST_F(SrtLoader, NamesTheFileWithoutPermission) {
    const std::string path = write("a.srt", cue);
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    const test::FileRightsHold guard;
    EXPECT_THAT(complaint(path), HasSubstr(path));
    EXPECT_THROW(analyze(path), fn::Exception);
}

TEST_F(SrtLoader, NamesTheUnknownEncoding) {
    EXPECT_THAT(complaint(write("a.srt", cue), "no-such-encoding"), HasSubstr("no-such-encoding"));
}
