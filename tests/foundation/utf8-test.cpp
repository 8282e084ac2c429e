// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/utf8.h"

#include <string>

#include <gtest/gtest.h>

namespace fn::utf8 {
namespace {

/// An independent reading of what is well-formed: by the value and the shortest form.
std::size_t expectedSize(std::uint32_t codePoint) {
    if (codePoint >= 0xD800 && codePoint <= 0xDFFF) {
        return 0;
    }
    if (codePoint < 0x80) {
        return 1;
    }
    if (codePoint < 0x800) {
        return 2;
    }
    return codePoint < 0x10000 ? 3 : 4;
}

std::string encodeNaively(std::uint32_t codePoint, std::size_t size) {
    std::string bytes;
    for (std::size_t i = 1; i < size; ++i) {
        bytes.insert(bytes.begin(), static_cast<char>(0x80U | (codePoint & 0x3FU)));
        codePoint >>= 6U;
    }
    constexpr unsigned leads[] = {0, 0, 0xC0, 0xE0, 0xF0};
    bytes.insert(bytes.begin(), static_cast<char>(leads[size] | codePoint));
    return bytes;
}

Sequence decode(const std::string& bytes) {
    return utf8::decode(bytes.data(), bytes.data() + bytes.size());
}

TEST(UTF8, DecodesEveryCodePointAndNoSurrogate) {
    for (std::uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const std::size_t size = expectedSize(codePoint);
        const std::string bytes = encodeNaively(codePoint, size == 0 ? 3 : size);
        const Sequence sequence = decode(bytes);
        ASSERT_EQ(sequence.size, size) << codePoint;
        if (size != 0) {
            ASSERT_EQ(sequence.codePoint, codePoint);
            std::string appended;
            append(appended, codePoint);
            ASSERT_EQ(appended, bytes);
        }
    }
}

TEST(UTF8, RefusesOverlongForms) {
    for (std::uint32_t codePoint = 0; codePoint < 0x10000; ++codePoint) {
        for (std::size_t size = codePoint < 0x80    ? 2
                                : codePoint < 0x800 ? 3
                                                    : 4;
             size <= 4; ++size) {
            ASSERT_EQ(decode(encodeNaively(codePoint, size)).size, 0U)
                << codePoint << " in " << size;
        }
    }
}

TEST(UTF8, RefusesNumbersBeyondUnicode) {
    EXPECT_EQ(decode(encodeNaively(0x110000, 4)).size, 0U);
    EXPECT_EQ(decode("\xF5\x80\x80\x80").size, 0U);
    EXPECT_EQ(decode("\xFE").size, 0U);
}

TEST(UTF8, RefusesWhatTheEndCutsOff) {
    EXPECT_EQ(decode("").size, 0U);
    EXPECT_EQ(decode("\xE2\x82").size, 0U);
    EXPECT_EQ(decode("\x80").size, 0U);
}

TEST(UTF8, FindsTheFirstMalformedSequence) {
    const auto find = [](const std::string& text) {
        return findMalformed(text.data(), text.data() + text.size()) - text.data();
    };
    EXPECT_EQ(find("plain ASCII, longer than a word"), 31);
    EXPECT_EQ(find("plain ASCII, longer than a w\xFFrd"), 28);
    EXPECT_EQ(find("\xC3\xA4\xC3"), 2);
    EXPECT_EQ(find("12345678\xED\xA0\x80"), 8);
    EXPECT_EQ(find(""), 0);
}

TEST(UTF8, TellsHowMuchOfASequenceTheEndCutsOff) {
    EXPECT_EQ(incompleteTail("abc"), 0U);
    EXPECT_EQ(incompleteTail(""), 0U);
    EXPECT_EQ(incompleteTail("a\xC3"), 1U);
    EXPECT_EQ(incompleteTail("a\xE2\x82"), 2U);
    EXPECT_EQ(incompleteTail("\xF0\x9F\x98"), 3U);
    EXPECT_EQ(incompleteTail("a\xC3\xA4"), 0U);
    EXPECT_EQ(incompleteTail("a\x82"), 0U);
    EXPECT_EQ(incompleteTail("a\xED\xA0"), 0U);
    EXPECT_EQ(incompleteTail("a\xFF"), 0U);
}

TEST(UTF8, MeasuresMalformedSequencesAsTheyAreReplaced) {
    const auto size = [](const std::string& text) {
        return malformedSize(text.data(), text.data() + text.size());
    };
    EXPECT_EQ(size("\xFF"), 1U);
    EXPECT_EQ(size("\x80\x80"), 1U);
    EXPECT_EQ(size("\xE2\x82x"), 2U);
    EXPECT_EQ(size("\xF0\x9F\x98"), 3U);
    EXPECT_EQ(size("\xED\xA0\x80"), 1U);
}

TEST(UTF8, AppendsAMarkForWhatIsNoCodePoint) {
    std::string text;
    append(text, 0xD800);
    append(text, 0x110000);
    EXPECT_EQ(text, "\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace fn::utf8
