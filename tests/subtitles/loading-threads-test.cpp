// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Loading from many threads at once. What the library shares between threads (the registry, the
// table of languages, the finder, the logging categories) is first asked for by all of them
// together, so this is a program of its own with a single test.

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-loader.h"

#include "tests/support/describe.h"
#include "tests/support/encode.h"
#include "tests/support/temporary-folder.h"

using subtitles::SubtitleFinder;
using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

namespace {

constexpr int threadCount = 64;
constexpr int rounds = 2;

void writeFilms(const test::TemporaryFolder& folder) {
    struct Source {
        const char* name;
        const char* file;
        const char* encoding;
    };
    constexpr Source sources[] = {
        {"movie.cs.srt", "czech.srt", "WINDOWS-1250"},
        {"movie.fr.srt", "french.srt", "UTF-8"},
        {"movie.ko.srt", "korean.srt", "CP949"},
        {"movie.zh.srt", "chinese.srt", "BIG5"},
        {"movie.ru.srt", "russian.srt", "UTF-16"},
        {"movie.Deutsch.srt", "english.srt", "UTF-8"},
    };
    for (const Source& source : sources) {
        const std::string text = test::readTestData(std::string("encodings/") + source.file);
        folder.writeFile(source.name, test::encode(text, source.encoding));
    }
    folder.writeFile("movie.pl.sub", "{0}{25}frames\n{50}{75}more\n");
    folder.writeFile("movie.it.ass",
                     "[Script Info]\n\n[Events]\nFormat: Start, End, Text\n"
                     "Dialogue: 0:00:01.00,0:00:02.00,text\n");
    folder.writeFile("movie.smi",
                     "<SAMI><HEAD><STYLE>.ENCC {Name: English; lang: en-US;}</STYLE></HEAD>"
                     "<BODY><SYNC Start=1000><P Class=ENCC>text</BODY></SAMI>");
}

std::string load(const SubtitleReference& reference) {
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        if (loader->canHandle(reference)) {
            return describe(*loader->loadSubtitle(reference, ""));
        }
    }
    return "nobody loads " + reference.path;
}

/// All that the folder holds, found, kept as JSON, read back and loaded.
std::string findAndLoad(const std::string& folder) {
    std::vector<SubtitleReference> references;
    SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder), "movie", ".mkv",
                                              references);
    std::string text;
    for (const SubtitleReference& reference : references) {
        SubtitleReference read;
        EXPECT_TRUE(read.deserialize(reference.serialize()));
        text += read.languageName() + ": " + load(read) + "\n";
        // Errors are logged from all threads, too.
        EXPECT_FALSE(read.deserialize("nonsense"));
    }
    return text;
}

void expectAllLanguages(const std::string& text) {
    for (const char* language : {"Czech: ", "French: ", "Korean: ", "Chinese: ", "Russian: ",
                                 "Deutsch: ", "Polish: ", "Italian: ", "English: "}) {
        EXPECT_NE(text.find(language), std::string::npos) << language;
    }
}

}  // namespace

TEST(LoadingFromManyThreads, GivesEachTheSame) {
    const test::TemporaryFolder folder;
    writeFilms(folder);
    std::vector<std::string> results(threadCount * rounds);
    std::atomic<int> waiting{threadCount};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            --waiting;
            while (waiting > 0) {
                std::this_thread::yield();
            }
            for (int round = 0; round < rounds; ++round) {
                results[static_cast<std::size_t>(i * rounds + round)] = findAndLoad(folder.path());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    expectAllLanguages(results.front());
    for (const std::string& result : results) {
        EXPECT_EQ(result, results.front());
    }
}
