// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-cursor.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace subtitles::element {
namespace {

GstSegment makeSegment(double rate, GstClockTime start, GstClockTime stop) {
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    segment.rate = rate;
    segment.start = start;
    segment.stop = stop;
    return segment;
}

/// The way through a segment: the cues, and in brackets the gaps in front of them.
std::string walk(const std::vector<Span>& spans, double rate, GstClockTime start,
                 GstClockTime stop) {
    const CueOrder order(spans);
    CueCursor cursor(order, makeSegment(rate, start, stop));
    std::string way;
    while (const auto index = cursor.next()) {
        const Span gap = cursor.tell(*index);
        if (gap.end > gap.start) {
            way += "(" + std::to_string(gap.start) + "-" + std::to_string(gap.end) + ") ";
        }
        way += std::to_string(*index) + " ";
    }
    return way;
}

struct Case {
    const char* name;
    std::vector<Span> spans;
    double rate;
    GstClockTime start;
    GstClockTime stop;
    const char* expected;
};

class CueCursorWalk : public testing::TestWithParam<Case> {};

TEST_P(CueCursorWalk, GivesCuesAndGaps) {
    const Case& test = GetParam();
    EXPECT_EQ(walk(test.spans, test.rate, test.start, test.stop), test.expected);
}

constexpr GstClockTime open = GST_CLOCK_TIME_NONE;

const Case cases[] = {
    {"Nothing", {}, 1, 0, open, ""},
    {"NothingBackwards", {}, -1, 0, 50, ""},
    {"All", {{10, 20}, {30, 40}}, 1, 0, open, "(0-10) 0 (20-30) 1 "},
    {"AllBackwards", {{10, 20}, {30, 40}}, -1, 0, 50, "(40-50) 1 (20-30) 0 "},
    {"BackwardsFromAnOpenEnd", {{10, 20}, {30, 40}}, -1, 0, open, "1 (20-30) 0 "},
    {"CuesThatTouchHaveNoGap", {{0, 20}, {20, 40}}, 1, 0, open, "0 1 "},
    {"CueOnTheScreenComesFirst", {{10, 20}, {30, 40}}, 1, 15, open, "0 (20-30) 1 "},
    {"CueThatIsOverDoesNotCome", {{10, 20}, {30, 40}}, 1, 20, open, "(20-30) 1 "},
    {"CueBeginsBeforeTheEnd", {{10, 20}, {30, 40}}, 1, 0, 30, "(0-10) 0 "},
    {"CueBeginsBeforeTheEndBackwards", {{10, 20}, {30, 40}}, -1, 0, 30, "(20-30) 0 "},
    {"CueMayOutlastOthers", {{0, 100}, {10, 20}, {120, 130}}, 1, 50, open, "0 (100-120) 2 "},
    {"CueMayOutlastOthersBackwards",
     {{0, 100}, {10, 20}, {120, 130}},
     -1,
     0,
     130,
     "2 (100-120) 1 0 "},
    {"OverlapsEndNoSegment", {{10, 60}, {30, 70}}, 1, 40, 50, "0 1 "},
};

INSTANTIATE_TEST_SUITE_P(Cases, CueCursorWalk, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

// A cue without text is passed over, and its time is part of the gap.
TEST(CueCursor, CueThatIsNotToldLeavesAGap) {
    const CueOrder order({{10, 20}, {30, 40}});
    CueCursor cursor(order, makeSegment(1, 0, open));
    cursor.next();
    const Span gap = cursor.tell(*cursor.next());
    EXPECT_EQ(gap.start, 0U);
    EXPECT_EQ(gap.end, 30U);
}

// Every moment of the segment is in a cue that came or in a gap, never in both, up to the last cue.
TEST(CueCursor, CuesAndGapsCoverTheSegment) {
    std::mt19937 random(3);
    const auto upTo = [&](unsigned limit) { return random() % (limit + 1); };
    for (int round = 0; round < 2000; ++round) {
        std::vector<Span> spans(upTo(8));
        for (Span& span : spans) {
            span.start = upTo(50);
            span.end = span.start + 1 + upTo(15);
        }
        std::sort(spans.begin(), spans.end(),
                  [](const Span& a, const Span& b) { return a.start < b.start; });
        const GstClockTime start = upTo(60);
        const GstClockTime stop = start + 1 + upTo(20);
        const bool backward = round % 2 == 0;
        const CueOrder order(spans);
        CueCursor cursor(order, makeSegment(backward ? -1 : 1, start, stop));
        std::vector<int> cues(100);
        std::vector<int> gaps(100);
        GstClockTime reached = backward ? stop : start;
        while (const auto index = cursor.next()) {
            const Span gap = cursor.tell(*index);
            std::for_each(&gaps[gap.start], &gaps[gap.end], [](int& n) { ++n; });
            std::for_each(&cues[spans[*index].start], &cues[spans[*index].end],
                          [](int& n) { ++n; });
            reached = backward ? std::min(reached, spans[*index].start)
                               : std::max(reached, spans[*index].end);
        }
        for (GstClockTime time = start; time < stop; ++time) {
            const auto shown = std::count_if(spans.begin(), spans.end(), [&](const Span& span) {
                return span.start <= time && time < span.end;
            });
            ASSERT_EQ(cues[time], shown) << time;
            const bool isTold = backward ? time >= reached : time < reached;
            ASSERT_EQ(gaps[time], isTold && shown == 0 ? 1 : 0) << time;
        }
    }
}

}  // namespace
}  // namespace subtitles::element
