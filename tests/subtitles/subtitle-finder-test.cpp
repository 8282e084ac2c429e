// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-finder.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/file.h"

#include "tests/support/file-watch.h"
#include "tests/support/temporary-folder.h"

using subtitles::SubtitleFinder;
using subtitles::SubtitleReference;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* cue = "1\n00:00:01,000 --> 00:00:03,000\ntext\n\n";

std::string print(const SubtitleReference& reference) {
    return reference.path.substr(reference.path.rfind('/') + 1) + "|" + reference.mimeType + "|" +
           reference.languageCode + "|" + reference.customLanguageName;
}

std::vector<std::string> print(const std::vector<SubtitleReference>& references) {
    std::vector<std::string> lines;
    std::transform(references.begin(), references.end(), std::back_inserter(lines),
                   [](const SubtitleReference& each) { return print(each); });
    return lines;
}

std::string srt(const std::string& name, const std::string& code, const std::string& custom) {
    return name + "|application/x-srt|" + code + "|" + custom;
}

class Finder : public testing::Test {
protected:
    void write(const std::string& name, const std::string& bytes = cue) {
        folder.writeFile(name, bytes);
    }

    std::vector<std::string> find(const char* prefix, const char* suffix) {
        std::vector<SubtitleReference> result;
        SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder.path()), prefix,
                                                  suffix, result);
        return print(result);
    }

    std::vector<std::string> findIn(const std::string& path,
                                    std::vector<SubtitleReference> result) {
        SubtitleFinder::instance()->processFolder(fn::Path::parsePath(path), "movie", ".mkv",
                                                  result);
        return print(result);
    }

    std::vector<std::string> processFile(const std::string& name, const char* prefix) {
        fn::DirectoryEntry entry;
        entry.name = name;
        entry.path = folder.path(name);
        std::vector<SubtitleReference> result;
        SubtitleFinder::instance()->processFile(entry, fn::Path::parsePath("/not/read"), prefix,
                                                result);
        return print(result);
    }

    static std::vector<SubtitleReference> unsorted() {
        std::vector<SubtitleReference> references(3);
        references[0].path = "/c";
        references[1].path = "/a";
        references[2].path = "/B";
        return references;
    }

    test::TemporaryFolder folder;
};

}  // namespace

TEST_F(Finder, IsOneObject) {
    EXPECT_NE(SubtitleFinder::instance(), nullptr);
    EXPECT_EQ(SubtitleFinder::instance(), SubtitleFinder::instance());
    EXPECT_TRUE(std::is_empty_v<SubtitleFinder>);
    EXPECT_FALSE(std::is_copy_constructible_v<SubtitleFinder>);
}

TEST_F(Finder, FindsWhatBeginsLikeTheFilmWithItsLanguage) {
    write("movie.mkv");
    write("movie.srt");
    write("movie.en.srt");
    write("movie.de.srt");
    write("movie - Deutsch.srt");
    write("other.en.srt");
    write("movie.en.txt");
    EXPECT_THAT(
        find("movie", ".mkv"),
        ElementsAre(srt("movie - Deutsch.srt", "", "Deutsch"), srt("movie.de.srt", "de", ""),
                    srt("movie.en.srt", "en", ""), srt("movie.srt", "", "")));
}

TEST_F(Finder, IgnoresCaseOfNamesAndKeepsItInCodes) {
    write("MOVIE.EN.SRT");
    EXPECT_THAT(find("movie", ".mkv"), ElementsAre(srt("MOVIE.EN.SRT", "EN", "")));
    EXPECT_THAT(find("Movie", ".MKV"), ElementsAre(srt("MOVIE.EN.SRT", "EN", "")));
}

TEST_F(Finder, IgnoresCaseOfAllLetters) {
    write("\xC3\x84rger.en.srt");
    EXPECT_THAT(find("\xC3\xA4RGER", ".mkv"), ElementsAre(srt("\xC3\x84rger.en.srt", "en", "")));
}

TEST_F(Finder, SortsUpperCaseFirst) {
    write("movie.en.srt");
    write("movie.EN.srt");
    write("Movie.en.srt");
    EXPECT_THAT(find("movie", ".mkv"),
                ElementsAre(srt("Movie.en.srt", "en", ""), srt("movie.EN.srt", "EN", ""),
                            srt("movie.en.srt", "en", "")));
}

TEST_F(Finder, TakesEveryNameForAnEmptyPrefix) {
    write("a.srt");
    write("b.srt");
    write("c.txt");
    EXPECT_THAT(find("", ".mkv"), ElementsAre(srt("a.srt", "", "a"), srt("b.srt", "", "b")));
}

