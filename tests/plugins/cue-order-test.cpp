// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-order.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace subtitles::element {
namespace {

TEST(CueOrder, WithoutCuesNothingIsFound) {
    const CueOrder order{std::vector<Span>()};
    EXPECT_EQ(order.nextEndingAfter(0, 0), 0U);
    EXPECT_EQ(order.countStartingBefore(100), 0U);
    EXPECT_EQ(order.lastEndingAfter(0, 0), std::nullopt);
    EXPECT_EQ(order.latestEnd(0), 0U);
    EXPECT_EQ(order.end(), 0U);
}

TEST(CueOrder, CueIsOverAtItsEnd) {
    const CueOrder order({{10, 20}, {20, 30}});
    EXPECT_EQ(order.nextEndingAfter(0, 19), 0U);
    EXPECT_EQ(order.nextEndingAfter(0, 20), 1U);
    EXPECT_EQ(order.nextEndingAfter(0, 30), 2U);
    EXPECT_EQ(order.nextEndingAfter(1, 0), 1U);
    EXPECT_EQ(order.nextEndingAfter(2, 0), 2U);
}

TEST(CueOrder, CueMayOutlastThoseThatFollow) {
    const CueOrder order({{0, 100}, {10, 20}, {30, 40}});
    EXPECT_EQ(order.nextEndingAfter(0, 50), 0U);
    EXPECT_EQ(order.nextEndingAfter(1, 50), 3U);
    EXPECT_EQ(order.lastEndingAfter(3, 50), 0U);
    EXPECT_EQ(order.lastEndingAfter(3, 35), 2U);
    EXPECT_EQ(order.lastEndingAfter(0, 0), std::nullopt);
    EXPECT_EQ(order.end(), 100U);
}

TEST(CueOrder, CountsWhatStartsBefore) {
    const CueOrder order({{0, 1}, {10, 20}, {10, 30}});
    EXPECT_EQ(order.countStartingBefore(0), 0U);
    EXPECT_EQ(order.countStartingBefore(10), 1U);
    EXPECT_EQ(order.countStartingBefore(11), 3U);
}

TEST(CueOrder, AgreesWithAPlainSearch) {
    std::mt19937 random(7);
    const auto upTo = [&](unsigned limit) { return random() % (limit + 1); };
    for (int round = 0; round < 2000; ++round) {
        std::vector<Span> spans(upTo(20));
        for (Span& span : spans) {
            span.start = upTo(50);
            span.end = span.start + upTo(30);
        }
        std::sort(spans.begin(), spans.end(),
                  [](const Span& a, const Span& b) { return a.start < b.start; });
        const CueOrder order(spans);
        for (std::size_t from = 0; from <= spans.size(); ++from) {
            const GstClockTime time = upTo(90);
            const auto begin = spans.begin() + static_cast<std::ptrdiff_t>(from);
            const auto found =
                std::find_if(begin, spans.end(), [&](const Span& span) { return span.end > time; });
            ASSERT_EQ(order.nextEndingAfter(from, time),
                      static_cast<std::size_t>(found - spans.begin()));
            const auto last = std::find_if(std::make_reverse_iterator(begin), spans.rend(),
                                           [&](const Span& span) { return span.end > time; });
            ASSERT_EQ(order.lastEndingAfter(from, time),
                      last == spans.rend() ? std::nullopt
                                           : std::optional<std::size_t>(spans.rend() - last - 1));
            GstClockTime latest = 0;
            std::for_each(spans.begin(), begin,
                          [&](const Span& span) { latest = std::max(latest, span.end); });
            ASSERT_EQ(order.latestEnd(from), latest);
        }
    }
}

}  // namespace
}  // namespace subtitles::element
