// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Files and folders that change or fail while they are read. The system's read and readdir stand
// here, so that something happens exactly between two of their calls.

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "foundation/exception.h"
#include "foundation/path.h"

#include "subtitles/charset-detector.h"
#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-loader.h"

#include "tests/support/temporary-folder.h"

namespace {

/// What happens before a call goes to the system: gives false where the call fails with errno.
using Event = std::function<bool(int call)>;

Event beforeRead;
int readCalls = 0;
std::size_t mostBytes = SIZE_MAX;  ///< That one read gives.

Event beforeReaddir;
int readdirCalls = 0;

bool happens(const Event& event, int& calls) {
    return !event || event(calls++);
}

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the system has its own names
extern "C" __attribute__((visibility("default"))) ssize_t read(int file, void* to, size_t size) {
    using Read = ssize_t (*)(int, void*, size_t);
    static const Read systemRead = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "read"));
    if (!happens(beforeRead, readCalls)) {
        return -1;
    }
    return systemRead(file, to, size < mostBytes ? size : mostBytes);
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" __attribute__((visibility("default"))) dirent* readdir(DIR* folder) {
    using Readdir = dirent* (*)(DIR*);
    static const Readdir systemReaddir = reinterpret_cast<Readdir>(dlsym(RTLD_NEXT, "readdir"));
    if (!happens(beforeReaddir, readdirCalls)) {
        return nullptr;
    }
    return systemReaddir(folder);
}

namespace {

using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

struct Format {
    const char* name;
    const char* file;
    const char* mimeType;
    std::string head;
    std::string cue;  ///< "%" is the number of the cue.
};

std::vector<Format> formats() {
    return {
        {"Srt", "film.srt", "application/x-srt", "", "0:0:%,000 --> 0:0:%,900\ntext\n\n"},
        {"MicroDVD", "film.sub", "application/x-micro-dvd-sub", "", "{%}{%0}text\n"},
        {"Ass", "film.ass", "application/x-ass", "[Events]\nFormat: Start, Text\n",
         "Dialogue: 0:00:%.00,text\n"},
        {"Smi", "film.smi", "application/x-smi", "<SAMI><BODY>", "<SYNC Start=%000><P>text\n"},
    };
}

/// Some hundred kilobytes: more than one read gives.
std::string fileOf(const Format& format) {
    std::string text = format.head;
    for (int i = 1; text.size() < 300000; ++i) {
        std::string cue = format.cue;
        for (std::size_t at = cue.find('%'); at != std::string::npos; at = cue.find('%')) {
            cue.replace(at, 1, std::to_string(i));
        }
        text += cue;
    }
    return text;
}

class FileFailure : public testing::TestWithParam<std::size_t> {
protected:
    FileFailure() : format(formats()[GetParam()]) {
        path = folder.writeFile(format.file, fileOf(format));
    }
    ~FileFailure() override {
        beforeRead = nullptr;
        readCalls = 0;
        mostBytes = SIZE_MAX;
    }

    SubtitleLoader& loader() const {
        for (SubtitleLoader* const one : SubtitleLoader::getAllLoaders()) {
            if (one->canHandle(reference())) {
                return *one;
            }
        }
        throw std::logic_error("nobody loads it");
    }

    SubtitleReference reference() const {
        SubtitleReference result;
        result.type = SubtitleReference::FILE;
        result.mimeType = format.mimeType;
        result.path = path;
        return result;
    }

    std::size_t cues(const char* encoding = "UTF-8") const {
        return loader().loadSubtitle(reference(), encoding)->buffers.size();
    }

