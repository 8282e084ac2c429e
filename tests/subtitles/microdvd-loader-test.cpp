// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/microdvd-loader.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/describe.h"
#include "tests/support/encode.h"
#include "tests/support/temporary-folder.h"

using subtitles::describe;
using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

namespace {

constexpr const char* entry = "{10}{20}text\n";

class MicroDVDLoader : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& bytes) {
        return folder.writeFile(name, bytes);
    }

    /// What the loader finds: "type mime-type path" of each reference.
    static std::string analyze(SubtitleLoader& by, const std::string& path) {
        std::string found;
        for (const SubtitleReference& each : by.analyzeFile(fn::Path::parsePath(path))) {
            found += std::to_string(each.type) + " " + each.mimeType + " " + each.path + "\n";
            EXPECT_EQ(each.languageCode + each.customLanguageName + each.name + each.streamName,
                      "");
        }
        return found;
    }
    std::string analyze(const std::string& path) { return analyze(loader, path); }

    /// What all loaders find, in their order.
    static std::string analyzeByAll(const std::string& path) {
        std::string found;
        for (SubtitleLoader* const each : SubtitleLoader::getAllLoaders()) {
            found += analyze(*each, path);
        }
        return found;
    }

    static SubtitleReference reference(const std::string& path) {
        SubtitleReference made;
        made.type = SubtitleReference::FILE;
        made.mimeType = "application/x-micro-dvd-sub";
        made.path = path;
        return made;
    }

    std::string load(const std::string& path, const char* encoding = "") {
        return describe(*loader.loadSubtitle(reference(path), encoding));
    }

    test::TemporaryFolder folder;
    subtitles::MicroDVDSubtitleLoader loader;
};

TEST_F(MicroDVDLoader, FindsFilesOfItsExtensionInAnyCase) {
    for (const char* name : {"movie.sub", "MOVIE.SUB", "movie.Sub"}) {
        const std::string path = write(name, entry);
        EXPECT_EQ(analyze(path), "0 application/x-micro-dvd-sub " + path + "\n");
    }
}

TEST_F(MicroDVDLoader, DoesNotOpenFilesOfOtherExtensions) {
    for (const char* name : {"movie.txt", "movie.srt", "movie.ass", "sub"}) {
        EXPECT_EQ(analyze(write(name, entry)), "") << name;
        EXPECT_EQ(analyze(folder.path(std::string("missing ") + name)), "") << name;
    }
}

TEST_F(MicroDVDLoader, NeedsOneEntry) {
    EXPECT_EQ(analyze(write("a.sub", "")), "");
    EXPECT_EQ(analyze(write("a.sub", "title\n{x}{20}text\n")), "");
    EXPECT_NE(analyze(write("a.sub", std::string("title\n\n") + entry)), "");
}

TEST_F(MicroDVDLoader, LooksAtTheFirst65536BytesOnly) {
    const std::string blank(65536, '\n');
    EXPECT_EQ(analyze(write("a.sub", blank + entry)), "");
    EXPECT_NE(analyze(write("b.sub", blank.substr(13) + entry)), "");
    EXPECT_EQ(load(write("a.sub", blank + entry)), load(write("b.sub", entry)));
}

TEST_F(MicroDVDLoader, FindsWhatStandsBeforeMalformedText) {
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_NE(analyze(write("a.sub", mark + entry + "\xFF\n")), "");
    EXPECT_EQ(analyze(write("a.sub", mark + "\xFF\n" + entry)), "");
}

TEST_F(MicroDVDLoader, RaisesForAFileThatCannotBeRead) {
    EXPECT_THROW(analyze(folder.path("missing.sub")), fn::Exception);
    EXPECT_THROW(analyze(folder.makeFolder("folder.sub")), fn::Exception);
    EXPECT_THROW(load(folder.path("missing.sub")), fn::Exception);
    EXPECT_THROW(load(write("a.sub", entry), "no such encoding"), fn::Exception);
}

TEST_F(MicroDVDLoader, HandlesFilesOfItsTypeAlone) {
    SubtitleReference mine = reference("/no/such/file.txt");
    EXPECT_TRUE(loader.canHandle(mine)) << "the path does not count";
    mine.type = SubtitleReference::STREAM;
    EXPECT_FALSE(loader.canHandle(mine));
    mine.type = SubtitleReference::FILE;
    for (const char* type : {"", "application/x-srt", "application/x-Micro-DVD-sub"}) {
        mine.mimeType = type;
        EXPECT_FALSE(loader.canHandle(mine)) << type;
    }
}

TEST_F(MicroDVDLoader, LoadsSortedInFrames) {
    const std::string path = write("a.sub", "{50}{60}later\n{10}{11}{y:i}short\n{20}{}open\n");
    EXPECT_EQ(load(path),
              "application/x-attributed-text frames | 10+1 [style=2: short\\0] | 20+0 [open\\0] | "
              "50+10 [later\\0]");
}

TEST_F(MicroDVDLoader, LoadsAllEntries) {
    std::string text;
    for (int i = 1; i <= 100; ++i) {
        text += "{" + std::to_string(i) + "}{" + std::to_string(i + 1) + "}text\n";
    }
    EXPECT_EQ(loader.loadSubtitle(reference(write("a.sub", text)), "")->buffers.size(), 100U);
}

TEST_F(MicroDVDLoader, LoadsAFileWithoutEntriesAsAnEmptyStream) {
    EXPECT_EQ(load(write("a.sub", "just text")), "application/x-attributed-text frames");
}

TEST_F(MicroDVDLoader, TakesTheEncodingOfTheCallerAtItsWord) {
    const std::string path = write("a.sub", "{1}{2}\xE9\n");
    EXPECT_EQ(load(path, "windows-1252"),
              "application/x-attributed-text frames | 1+1 [\xC3\xA9\\0]");
    EXPECT_EQ(load(path, "UTF-8"), "application/x-attributed-text frames");
}

TEST_F(MicroDVDLoader, LoadsUTF16) {
    const std::string path = write("a.sub", test::encode(entry, "UTF-16"));
    EXPECT_EQ(load(path), "application/x-attributed-text frames | 10+10 [text\\0]");
    EXPECT_NE(analyze(path), "");
}

TEST_F(MicroDVDLoader, LeavesSRTTextToTheLoaderOfSRT) {
    const std::string path = write("a.sub", "1\n00:00:01,000 --> 00:00:02,000\ntext\n");
    EXPECT_EQ(analyzeByAll(path), "0 application/x-srt " + path + "\n");
}

TEST_F(MicroDVDLoader, GivesASecondReferenceWhereTheTextIsBoth) {
    const std::string path =
        write("a.sub", std::string("1\n00:00:01,000 --> 00:00:02,000\ntext\n\n") + entry);
    EXPECT_EQ(analyzeByAll(path),
              "0 application/x-srt " + path + "\n0 application/x-micro-dvd-sub " + path + "\n");
}

}  // namespace
