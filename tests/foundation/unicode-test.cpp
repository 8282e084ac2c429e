// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/unicode.h"

#include <set>

#include <gtest/gtest.h>

namespace fn {
namespace {

TEST(Unicode, LettersOfAllScripts) {
    for (const int letter :
         {0x61, 0x5A, 0xE4, 0x416, 0x5D0, 0x627, 0x3042, 0x4E2D, 0xD55C, 0x10400}) {
        EXPECT_TRUE(Unicode::isAlpha(letter)) << letter;
    }
}

TEST(Unicode, SeparatorsAndDigitsAreNoLetters) {
    for (const int other :
         {0x2E, 0x2D, 0x5F, 0x20, 0x5B, 0x28, 0x37, 0, 0x660, 0x3000, 0x1F600, -1, 0x110000}) {
        EXPECT_FALSE(Unicode::isAlpha(other)) << other;
    }
}

TEST(Unicode, BreakingSpacesAreThese) {
    const std::set<int> expected = {0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0x1680,
                                    0x2000, 0x2001, 0x2002, 0x2003, 0x2004, 0x2005, 0x2006, 0x2008,
                                    0x2009, 0x200A, 0x2028, 0x2029, 0x205F, 0x3000};
    for (int codePoint = -1; codePoint <= 0x110000; ++codePoint) {
        ASSERT_EQ(Unicode::isBreakingSpace(codePoint), expected.count(codePoint) == 1) << codePoint;
    }
}

TEST(Unicode, CaseMapsOneToOne) {
    EXPECT_EQ(Unicode::toLower('I'), 'i');
    EXPECT_EQ(Unicode::toUpper('i'), 'I');
    EXPECT_EQ(Unicode::toUpper(0xDF), 0xDF);
    EXPECT_EQ(Unicode::toLower(-1), -1);
    EXPECT_EQ(Unicode::toUpper(0x110000), 0x110000);
}

}  // namespace
}  // namespace fn
