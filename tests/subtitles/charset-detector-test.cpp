// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/charset-detector.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "subtitles/charset-frequencies.h"

#include "tests/support/encode.h"
#include "tests/support/temporary-folder.h"

using subtitles::CharsetDetector;

namespace {

constexpr unsigned long noLimit = std::numeric_limits<unsigned long>::max();

fn::String detect(const std::string& bytes) {
    CharsetDetector detector;
    detector.pushData(bytes.data(), bytes.size());
    detector.done();
    return detector.detectedCharset();
}

std::string sample(const std::string& name, const std::string& encoding) {
    return test::encode(test::readTestData("encodings/" + name), encoding);
}

std::int64_t score(const std::string& bytes) {
    std::int64_t sum = 0;
    for (const char byte : bytes) {
        sum += subtitles::frequencies[static_cast<unsigned char>(byte)];
    }
    return sum;
}

struct Case {
    const char* name;
    const char* file;
    const char* encoding;
    const char* expected;
};

constexpr Case cases[] = {
    {"CentralEuropean", "czech.srt", "WINDOWS-1250", "windows-1250"},
    {"CentralEuropeanOfTheStandard", "czech.srt", "ISO-8859-2", "ISO-8859-2"},
    {"Western", "french.srt", "WINDOWS-1252", "windows-1252"},
    {"Korean", "korean.srt", "CP949", "CP949"},
    {"KoreanInItsOlderCharset", "korean.srt", "EUC-KR", "CP949"},
    {"TraditionalChinese", "chinese.srt", "BIG5", "CP950"},
    {"Cyrillic", "russian.srt", "WINDOWS-1251", "WINDOWS-1251"},
    {"UTF8WithoutMark", "czech.srt", "UTF-8", "UTF-8"},
    {"UTF16WithMark", "czech.srt", "UTF-16", "UTF-16"},
    {"PlainAsciiIsNoAnswer", "english.srt", "UTF-8", ""},
};

class CharsetDetectorAnswers : public testing::TestWithParam<Case> {};

TEST_P(CharsetDetectorAnswers, Are) {
    EXPECT_EQ(detect(sample(GetParam().file, GetParam().encoding)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, CharsetDetectorAnswers, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

}  // namespace

TEST(CharsetDetector, HasNoAnswerForNothing) {
    CharsetDetector detector;
    detector.done();
    EXPECT_EQ(detector.detectedCharset(), "");
    EXPECT_EQ(detect(""), "");
}

TEST(CharsetDetector, HasNoAnswerForEveryByteOfAscii) {
    std::string ascii;
    for (char byte = 1; byte < 0x7F; ++byte) {
        // An escape or a tilde and a brace may open a shift to another charset.
        if (byte != 0x1B && byte != '~') {
            ascii += byte;
        }
    }
    EXPECT_EQ(detect(ascii), "");
}

TEST(CharsetDetector, HasNoAnswerBeforeTheEnd) {
    CharsetDetector detector;
    detector.pushData("\xEF\xBB\xBFx", 4);
    EXPECT_EQ(detector.detectedCharset(), "");
    detector.done();
    EXPECT_EQ(detector.detectedCharset(), "UTF-8");
}

TEST(CharsetDetector, GivesATieToTheWest) {
    const std::string czech = sample("czech.srt", "WINDOWS-1250");
    ASSERT_EQ(detect(czech), "windows-1250");
    ASSERT_GT(score(czech), 0);
    // Western letters, as many as outweigh the text's own exactly.
    std::string pad;
    for (int i = 0; i < 32; ++i) {
        pad += "e ";
    }
    const std::string tie = czech + pad + "B C F\n";
    ASSERT_EQ(score(tie), 0);
    EXPECT_EQ(detect(tie), "windows-1252");
    EXPECT_EQ(detect(tie + "S"), "windows-1250") << "one sixteen above zero";
    EXPECT_EQ(detect(tie + "P"), "windows-1252") << "below zero";
}

TEST(CharsetDetector, TakesAByteOrderMarkAtItsWord) {
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_EQ(detect(mark + "yyyyyyyy"), "UTF-8") << "a score high above zero";
    EXPECT_EQ(detect(mark + "ssssssss"), "UTF-8") << "a score far below zero";
    EXPECT_EQ(detect(mark + sample("czech.srt", "WINDOWS-1250")), "UTF-8");
}

TEST(CharsetDetector, TakesATextInPieces) {
    for (const Case& each : cases) {
        const std::string bytes = sample(each.file, each.encoding);
        CharsetDetector detector;
        for (std::size_t i = 0; i < bytes.size(); i += 100) {
            detector.pushData(bytes.data() + i, std::min<std::size_t>(100, bytes.size() - i));
        }
        detector.done();
        EXPECT_EQ(detector.detectedCharset(), each.expected) << each.name;
    }
}

TEST(CharsetDetector, TakesTheLowHalfOfASize) {
    const std::string text = "\xEF\xBB\xBFtext";
    CharsetDetector detector;
    detector.pushData(text.data(), (1UL << 32U) + text.size());
    detector.done();
    EXPECT_EQ(detector.detectedCharset(), "UTF-8");
}

TEST(CharsetDetector, IsNoValueToCopy) {
    EXPECT_FALSE(std::is_copy_constructible_v<CharsetDetector>);
    EXPECT_FALSE(std::is_copy_assignable_v<CharsetDetector>);
}

class DetectFileCharset : public testing::Test {
protected:
    std::string write(const std::string& bytes) { return folder.writeFile("a.srt", bytes); }

    test::TemporaryFolder folder;
};

TEST_F(DetectFileCharset, JudgesAFile) {
    for (const Case& each : cases) {
        const std::string path = write(sample(each.file, each.encoding));
        EXPECT_EQ(CharsetDetector::detectFileCharset(path.c_str(), noLimit), each.expected)
            << each.name;
    }
}

TEST_F(DetectFileCharset, HasNoAnswerForAnEmptyFile) {
    EXPECT_EQ(CharsetDetector::detectFileCharset(write("").c_str(), noLimit), "");
}

TEST_F(DetectFileCharset, ReadsOnBehindAWholeBlock) {
    const std::string text = std::string(4096, ' ') + sample("korean.srt", "CP949");
    EXPECT_EQ(CharsetDetector::detectFileCharset(write(text).c_str(), noLimit), "CP949");
    EXPECT_EQ(CharsetDetector::detectFileCharset(write(text).c_str(), 4097), "CP949");
}

TEST_F(DetectFileCharset, StopsBehindTheBlockThatHoldsTheLimit) {
    const std::string korean = sample("korean.srt", "CP949");
    const std::string behind = std::string(4096, ' ') + korean;
    const std::string within = std::string(4096 - korean.size(), ' ') + korean;
    EXPECT_EQ(CharsetDetector::detectFileCharset(write(behind).c_str(), 1), "");
    EXPECT_EQ(CharsetDetector::detectFileCharset(write(behind).c_str(), 4096), "");
    EXPECT_EQ(CharsetDetector::detectFileCharset(write(within).c_str(), 1), "CP949")
        << "the whole block counts";
    EXPECT_EQ(CharsetDetector::detectFileCharset(write(within).c_str(), 0), "CP949")
        << "one block is read in any case";
}

TEST_F(DetectFileCharset, NamesTheFileThatCannotBeRead) {
    for (const std::string& path : {folder.path("missing.srt"), folder.path()}) {
        try {
            CharsetDetector::detectFileCharset(path.c_str(), noLimit);
            ADD_FAILURE() << path << " was read";
        } catch (const fn::Exception& exception) {
            EXPECT_NE(exception.displayText().find(path), std::string::npos)
                << exception.displayText();
        }
    }
}

TEST_F(DetectFileCharset, TakesNoPathForAnEmptyOne) {
    EXPECT_THROW(CharsetDetector::detectFileCharset(nullptr, noLimit), fn::Exception);
}
