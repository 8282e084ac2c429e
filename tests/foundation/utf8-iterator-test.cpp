// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/utf8-iterator.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/string.h"

namespace fn {
namespace {

TEST(UTF8Iterator, RaisesOnMalformedTextWhenItIsMade) {
    EXPECT_THROW(String("\xFF").beginUTF8(), UTF8Exception);
    EXPECT_NO_THROW(String("a\xFF").beginUTF8());
}

TEST(UTF8Iterator, RaisesOnMalformedTextWhenItMoves) {
    const String text(
        "a\xFF"
        "b");
    UTF8Iterator it = text.beginUTF8();
    ++it;
    EXPECT_THROW(*it, UTF8Exception);
    EXPECT_THROW(it.update(), UTF8Exception);
    EXPECT_THROW(++it, UTF8Exception);
}

TEST(UTF8Iterator, DoesNotLeaveItsRange) {
    const String text("ab");
    UTF8Iterator it(text.data() + 1, text.data(), text.data() + 1);
    EXPECT_EQ(*it, 0U);
    ++it;
    EXPECT_EQ(it.position(), text.data() + 1);
}

TEST(UTF8Iterator, IteratorsOfDifferentStringsDoNotCompare) {
    const String text("movie");
    const String copy(text);
    try {
        EXPECT_FALSE(text.beginUTF8() == copy.endUTF8());
        ADD_FAILURE() << "nothing was raised";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "Comparing utf-8 iterators defined with different ranges");
    }
}

TEST(UTF8Iterator, EmptyTextBeginsAtItsEnd) {
    const String text;
    EXPECT_TRUE(text.beginUTF8() == text.endUTF8());
}

}  // namespace
}  // namespace fn