    Format format;
    test::TemporaryFolder folder;
    std::string path;
};

TEST_P(FileFailure, AReadErrorNamesTheFile) {
    for (const int failing : {0, 1, 2}) {
        for (const char* const encoding : {"UTF-8", ""}) {
            readCalls = 0;
            beforeRead = [&](int call) {
                errno = EIO;
                return call != failing;
            };
            try {
                cues(encoding);
                ADD_FAILURE() << "read " << failing << " fails and is not told";
            } catch (const fn::Exception& exception) {
                EXPECT_THAT(exception.what(), testing::HasSubstr(path));
                EXPECT_THAT(exception.what(), testing::HasSubstr("Input/output error"));
            }
        }
    }
}

TEST_P(FileFailure, ASignalWhileReadingIsPassedOver) {
    const std::size_t whole = cues();
    beforeRead = [](int call) {
        errno = EINTR;
        return call % 2 == 1;
    };
    EXPECT_EQ(cues(), whole);
    EXPECT_GT(readCalls, 2);
}

TEST_P(FileFailure, ReadsThatGiveLittleGiveTheWholeFile) {
    const std::size_t whole = cues();
    mostBytes = 1000;
    EXPECT_EQ(cues(), whole);
    EXPECT_EQ(cues(""), whole);
}

TEST_P(FileFailure, AFileThatShrinksEndsWhereItEnds) {
    const std::size_t whole = cues();
    mostBytes = 50000;
    beforeRead = [&](int call) {
        EXPECT_TRUE(call != 1 || truncate(path.c_str(), 60000) == 0);
        return true;
    };
    const std::size_t part = cues();
    EXPECT_GT(part, whole / 10);
    EXPECT_LT(part, whole / 3);
}

TEST_P(FileFailure, AFileThatVanishesWhileItIsReadIsReadToItsEnd) {
    const std::size_t whole = cues();
    mostBytes = 50000;
    beforeRead = [&](int call) {
        EXPECT_TRUE(call != 1 || unlink(path.c_str()) == 0);
        return true;
    };
    EXPECT_EQ(cues(), whole);
    EXPECT_THROW(cues(), fn::Exception);
}

TEST_P(FileFailure, AFileThatVanishesBetweenDetectionAndLoadingIsTold) {
    beforeRead = [&](int /*call*/) {
        unlink(path.c_str());
        return true;
    };
    const bool opensTwice = format.name == std::string("Smi");
    try {
        EXPECT_GT(cues(""), 0U);
        EXPECT_FALSE(opensTwice) << "the file is gone, and it is not told";
    } catch (const fn::Exception& exception) {
        EXPECT_TRUE(opensTwice) << "the file was open";
        EXPECT_THAT(exception.what(), testing::HasSubstr(path));
    }
}

TEST_P(FileFailure, AnAnalysisThatCannotReadIsTold) {
    beforeRead = [](int /*call*/) {
        errno = EIO;
        return false;
    };
    const fn::Path file = fn::Path::parsePath(path);
    if (format.name == std::string("Ass")) {
        // Scripts are not opened.
        EXPECT_EQ(loader().analyzeFile(file).size(), 1U);
    } else {
        EXPECT_THROW(loader().analyzeFile(file), fn::Exception);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, FileFailure, testing::Range(std::size_t{0}, formats().size()),
                         [](const auto& test) { return formats()[test.param].name; });

class FolderChange : public testing::Test {
protected:
    FolderChange() {
        for (int i = 0; i < 20; ++i) {
            paths.push_back(folder.writeFile("film." + std::to_string(i) + ".srt",
                                             "00:00:01,000 --> 00:00:02,000\ntext\n"));
        }
    }
    ~FolderChange() override {
        beforeReaddir = nullptr;
        readdirCalls = 0;
    }

    std::vector<SubtitleReference> find() {
        std::vector<SubtitleReference> found;
        subtitles::SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder.path()),
                                                             "film", ".mkv", found);
        return found;
    }

    test::TemporaryFolder folder;
    std::vector<std::string> paths;
};

TEST_F(FolderChange, FilesThatComeWhileListingAreFoundOrNot) {
    beforeReaddir = [&](int call) {
        if (call < 10) {
            folder.writeFile("film.new " + std::to_string(call) + ".srt",
                             "00:00:01,000 --> 00:00:02,000\ntext\n");
        }
        return true;
    };
    const std::size_t found = find().size();
    EXPECT_GE(found, 20U);
    EXPECT_LE(found, 30U);
}

TEST_F(FolderChange, FilesThatGoWhileListingAreToldOrNotFound) {
    beforeReaddir = [&](int call) {
        if (call == 5) {
            for (std::size_t i = 10; i < paths.size(); ++i) {
                EXPECT_EQ(unlink(paths[i].c_str()), 0);
            }
        }
        return true;
    };
    try {
        const std::size_t found = find().size();
        EXPECT_GE(found, 10U);
        EXPECT_LE(found, 20U);
    } catch (const fn::Exception& exception) {
        EXPECT_THAT(exception.what(), testing::HasSubstr(folder.path()));
    }
    beforeReaddir = nullptr;
    EXPECT_EQ(find().size(), 10U);
}

TEST_F(FolderChange, AListingThatFailsIsTold) {
    for (const int failing : {0, 1, 15}) {
        readdirCalls = 0;
        beforeReaddir = [&](int call) {
            errno = EIO;
            return call != failing;
        };
        try {
            find();
            ADD_FAILURE() << "listing " << failing << " fails and is not told";
        } catch (const fn::Exception& exception) {
            EXPECT_THAT(exception.what(), testing::HasSubstr(folder.path()));
        }
    }
}

}  // namespace