TEST_F(Finder, TakesNoNameForAnEmptySuffix) {
    write("movie.srt");
    write("movie.en.srt");
    EXPECT_THAT(find("movie", ""), IsEmpty());
    EXPECT_THAT(find("", ""), IsEmpty());
}

TEST_F(Finder, LeavesOutWhatEndsInTheSuffix) {
    write("movie.en.srt");
    write("movie.FORCED.SRT");
    EXPECT_THAT(find("movie", ".forced.srt"), ElementsAre(srt("movie.en.srt", "en", "")));
    EXPECT_THAT(find("movie", "SRT"), IsEmpty());
}

TEST_F(Finder, NeedsThePrefixAtTheStart) {
    write("a movie.en.srt");
    write("movi.srt");
    EXPECT_THAT(find("movie", ".mkv"), IsEmpty());
}

TEST_F(Finder, DoesNotEnterSubFolders) {
    write("movie/movie.en.srt");
    write("movie.de.srt");
    EXPECT_THAT(find("movie", ".mkv"), ElementsAre(srt("movie.de.srt", "de", "")));
}

TEST_F(Finder, FindsNamesOfOldEncodings) {
    write("movie.\xE9\xE8.srt");
    write("movie\xFF.en.srt");
    EXPECT_THAT(find("movie", ".mkv"),
                ElementsAre(srt("movie.\xE9\xE8.srt", "", ""), srt("movie\xFF.en.srt", "", "")));
}

TEST_F(Finder, OnlySortsForAMissingFolder) {
    EXPECT_THAT(findIn(folder.path("missing"), unsorted()), ElementsAre("B|||", "a|||", "c|||"));
}

TEST_F(Finder, OnlySortsForAFileInPlaceOfAFolder) {
    write("movie.en.srt");
    EXPECT_THAT(findIn(folder.path("movie.en.srt"), unsorted()),
                ElementsAre("B|||", "a|||", "c|||"));
}

TEST_F(Finder, SortsWhatWasThereWithWhatItFinds) {
    write("movie.en.srt");
    std::vector<SubtitleReference> before(2);
    before[0].path = "/zzz";
    before[1].path = "/";
    EXPECT_THAT(findIn(folder.path(), before),
                ElementsAre("|||", srt("movie.en.srt", "en", ""), "zzz|||"));
}

TEST_F(Finder, TakesARelativeFolder) {
    write("movie.en.srt");
    std::vector<SubtitleReference> result;
    SubtitleFinder::instance()->processFolder(
        fn::Path::parsePath(fn::String(folder.path()) + "/../" +
                            folder.path().substr(folder.path().rfind('/') + 1)),
        "movie", ".mkv", result);
    EXPECT_THAT(print(result), ElementsAre(srt("movie.en.srt", "en", "")));
    ASSERT_EQ(result.size(), 1U);
    EXPECT_EQ(result[0].path.front(), '/') << "paths come out absolute";
}

TEST_F(Finder, LetsWhatOneFileRaisesReachTheCallerAndDoesNotSort) {
    folder.makeFolder("movie.en.srt");
    std::vector<SubtitleReference> result = unsorted();
    EXPECT_THROW(SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder.path()),
                                                           "movie", ".mkv", result),
                 fn::Exception);
    EXPECT_THAT(print(result), ElementsAre("c|||", "a|||", "B|||"));
}

TEST_F(Finder, LooksAtOneFile) {
    write("movie.en.srt");
    EXPECT_THAT(processFile("movie.en.srt", "movie"), ElementsAre(srt("movie.en.srt", "en", "")));
    EXPECT_THAT(processFile("movie.en.srt", "MOVIE"), ElementsAre(srt("movie.en.srt", "en", "")))
        << "as many bytes are passed over, whatever they are";
    EXPECT_THAT(processFile("movie.en.srt", ""), ElementsAre(srt("movie.en.srt", "", "movie.en")));
    EXPECT_THROW(processFile("movie.xx.srt", "movie"), fn::Exception);
    EXPECT_THAT(processFile("movie.xx.txt", "movie"), IsEmpty());
}

TEST_F(Finder, AsksEveryLoaderAboutAFile) {
    // SRT text under an extension that two formats share is found as SRT whatever others say.
    write("movie.en.sub");
    write("movie.en.smi");
    EXPECT_THAT(find("movie", ".mkv"), testing::IsSupersetOf({srt("movie.en.smi", "en", ""),
                                                              srt("movie.en.sub", "en", "")}));
}

