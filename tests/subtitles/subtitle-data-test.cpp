// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-data.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "foundation/exception.h"

#include "tests/support/describe.h"

namespace subtitles {
namespace {

constexpr GstClockTime none = GST_CLOCK_TIME_NONE;
constexpr GstClockTime second = 1000000000;

// A buffer as a reader leaves it. Its payload is what tells it from others in the output.
struct Cue {
    GstClockTime pts;
    GstClockTime duration;
    const char* text;
};

fn::AutoPtr<_GstBuffer> makeBuffer(const Cue& cue) {
    const std::string text = cue.text;
    fn::AutoPtr<_GstBuffer> buffer(gst_buffer_new_allocate(nullptr, text.size(), nullptr));
    gst_buffer_fill(buffer.get(), 0, text.data(), text.size());
    buffer->pts = cue.pts;
    buffer->duration = cue.duration;
    return buffer;
}

fn::AutoPtr<SubtitleData> makeData(SubtitleData::TimestampUnit unit, const std::vector<Cue>& cues) {
    fn::AutoPtr<SubtitleData> data(new SubtitleData("text/plain", {}, unit));
    for (const Cue& cue : cues) {
        data->buffers.push_back(makeBuffer(cue));
    }
    return data;
}

std::string sanitized(SubtitleData::TimestampUnit unit, const std::vector<Cue>& cues) {
    const fn::AutoPtr<SubtitleData> data = makeData(unit, cues);
    data->sanitize();
    std::string result;
    for (const fn::AutoPtr<_GstBuffer>& buffer : data->buffers) {
        result += (result.empty() ? "" : ", ") + describe(buffer, "text/plain");
    }
    return result;
}

constexpr SubtitleData::TimestampUnit ns = SubtitleData::NANOSECONDS;
constexpr SubtitleData::TimestampUnit frames = SubtitleData::FRAMES;

struct Case {
    const char* name;
    SubtitleData::TimestampUnit unit;
    std::vector<Cue> cues;
    const char* expected;
};

const Case cases[] = {
    {"EmptyStreamStaysEmpty", ns, {}, ""},
    {"EmptyStreamOfFramesStaysEmpty", frames, {}, ""},
    {"LastWithoutDurationGetsFiveSeconds", ns, {{7, none, "a"}}, "7+5000000000 \"a\""},
    {"LastWithoutDurationGetsTheSameNumberOfFrames",
     frames,
     {{7, none, "a"}},
     "7+5000000000 \"a\""},
    {"EmptyBufferGoes", ns, {{0, none, ""}}, ""},
    {"EmptyBufferGoesWhateverItsDuration", ns, {{0, second, ""}}, ""},
    {"ShortDurationIsStretchedToOneSecondAtMost",
     ns,
     {{0, 0, "a"}, {10000000000, 3000000000, "b"}},
     "0+1000000000 \"a\", 10000000000+3000000000 \"b\""},
    {"ShortDurationIsCutWhereTheNextBegins",
     ns,
     {{0, 500000000, "a"}, {200000000, 3000000000, "b"}},
     "0+200000000 \"a\", 200000000+3000000000 \"b\""},
    {"JustBelowOneSecondIsShort",
     ns,
     {{0, 999999999, "a"}, {5 * second, second, "b"}},
     "0+1000000000 \"a\", 5000000000+1000000000 \"b\""},
    {"OneSecondIsNotShort",
     ns,
     {{0, second, "a"}, {500000000, second, "b"}},
     "0+1000000000 \"a\", 500000000+1000000000 \"b\""},
    {"ShortDurationAtEqualTimesBecomesZeroAndStays",
     ns,
     {{5, 10, "a"}, {5, second, "b"}},
     "5+0 \"a\", 5+1000000000 \"b\""},
    {"LastIsNeitherStretchedNorCut", ns, {{0, 10, "a"}}, "0+10 \"a\""},
    {"LastOfZeroStays", ns, {{0, 0, "a"}}, "0+0 \"a\""},
    {"MissingDurationEndsOneUnitBeforeTheNext",
     ns,
     {{0, none, "a"}, {1000, none, "b"}},
     "0+999 \"a\", 1000+5000000000 \"b\""},
    {"MissingDurationEndsOneFrameBeforeTheNext",
     frames,
     {{0, none, "a"}, {1000, none, "b"}},
     "0+999 \"a\", 1000+5000000000 \"b\""},
    {"MissingDurationBeforeTheNextUnitBecomesZero",
     frames,
     {{0, none, "a"}, {1, 3, "b"}},
     "0+0 \"a\", 1+3 \"b\""},
    {"MissingDurationIsNotCappedAtOneSecond",
     ns,
     {{0, none, "a"}, {60 * second, second, "b"}},
     "0+59999999999 \"a\", 60000000000+1000000000 \"b\""},
    {"MissingDurationAtEqualTimesGoes", ns, {{5, none, "a"}, {5, none, "b"}}, "5+5000000000 \"b\""},
    {"ConsecutiveOnesGoTogether",
     ns,
     {{5, none, "a"}, {5, none, "b"}, {5, second, ""}, {5, none, "c"}, {9, second, "d"}},
     "5+3 \"c\", 9+1000000000 \"d\""},
    {"ZeroFramesStay", frames, {{3, 0, "a"}, {9, 5, "b"}}, "3+0 \"a\", 9+5 \"b\""},
    {"FewFramesAreNoShortDuration", frames, {{3, 2, "a"}, {90, 5, "b"}}, "3+2 \"a\", 90+5 \"b\""},
    {"OverlappingFramesStay", frames, {{3, 20, "a"}, {9, 5, "b"}}, "3+20 \"a\", 9+5 \"b\""},
    {"SortsByTime",
     frames,
     {{30, 1, "c"}, {10, 1, "a"}, {20, 1, "b"}},
     "10+1 \"a\", 20+1 \"b\", 30+1 \"c\""},
    {"EqualTimesKeepFileOrder",
     frames,
     {{20, 1, "c"}, {10, 1, "a"}, {20, 1, "d"}, {10, 1, "b"}},
     "10+1 \"a\", 10+1 \"b\", 20+1 \"c\", 20+1 \"d\""},
    {"TimesAreUnsigned",
     frames,
     {{0x8000000000000000, 1, "b"}, {0x7FFFFFFFFFFFFFFF, 1, "a"}},
     "9223372036854775807+1 \"a\", 9223372036854775808+1 \"b\""},
    {"UntimedBufferWithDurationStays", ns, {{none, 2 * second, "a"}}, "-+2000000000 \"a\""},
    {"UntimedBufferWithoutDurationGoesUnlessItIsTheLast",
     ns,
     {{none, none, "a"}, {none, none, "b"}},
     "-+5000000000 \"b\""},
    {"MissingDurationBeforeUntimedBufferGoes",
     frames,
     {{3, none, "a"}, {none, 4, "b"}},
     "-+4 \"b\""},
    // All ones minus 0, and 0 minus all ones: neither is looked at before the subtraction.
    {"ShortDurationBeforeUntimedBufferWraps",
     ns,
     {{0, 1, "a"}, {none, second, "b"}},
     "0+1000000000 \"a\", -+1000000000 \"b\""},
    {"ShortDurationOfUntimedBufferWraps",
     ns,
     {{none, 1, "a"}, {6, second, "b"}},
     "-+7 \"a\", 6+1000000000 \"b\""},
    {"EmptyBufferStillCutsTheOneBeforeIt",
     ns,
     {{0, 1, "a"}, {5, second, ""}, {9, second, "b"}},
     "0+5 \"a\", 9+1000000000 \"b\""},
    {"LastIsRepairedThoughItIsEmptyAndGoes",
     ns,
     {{0, second, "a"}, {5, none, ""}},
     "0+1000000000 \"a\""},
};

class Sanitize : public testing::TestWithParam<Case> {};

TEST_P(Sanitize, GivesBuffers) {
    EXPECT_EQ(sanitized(GetParam().unit, GetParam().cues), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Sanitize, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

// With untimed buffers the order is none that a sort may count on. What must hold: it ends inside
// the list, nothing is lost and nothing is doubled.
TEST(SubtitleData, UntimedBuffersAmongOthersSurviveTheSort) {
    std::mt19937 random(20260);
    for (int round = 0; round < 50; ++round) {
        std::vector<Cue> cues;
        cues.reserve(300);
        for (int i = 0; i < 300; ++i) {
            cues.push_back({random() % 3 == 0 ? none : random() % 100, 2 * second, "x"});
        }
        const fn::AutoPtr<SubtitleData> data = makeData(ns, cues);
        std::vector<_GstBuffer*> before;
        for (const auto& buffer : data->buffers) {
            before.push_back(buffer.get());
        }
        data->sanitize();
        std::vector<_GstBuffer*> after;
        for (const auto& buffer : data->buffers) {
            after.push_back(buffer.get());
        }
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        EXPECT_EQ(after, before);
    }
}

TEST(SubtitleData, SortKeepsReferenceCounts) {
    const fn::AutoPtr<SubtitleData> data =
        makeData(frames, {{3, 1, "c"}, {2, 1, "b"}, {1, none, ""}});
    std::vector<fn::AutoPtr<_GstBuffer>> held(data->buffers.begin(), data->buffers.end());
    data->sanitize();
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(held[0].get()), 2);
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(held[1].get()), 2);
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(held[2].get()), 1);
}

TEST(SubtitleData, NullBufferRaisesBeforeAnythingChanges) {
    const fn::AutoPtr<SubtitleData> data = makeData(ns, {{2, 1, "b"}, {1, 1, "a"}});
    data->buffers.emplace_back();
    EXPECT_THROW(data->sanitize(), fn::NullPointerException);
    EXPECT_EQ(describe(*data), "text/plain ns | 2+1 \"b\" | 1+1 \"a\" | null");
}

TEST(SubtitleData, ManyBuffersInReverseAreSorted) {
    std::vector<Cue> cues;
    for (GstClockTime time = 100000; time > 0; --time) {
        cues.push_back({time, 1, "x"});
    }
    const fn::AutoPtr<SubtitleData> data = makeData(frames, cues);
    data->sanitize();
    GstClockTime expected = 0;
    for (const auto& buffer : data->buffers) {
        ASSERT_EQ(buffer->pts, ++expected);
    }
    EXPECT_EQ(expected, 100000U);
}

TEST(SubtitleData, TakesAReferenceOfItsHeaderAndDropsIt) {
    const fn::AutoPtr<_GstBuffer> header = makeBuffer({none, none, "head"});
    {
        const fn::AutoPtr<SubtitleData> data(
            new SubtitleData("application/x-ass", header, SubtitleData::NANOSECONDS));
        EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(header.get()), 2);
        EXPECT_EQ(describe(*data), "application/x-ass ns | header \"head\"");
    }
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(header.get()), 1);
}

TEST(SubtitleData, DropsItsBuffersWithTheLastReference) {
    fn::AutoPtr<SubtitleData> data = makeData(frames, {{1, 2, "a"}});
    const fn::AutoPtr<_GstBuffer> buffer = data->buffers.front();
    fn::AutoPtr<SubtitleData> other = data;
    data.reset();
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(buffer.get()), 2);
    other.reset();
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(buffer.get()), 1);
}

TEST(SubtitleData, UnitsHaveTheirNumbers) {
    EXPECT_EQ(SubtitleData::FRAMES, 0);
    EXPECT_EQ(SubtitleData::NANOSECONDS, 1);
}

TEST(SubtitleData, DereferencingNothingNamesTheClass) {
    const fn::AutoPtr<SubtitleData> data;
    try {
        data->sanitize();
        ADD_FAILURE() << "nothing was raised";
    } catch (const fn::NullPointerException& exception) {
        EXPECT_EQ(exception.displayText(),
                  "Attempted to dereference NULL pointer of class subtitles::SubtitleData");
    }
}

}  // namespace
}  // namespace subtitles
