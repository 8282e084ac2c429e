// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/exception.h"

#include <memory>

#include <gtest/gtest.h>

namespace fn {
namespace {

using DetailInfo = ErrorInfo<String, internal::DetailTag>;

TEST(Exception, TellsItsTextAndItsClass) {
    const RangeException exception("too large", Exception::NoStackTrace);
    EXPECT_STREQ(exception.what(), "too large");
    EXPECT_EQ(exception.displayText(), "too large");
    EXPECT_STREQ(exception.className(), "RangeException");
    EXPECT_STREQ(NullPointerException("null").className(), "NullPointerException");
}

template <class Thrown, class Caught>
bool isCaughtAs() {
    try {
        throw Thrown("text");
    } catch (const Caught&) {
        return true;
    } catch (...) {
        return false;
    }
}

TEST(Exception, FamilyTree) {
    EXPECT_TRUE((isCaughtAs<RuntimeException, Exception>()));
    EXPECT_TRUE((isCaughtAs<RuntimeException, std::exception>()));
    EXPECT_TRUE((isCaughtAs<DataFormatException, RuntimeException>()));
    EXPECT_TRUE((isCaughtAs<UTF8Exception, DataFormatException>()));
    EXPECT_TRUE((isCaughtAs<NullPointerException, RuntimeException>()));
    EXPECT_TRUE((isCaughtAs<RangeException, RuntimeException>()));
    EXPECT_TRUE((isCaughtAs<IOException, RuntimeException>()));
    EXPECT_FALSE((isCaughtAs<RangeException, DataFormatException>()));
    EXPECT_FALSE((isCaughtAs<DataFormatException, UTF8Exception>()));
}

TEST(Exception, InformationTravelsWithACopy) {
    RangeException local("message");
    local << DetailInfo("the value");
    const RangeException copy(local);
    local << DetailInfo("another value");
    EXPECT_EQ(getInfoDescription(copy, true, {}), "Detail: the value");
    EXPECT_EQ(getInfoDescription(copy, false, {}), "the value");
    EXPECT_EQ(getInfoDescription(local, false, {}), "another value");
}

TEST(Exception, WithoutInformationTheDescriptionIsEmpty) {
    EXPECT_EQ(getInfoDescription(RuntimeException("message"), true, {}), "");
}

TEST(ErrorHolder, StoresUnderTheNameOfTheType) {
    internal::ErrorHolder holder;
    holder.set(DetailInfo("first"));
    holder.set(DetailInfo("second"));
    ASSERT_EQ(holder.entries().size(), 1U);
    EXPECT_EQ(holder.entries().begin()->first,
              "N2fn9ErrorInfoINS_6StringENS_8internal9DetailTagEEE");
    EXPECT_EQ(holder.entries().begin()->second->text(), "second");
}

TEST(ErrorHolder, AssignmentEmptiesTheHolderFirst) {
    internal::ErrorHolder holder;
    holder.set(DetailInfo("old"));
    const internal::ErrorHolder empty;
    holder = empty;
    EXPECT_TRUE(holder.entries().empty());
    holder = *&holder;
    EXPECT_TRUE(holder.entries().empty());
}

TEST(ErrorInfo, CloneIsACopy) {
    const DetailInfo info("value");
    const std::unique_ptr<internal::BaseErrorInfo> clone(info.clone());
    EXPECT_EQ(clone->text(), "value");
    EXPECT_NE(clone.get(), &info);
}

}  // namespace
}  // namespace fn