TEST_F(Finder, AnalyzesAChosenFileForAFilm) {
    write("movie.en.srt");
    const auto analyze = [&](const char* video, const char* name) {
        return print(SubtitleFinder::instance()->analyzeSubtitles(video, folder.path(name)));
    };
    EXPECT_THAT(analyze("/films/movie.mkv", "movie.en.srt"),
                ElementsAre(srt("movie.en.srt", "en", "")));
    EXPECT_THAT(analyze("other.mkv", "movie.en.srt"), ElementsAre(srt("movie.en.srt", "en", "")))
        << "the names need not share a beginning";
    EXPECT_THAT(analyze("abc.mkv", "movie.en.srt"), ElementsAre(srt("movie.en.srt", "", "ie.en")));
    EXPECT_THAT(analyze("a longer name.mkv", "movie.en.srt"),
                ElementsAre(srt("movie.en.srt", "", "")));
    EXPECT_THAT(analyze("movie.mkv", "movie.en.txt"), IsEmpty());
    EXPECT_THROW(analyze("movie.mkv", "missing.srt"), fn::Exception);
}

/// An SMI document with a paragraph of each class; `styles` tell their languages.
std::string document(const std::string& styles, const std::vector<std::string>& classes) {
    std::string text = "<SAMI><STYLE>" + styles + "</STYLE><BODY><SYNC Start=1000>";
    for (const std::string& each : classes) {
        text += "<P Class=" + each + ">text";
    }
    return text + "<SYNC Start=3000></BODY></SAMI>";
}

constexpr const char* twoStyles = ".ENCC {lang: en-US} .KRCC {lang: ko-KR}";

std::string smi(const std::string& name, const std::string& code, const std::string& custom) {
    return name + "|application/x-smi|" + code + "|" + custom;
}

TEST_F(Finder, LeavesALanguageAloneThatALoaderFound) {
    write("movie.de.smi", document(".KRCC {lang: ko-KR}", {"KRCC"}));
    write("movie.fr.smi", document(".C {lang: xx-XX}", {"C"}));
    write("movie.it.smi", document("", {"ENCC"}));
    EXPECT_THAT(find("movie", ".mkv"),
                ElementsAre(smi("movie.de.smi", "ko", ""), smi("movie.fr.smi", "", "xx"),
                            smi("movie.it.smi", "", "ENCC")))
        << "also where it is no more than a name";
}

TEST_F(Finder, LeavesSeveralLanguagesOfOneFileAloneAndInTheirOrder) {
    write("movie.de.smi", document(twoStyles, {"KRCC", "ENCC"}));
    EXPECT_THAT(find("movie", ".mkv"),
                ElementsAre(smi("movie.de.smi", "en", ""), smi("movie.de.smi", "ko", "")));
}

TEST_F(Finder, ReadsTheLanguageOfTheNameWhereALoaderFoundNone) {
    write("movie.de.smi", "<SAMI><BODY><SYNC Start=1000><P>text<SYNC Start=3000></BODY></SAMI>");
    EXPECT_THAT(find("movie", ".mkv"), ElementsAre(smi("movie.de.smi", "de", "")));
}

TEST_F(Finder, TakesTheNameOfAChosenFileForAllItsLanguages) {
    const auto analyze = [&](const char* name) {
        write(name, document(twoStyles, {"ENCC", "KRCC"}));
        return print(SubtitleFinder::instance()->analyzeSubtitles("movie.mkv", folder.path(name)));
    };
    EXPECT_THAT(analyze("movie.de.smi"),
                ElementsAre(smi("movie.de.smi", "de", ""), smi("movie.de.smi", "de", "")));
    EXPECT_THAT(analyze("movie.Deutsch.smi"),
                ElementsAre(smi("movie.Deutsch.smi", "en", "Deutsch"),
                            smi("movie.Deutsch.smi", "ko", "Deutsch")));
}

TEST_F(Finder, OpensNothingButCandidatesAndEachOnceForALoader) {
    constexpr int all = 10000;
    constexpr int candidates = 50;
    for (int i = 0; i < all - candidates; ++i) {
        write((i % 2 == 0 ? "other " : "a movie ") + std::to_string(i) + ".srt", "");
    }
    std::vector<std::string> expected;
    for (int i = 0; i < candidates; ++i) {
        const std::string name = "movie." + std::to_string(i) + ".srt";
        write(name);
        expected.push_back(name);
    }
    write("movie.mkv", "");
    write("movie.nfo", "");
    const test::FileWatch watch(folder.path());
    EXPECT_EQ(find("movie", ".mkv").size(), static_cast<std::size_t>(candidates));
    EXPECT_THAT(watch.opened(), testing::UnorderedElementsAreArray(expected));
}

