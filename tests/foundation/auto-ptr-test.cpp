// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/auto-ptr.h"

#include <utility>

#include <gtest/gtest.h>

#include "foundation/debug.h"

namespace fn {
namespace {

/// Counts how many of its kind are alive, and may hold the next one of a chain.
class Counted : public RefCountedObject {
public:
    explicit Counted(int& alive) : _alive(alive) { ++_alive; }
    ~Counted() override { --_alive; }

    AutoPtr<Counted> next;

private:
    int& _alive;
};

TEST(AutoPtr, NewObjectsGoInWithoutAnIncrement) {
    int alive = 0;
    {
        const AutoPtr<Counted> pointer(new Counted(alive));
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(AutoPtr, CopiesShareTheObject) {
    int alive = 0;
    AutoPtr<Counted> first(new Counted(alive));
    AutoPtr<Counted> second(first);
    first.reset();
    EXPECT_EQ(alive, 1);
    EXPECT_FALSE(first);
    second.reset();
    EXPECT_EQ(alive, 0);
}

TEST(AutoPtr, SelfAssignmentChangesNothing) {
    int alive = 0;
    AutoPtr<Counted> pointer(new Counted(alive));
    pointer = *&pointer;
    EXPECT_EQ(alive, 1);
}

TEST(AutoPtr, AssignmentReleasesTheOldObject) {
    int alive = 0;
    AutoPtr<Counted> first(new Counted(alive));
    const AutoPtr<Counted> second(new Counted(alive));
    first = second;
    EXPECT_EQ(alive, 1);
    EXPECT_TRUE(first == second);
}

TEST(AutoPtr, TheOldObjectMayOwnTheNewOne) {
    int alive = 0;
    AutoPtr<Counted> list(new Counted(alive));
    list->next = AutoPtr<Counted>(new Counted(alive));
    list = list->next;
    EXPECT_EQ(alive, 1);
    EXPECT_TRUE(list);
}

TEST(AutoPtr, MovingLeavesNothingBehind) {
    int alive = 0;
    AutoPtr<Counted> first(new Counted(alive));
    AutoPtr<Counted> second(std::move(first));
    EXPECT_EQ(first.get(), nullptr);  // NOLINT(bugprone-use-after-move): that is the question
    first = std::move(second);
    EXPECT_EQ(alive, 1);
    EXPECT_TRUE(first);
}

TEST(AutoPtr, DereferencingNothingNamesTheClass) {
    const AutoPtr<RefCountedObject> none;
    try {
        none.checkNull();
        ADD_FAILURE() << "nothing was raised";
    } catch (const NullPointerException& exception) {
        EXPECT_STREQ(exception.what(),
                     "Attempted to dereference NULL pointer of class fn::RefCountedObject");
    }
}

TEST(RefCounted, DeletingThroughTheCountRunsTheDestructorOnce) {
    int alive = 0;
    auto* const object = new Counted(alive);
    object->addReference();
    object->releaseReference();
    EXPECT_EQ(alive, 1);
    object->releaseReference();
    EXPECT_EQ(alive, 0);
}

TEST(Object, PrintsItsClass) {
    int alive = 0;
    const AutoPtr<Counted> pointer(new Counted(alive));
    EXPECT_NE(pointer->toString().find("Counted"), String::npos);
}

TEST(Debug, DemanglesTypeNames) {
    EXPECT_EQ(debug::demangleTypeName("N9subtitles12SubtitleDataE"), "subtitles::SubtitleData");
    EXPECT_EQ(debug::demangleTypeName("no mangled name"), "no mangled name");
    EXPECT_EQ(debug::demangleTypeName(""), "");
}

}  // namespace
}  // namespace fn
