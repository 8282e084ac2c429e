// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Streams, the reader on top of them, and the byte array that they fill.

#include "foundation/stream.h"

#include <algorithm>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/byte-array.h"
#include "foundation/exception.h"
#include "foundation/stream-reader.h"

namespace fn {
namespace {

/// A stream whose file went away.
class FailingStream : public InputStream {
public:
    unsigned long tryRead(void*, unsigned long) override { throw IOException("the disk is gone"); }
};

std::string linesOf(const std::string& text) {
    MemoryInputStream stream(text);
    StreamReader reader(&stream);
    std::string lines;
    while (const auto line = reader.readLine()) {
        lines += "[" + *line + "]";
    }
    return lines;
}

TEST(MemoryInputStream, ReadsToItsEnd) {
    MemoryInputStream stream("abcde");
    char buffer[4] = {};
    EXPECT_EQ(stream.tryRead(buffer, 4), 4U);
    EXPECT_EQ(std::string(buffer, 4), "abcd");
    EXPECT_EQ(stream.tryRead(buffer, 4), 1U);
    EXPECT_EQ(stream.tryRead(buffer, 4), 0U);
}

struct LineCase {
    const char* name;
    const char* text;
    const char* lines;
};

class ReadLine : public testing::TestWithParam<LineCase> {};

TEST_P(ReadLine, CutsAtLineFeeds) {
    EXPECT_EQ(linesOf(GetParam().text), GetParam().lines);
}

constexpr LineCase lineCases[] = {
    {"Nothing", "", ""},
    {"OneLineWithoutEnd", "a", "[a]"},
    {"OneLine", "a\n", "[a]"},
    {"EmptyLines", "\n\na\n", "[][][a]"},
    {"CarriageReturnGoesWithTheLineFeed", "a\r\nb\r\n", "[a][b]"},
    {"OnlyOneCarriageReturnGoes", "a\r\r\n", "[a\r]"},
    {"LoneCarriageReturnIsAByte", "a\rb\n", "[a\rb]"},
    {"CarriageReturnAtTheEndIsAByte", "a\r", "[a\r]"},
};

INSTANTIATE_TEST_SUITE_P(Cases, ReadLine, testing::ValuesIn(lineCases),
                         [](const auto& test) { return test.param.name; });

TEST(StreamReader, LinesCrossItsBlocks) {
    std::string text;
    std::string expected;
    for (int i = 0; i < 5000; ++i) {
        const std::string line(static_cast<std::size_t>(i % 97), 'x');
        text += line + "\r\n";
        expected += "[" + line + "]";
    }
    EXPECT_EQ(linesOf(text), expected);
}

TEST(StreamReader, OneLineOfEightMebibytes) {
    const std::string text(8 << 20, '1');
    EXPECT_EQ(linesOf(text).size(), text.size() + 2);
}

TEST(StreamReader, ReadsEverythingUpToALimit) {
    const std::string text(200000, 'x');
    for (const unsigned long limit : {0UL, 1UL, 65536UL, 199999UL, 200000UL, 8388608UL}) {
        MemoryInputStream stream(text);
        StreamReader reader(&stream);
        EXPECT_EQ(reader.readEverything(limit).size(), std::min<std::size_t>(limit, text.size()));
    }
}

TEST(StreamReader, ReadsEverythingIntoAnArray) {
    MemoryInputStream stream("subtitle");
    StreamReader reader(&stream);
    ByteArray bytes;
    bytes.append("old", 3);
    reader.readEverything(bytes, 3);
    EXPECT_EQ(bytes.view(), "sub");
}

TEST(StreamReader, EverythingIncludesWhatLinesWereReadAhead) {
    MemoryInputStream stream("a\nb\nc");
    StreamReader reader(&stream);
    reader.readLine();
    EXPECT_EQ(reader.readEverything(100).view(), "b\nc");
}

TEST(StreamReader, ExceptionsOfTheStreamPassThrough) {
    FailingStream stream;
    StreamReader reader(&stream);
    EXPECT_THROW(reader.readLine(), IOException);
    EXPECT_THROW(reader.readEverything(10), IOException);
}

TEST(ByteArray, GrowsAndKeepsItsBytes) {
    ByteArray bytes;
    EXPECT_TRUE(bytes.empty());
    for (int i = 0; i < 1000; ++i) {
        bytes.append("abc", 3);
    }
    EXPECT_EQ(bytes.size(), 3000U);
    EXPECT_EQ(bytes.view().substr(2997), "abc");
}

TEST(ByteArray, CopiesAreDeepAndMovesAreNot) {
    ByteArray bytes;
    bytes.append("abc", 3);
    ByteArray copy(bytes);
    copy.data()[0] = 'x';
    EXPECT_EQ(bytes.view(), "abc");
    const ByteArray moved(std::move(copy));
    EXPECT_EQ(moved.view(), "xbc");
    bytes = moved;
    EXPECT_EQ(bytes.view(), "xbc");
}

TEST(ByteArray, TakesTheBytesOfAnother) {
    ByteArray bytes;
    bytes.append("first", 5);
    ByteArray other;
    other.append("second", 6);
    const unsigned char* const data = other.data();
    bytes = std::move(other);
    EXPECT_EQ(bytes.view(), "second");
    EXPECT_EQ(bytes.data(), data);
}

TEST(ByteArray, ResizeFillsWithZeroBytes) {
    ByteArray bytes;
    bytes.append("a", 1);
    bytes.resize(3);
    EXPECT_EQ(bytes.view(), std::string_view("a\0\0", 3));
    bytes.resize(1);
    EXPECT_EQ(bytes.view(), "a");
}

TEST(ByteArrayOutputStream, CollectsWhatIsWritten) {
    ByteArrayOutputStream stream;
    stream.write("{", 1);
    stream.write("}", 1);
    EXPECT_EQ(stream.byteArray().view(), "{}");
}

}  // namespace
}  // namespace fn