TEST_F(Finder, OpensAFileOnceForEachLoaderWhoseExtensionFits) {
    write("movie.ass");
    write("movie.srt");
    write("movie.sub");
    const test::FileWatch watch(folder.path());
    EXPECT_THAT(find("movie", ".mkv"), testing::SizeIs(3));
    // SRT text is found under the name of MicroDVD too, and ASS goes by the extension alone.
    EXPECT_THAT(watch.opened(),
                testing::UnorderedElementsAre("movie.srt", "movie.sub", "movie.sub"));
}

struct NameCase {
    const char* name;
    const char* baseName;
    const char* prefix;
    const char* code;
    const char* custom;
};

class LanguageFromName : public testing::TestWithParam<NameCase> {};

TEST_P(LanguageFromName, Sets) {
    SubtitleReference reference;
    reference.languageCode = "before";
    reference.customLanguageName = "before";
    SubtitleFinder::instance()->tryToSetlanguageFromName(GetParam().baseName, GetParam().prefix,
                                                         reference);
    EXPECT_EQ(reference.languageCode, GetParam().code);
    EXPECT_EQ(reference.customLanguageName, GetParam().custom);
}

constexpr NameCase names[] = {
    {"ACode", "movie.eng", "movie", "eng", "before"},
    {"ACodeAsItIsWritten", "movie.En", "movie", "En", "before"},
    {"ACodeBehindSeparatorsOfAllKinds", "movie - 2_[(en", "movie", "en", "before"},
    {"AShadowedCode", "movie.kr", "movie", "kr", "before"},
    {"AnUnknownWordAsName", "movie.Deutsch", "movie", "before", "Deutsch"},
    {"TheWholeRest", "movie.en.sdh", "movie", "before", "en.sdh"},
    {"SeparatorsBehindTheFirstLetterStay", "movie.en]", "movie", "before", "en]"},
    {"TheUnknownCodeAsName", "movie.und", "movie", "before", "und"},
    {"NothingForTheNameOfTheFilm", "movie", "movie", "before", "before"},
    {"NothingForAShorterName", "mov", "movie", "before", "before"},
    {"AnEmptyNameWithoutLetters", "movie-2", "movie", "before", ""},
    {"AnEmptyNameForABlank", "movie ", "movie", "before", ""},
    {"LettersOfAnyScript", "movie.\xD1\x80\xD1\x83\xD1\x81", "movie", "before",
     "\xD1\x80\xD1\x83\xD1\x81"},
    {"IdeographsAreLetters", "movie_\xE4\xB8\xAD\xE6\x96\x87", "movie", "before",
     "\xE4\xB8\xAD\xE6\x96\x87"},
    {"SignsOfOtherScriptsAreNone",
     "movie \xE2\x82\xAC\xE3\x80\x8C"
     "en",
     "movie", "en", "before"},
    {"NothingOfMalformedText",
     "movie.\xFF"
     "en",
     "movie", "before", ""},
    {"MalformedTextBehindTheFirstLetter", "movie.e\xFF", "movie", "before", "e\xFF"},
    {"ThePrefixMayCutACharacter", "\xC3\xA9.en", "x", "before", ""},
    {"ThePrefixNeedNotFit", "Movie.en", "xxxxx", "en", "before"},
    {"AnEmptyPrefixLeavesTheWholeName", "en", "", "en", "before"},
    {"AnEmptyNameChangesNothing", "", "", "before", "before"},
};

INSTANTIATE_TEST_SUITE_P(Cases, LanguageFromName, testing::ValuesIn(names),
                         [](const auto& test) { return test.param.name; });

TEST(LanguageFromNameOfTheFilm, StaysUnknown) {
    SubtitleReference reference;
    SubtitleFinder::instance()->tryToSetlanguageFromName("movie", "movie", reference);
    EXPECT_EQ(reference.languageName(), "Unknown");
}

TEST(LanguageFromNameOfTheFilm, ShowsKrAsKanuri) {
    SubtitleReference reference;
    SubtitleFinder::instance()->tryToSetlanguageFromName("movie.kr", "movie", reference);
    EXPECT_EQ(reference.languageName(), "Kanuri");
}
