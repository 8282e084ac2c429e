// SPDX-License-Identifier: LGPL-2.1-or-later
//
// `String::withEncoding` and what it stands on.

#include <string>

#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/string.h"

namespace fn {
namespace {

String decode(const std::string& bytes, const String& encoding) {
    return String::withEncoding(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                                encoding);
}

struct Case {
    const char* name;
    std::string bytes;
    const char* encoding;
    std::string expected;
};

class WithEncoding : public testing::TestWithParam<Case> {};

TEST_P(WithEncoding, GivesUTF8) {
    EXPECT_EQ(decode(GetParam().bytes, GetParam().encoding), GetParam().expected);
}

using namespace std::string_literals;  // NOLINT(google-build-using-namespace): literals with NULs

const Case cases[] = {
    {"UTF8AsItStands", "a\xC3\xA4", "UTF-8", "a\xC3\xA4"},
    {"UTF8InAnyCase", "a\xC3\xA4", "utf-8", "a\xC3\xA4"},
    {"UTF8KeepsMalformedBytes", "a\xFF\xC3", "UTF-8", "a\xFF\xC3"},
    {"UTF8KeepsTheByteOrderMark",
     "\xEF\xBB\xBF"
     "1",
     "UTF-8",
     "\xEF\xBB\xBF"
     "1"},
    {"UTF8KeepsNuls", "a\0b"s, "UTF-8", "a\0b"s},
    {"EmptyNameOfValidUTF8", "\xC3\xA4", "", "\xC3\xA4"},
    {"EmptyNameOfOtherBytes", "\xE4 \x80", "", "\xC3\xA4 \xE2\x82\xAC"},
    {"EmptyNameOfNoBytes", "", "", ""},
    {"CentralEuropean", "\xF8\xE8", "windows-1250", "\xC5\x99\xC4\x8D"},
    {"Western", "\xE9\x80", "windows-1252", "\xC3\xA9\xE2\x82\xAC"},
    {"UndefinedByte",
     "a\x81"
     "b",
     "windows-1252",
     "a\xEF\xBF\xBD"
     "b"},
    {"Cyrillic", "\xCC\xF3", "windows-1251", "\xD0\x9C\xD1\x83"},
    {"Korean", "\xC7\xD1\xB1\xDB", "CP949", "\xED\x95\x9C\xEA\xB8\x80"},
    {"KoreanBeyondTheStandard", "\x8C\x63", "CP949", "\xEB\x98\xA0"},
    {"Chinese", "\xA4\xA4\xA4\xE5", "CP950", "\xE4\xB8\xAD\xE6\x96\x87"},
    {"Japanese", "\x93\xFA\x96\x7B", "SHIFT_JIS", "\xE6\x97\xA5\xE6\x9C\xAC"},
    {"UTF16WithMark",
     "\xFF\xFE"
     "a\0\xE4\0"s,
     "UTF-16", "a\xC3\xA4"},
    {"UTF16BigEndian", "\0a\0\xE4"s, "UTF-16BE", "a\xC3\xA4"},
    {"UTF16LoneSurrogateKeepsTheUnitsInStep",
     "a\0\x00\xDC"
     "b\0"s,
     "UTF-16LE",
     "a\xEF\xBF\xBD\xEF\xBF\xBD"
     "b"},
    {"OneMarkForEachBadByte",
     "a\xFF\xFF"
     "b",
     "CP949",
     "a\xEF\xBF\xBD\xEF\xBF\xBD"
     "b"},
    {"IncompleteTailIsDropped", "a\xC7", "CP949", "a"},
    {"IncompleteUTF16TailIsDropped", "a\0b"s, "UTF-16LE", "a"},
    {"EscapedJapanese", "\x1B$BF|\x1B(Ba", "ISO-2022-JP",
     "\xE6\x97\xA5"
     "a"},
};

INSTANTIATE_TEST_SUITE_P(Cases, WithEncoding, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(StringWithEncoding, UnknownNameIsNamedInTheException) {
    for (const char* const name :
         {"no-such-encoding", "UTF-16//IGNORE", "//", "a b", "HZ-GB-2312"}) {
        try {
            decode("text", name);
            ADD_FAILURE() << name;
        } catch (const Exception& exception) {
            EXPECT_NE(exception.displayText().find(name), String::npos) << exception.what();
        }
    }
}

TEST(StringWithEncoding, NamesWithNulsAreUnknown) {
    EXPECT_FALSE(String::isKnownEncoding(String("UTF-16\0", 7)));
}

TEST(StringWithEncoding, KnowsWhichNamesItTakes) {
    for (const char* const name : {"", "UTF-8", "windows-1250", "windows-1252", "CP949", "CP950"}) {
        EXPECT_TRUE(String::isKnownEncoding(name)) << name;
    }
    EXPECT_FALSE(String::isKnownEncoding("HZ-GB-2312"));
}

TEST(StringWithEncoding, LongTextsCrossTheConvertersBlocks) {
    std::string bytes;
    std::string expected;
    for (int i = 0; i < 100000; ++i) {
        bytes += "\xC7\xD1";
        expected += "\xED\x95\x9C";
    }
    EXPECT_EQ(decode(bytes, "CP949"), expected);
    EXPECT_EQ(decode("x" + bytes, "CP949"), "x" + expected);
}

TEST(StringWithEncoding, AMebibyteOfBadBytes) {
    // No more, since the address sanitizer looks at all that is left for each of them.
    const String text = decode(std::string(1 << 20, '\xFF'), "CP949");
    EXPECT_EQ(text.size(), std::size_t{3} << 20);
}

TEST(StringWithEncoding, EveryEncodingEndsOnEveryByte) {
    std::string bytes;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; second += 5) {
            bytes += static_cast<char>(first);
            bytes += static_cast<char>(second);
        }
    }
    for (const char* const name :
         {"ISO-2022-KR", "ISO-2022-CN", "ISO-2022-CN-EXT", "UTF-7", "IBM1364", "IBM937", "TSCII",
          "TCVN5712-1", "BIG5-HKSCS", "EUC-JISX0213", "GB18030", "UTF-32", "UCS-4", "UTF-16"}) {
        // Some converters hold state for ever; what matters is that each of them comes to an end.
        EXPECT_LE(decode(bytes, name).size(), 64 * bytes.size()) << name;
    }
}

}  // namespace
}  // namespace fn
