// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/load-string.h"

#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "foundation/exception.h"

#include "tests/support/encode.h"
#include "tests/support/file-rights.h"
#include "tests/support/temporary-folder.h"

using subtitles::loadString;

namespace {

constexpr unsigned long limit = subtitles::loadLimit;

struct Case {
    const char* name;
    const char* file;
    const char* encoding;
    bool detectable;
};

constexpr Case cases[] = {
    {"CentralEuropean", "czech.srt", "WINDOWS-1250", true},
    {"Western", "french.srt", "WINDOWS-1252", true},
    {"Korean", "korean.srt", "CP949", true},
    {"TraditionalChinese", "chinese.srt", "BIG5", true},
    {"TraditionalChineseCodePage", "chinese.srt", "CP950", true},
    {"Cyrillic", "russian.srt", "WINDOWS-1251", true},
    {"CyrillicOfUnix", "russian.srt", "KOI8-R", true},
    {"UTF8", "korean.srt", "UTF-8", true},
    {"UTF16WithMark", "czech.srt", "UTF-16", true},
    {"UTF32WithMark", "czech.srt", "UTF-32", true},
    // Nothing tells the two bytes of a character from two characters but knowing better.
    {"UTF16WithoutMark", "czech.srt", "UTF-16BE", false},
    {"Ascii", "english.srt", "US-ASCII", true},
};

class LoadStringEncodings : public testing::TestWithParam<Case> {
protected:
    std::string expected() const {
        return test::readTestData(std::string("encodings/") + GetParam().file);
    }
    std::string path() const {
        return folder.writeFile("a.srt", test::encode(expected(), GetParam().encoding));
    }

private:
    test::TemporaryFolder folder;
};

TEST_P(LoadStringEncodings, AreDecodedWhereTheyAreGiven) {
    EXPECT_EQ(loadString(path(), GetParam().encoding, limit), expected());
}

TEST_P(LoadStringEncodings, AreDetectedWhereNoneIsGiven) {
    if (GetParam().detectable) {
        EXPECT_EQ(loadString(path(), "", limit), expected());
    } else {
        EXPECT_NE(loadString(path(), "", limit), expected());
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, LoadStringEncodings, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

class LoadString : public testing::Test {
protected:
    std::string write(const std::string& bytes) { return folder.writeFile("a.srt", bytes); }

    /// What is said of a file or an encoding that is refused.
    static std::string complaint(const std::string& path, const char* encoding) {
        try {
            loadString(path, encoding, limit);
        } catch (const fn::Exception& exception) {
            return exception.displayText();
        }
        return "no exception";
    }

    test::TemporaryFolder folder;
};

TEST_F(LoadString, KeepsAByteOrderMarkOfUTF8) {
    const std::string path = write("\xEF\xBB\xBFThe \xC3\xA9");
    EXPECT_EQ(loadString(path, "", limit), "\xEF\xBB\xBFThe \xC3\xA9");
    EXPECT_EQ(loadString(path, "utf-8", limit), "\xEF\xBB\xBFThe \xC3\xA9");
}

TEST_F(LoadString, GivesNothingForAnEmptyFile) {
    EXPECT_EQ(loadString(write(""), "", limit), "");
    EXPECT_EQ(loadString(write(""), "CP949", limit), "");
}

TEST_F(LoadString, KeepsNulBytes) {
    EXPECT_EQ(loadString(write(std::string("a\0b", 3)), "", limit), fn::String("a\0b", 3));
}

TEST_F(LoadString, TakesTheEncodingOfTheCallerAsItStands) {
    const std::string path = write(test::readTestData("encodings/french.srt"));
    EXPECT_EQ(loadString(path, "ISO-8859-1", limit).substr(0, 50),
              loadString(path, "latin1", limit).substr(0, 50));
    EXPECT_NE(loadString(path, "ISO-8859-1", limit), loadString(path, "", limit));
}

TEST_F(LoadString, KeepsMalformedUTF8ForTheReaders) {
    EXPECT_EQ(loadString(write("a\xFFz\xC3"), "UTF-8", limit), "a\xFFz\xC3");
}

TEST_F(LoadString, CutsALongerFile) {
    EXPECT_EQ(loadString(write("abcdef"), "", 4), "abcd");
    EXPECT_EQ(loadString(write("abcd"), "", 4), "abcd");
    EXPECT_EQ(loadString(write("abc"), "", 4), "abc");
    EXPECT_EQ(loadString(write("abc"), "", 0), "");
}

TEST_F(LoadString, CutsAtEightMebibytes) {
    const std::string text = std::string(limit - 1, 'x') + "yz";
    const fn::String loaded = loadString(write(text), "UTF-8", limit);
    EXPECT_EQ(loaded.size(), 8388608U);
    EXPECT_EQ(loaded.back(), 'y');
}

TEST_F(LoadString, DropsTheHalfOfACharacterThatTheLimitCut) {
    const std::string text = "ab\xEA\xB0\x80";
    const std::string path = write(text);
    for (const char* encoding : {"UTF-8", "utf-8", "utf8"}) {
        EXPECT_EQ(loadString(path, encoding, 3), "ab") << encoding;
        EXPECT_EQ(loadString(path, encoding, 4), "ab") << encoding;
        EXPECT_EQ(loadString(path, encoding, 5), text) << encoding;
    }
}

TEST_F(LoadString, DoesNotDetectAnythingInHalfACharacter) {
    const std::string ascii = test::readTestData("encodings/english.srt");
    const std::string path = write(ascii + "\xC3\xA9");
    EXPECT_EQ(loadString(path, "", ascii.size() + 1), ascii);
}

TEST_F(LoadString, NeverChangesTheEncodingOfALongFileForWhereItIsCut) {
    for (const char* name : {"korean.srt", "czech.srt", "french.srt", "english.srt"}) {
        const std::string text = test::readTestData(std::string("encodings/") + name);
        const std::string path = write(text);
        for (std::size_t cut = text.size() - 100; cut <= text.size(); ++cut) {
            const fn::String loaded = loadString(path, "", cut);
            EXPECT_EQ(loaded, text.substr(0, loaded.size())) << name << " cut at " << cut;
            EXPECT_LE(cut - loaded.size(), 2U) << name << " cut at " << cut;
        }
    }
}

TEST_F(LoadString, KeepsTheEndOfAFileThatNobodyCut) {
    EXPECT_EQ(loadString(write("abc\xC3"), "UTF-8", 5), "abc\xC3") << "malformed by itself";
    EXPECT_EQ(loadString(write("abc\xC3"), "UTF-8", 4), "abc") << "nobody can tell";
}

TEST_F(LoadString, LeavesTheCutToOtherEncodings) {
    // A letter of windows-1252, which would begin a sequence in UTF-8.
    EXPECT_EQ(loadString(write("abc\xC3"), "windows-1252", 4), "abc\xC3\x83");
}

TEST_F(LoadString, TakesADetectedNameWithoutConverterForNone) {
    // "HZ" shifts to Chinese with a tilde and a brace; the detector knows it, the converter does
    // not.
    const std::string hz = "~{VPND~} ~{VPND~} ~{VPND~} ~{VPND~} ~{VPND~} ~{VPND~}\n";
    ASSERT_THROW(loadString(write(hz), "HZ-GB-2312", limit), fn::Exception);
    EXPECT_EQ(loadString(write(hz), "", limit), hz);
}

TEST(KnownEncoding, PassesOnlyWhatAConverterKnows) {
    EXPECT_EQ(subtitles::knownEncoding("windows-1250"), "windows-1250");
    EXPECT_EQ(subtitles::knownEncoding("CP949"), "CP949");
    EXPECT_EQ(subtitles::knownEncoding("CP950"), "CP950");
    EXPECT_EQ(subtitles::knownEncoding("UTF-8"), "UTF-8");
    EXPECT_EQ(subtitles::knownEncoding(""), "");
    EXPECT_EQ(subtitles::knownEncoding("HZ-GB-2312"), "");
    EXPECT_EQ(subtitles::knownEncoding("X-ISO-10646-UCS-4-3412"), "");
}

TEST_F(LoadString, NamesTheMissingFile) {
    const std::string path = folder.path("missing.srt");
    EXPECT_NE(complaint(path, "").find(path), std::string::npos) << complaint(path, "");
}

TEST_F(LoadString, NamesTheFolderInPlaceOfAFile) {
    const std::string path = folder.makeFolder("folder.srt");
    EXPECT_NE(complaint(path, "").find(path), std::string::npos) << complaint(path, "");
}

TEST_F(LoadString, NamesTheFileWithoutPermission) {
    const std::string path = write("text");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    const test::FileRightsHold guard;
    EXPECT_NE(complaint(path, "").find(path), std::string::npos) << complaint(path, "");
}

TEST_F(LoadString, NamesTheUnknownEncodingOfTheCaller) {
    const std::string text = complaint(write("text"), "no-such-encoding");
    EXPECT_NE(text.find("no-such-encoding"), std::string::npos) << text;
}

}  // namespace
