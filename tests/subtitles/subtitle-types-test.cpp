// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-types.h"

#include <cstddef>

#include <gtest/gtest.h>

namespace subtitles {
namespace {

struct Row {
    const char* type;
    bool supported;
};

constexpr Row rows[] = {
    {"application/x-ass", true},
    {"application/x-ssa", true},
    {"application/x-srt", true},
    {"application/x-micro-dvd-sub", true},
    {"application/x-smi", true},
    {"text/plain", true},
    {"text/x-raw", true},
    {"application/x-attributed-text", true},
    {"subpicture/x-pgs", true},
    {"subpicture/x-dvd", true},
    {"application/x-subtitle-vtt", true},
    {"subpicture/x-dvb", false},
    {"application/x-subtitle-unknown", false},
    {"subtitle/x-kate", false},
    {"application/x-kate", false},
};

TEST(SubtitleTypes, ArrayHasAllTypesInOrderAndANullAtItsEnd) {
    std::size_t count = 0;
    for (const Row& row : rows) {
        ASSERT_NE(subtitle_types[count], nullptr);
        EXPECT_STREQ(subtitle_types[count], row.type);
        ++count;
    }
    EXPECT_EQ(subtitle_types[count], nullptr);
}

TEST(SubtitleTypes, EveryTypeIsKnownAndTheFirstElevenAreSupported) {
    for (const Row& row : rows) {
        EXPECT_TRUE(isSubtitleType(row.type)) << row.type;
        EXPECT_EQ(isSupportedType(row.type), row.supported) << row.type;
    }
}

TEST(SubtitleTypes, ComparesExactly) {
    for (const char* const type :
         {"", "Application/x-ass", "application/x-as", "application/x-asss", " application/x-ass",
          "application", "application/x-ass;application/x-ssa"}) {
        EXPECT_FALSE(isSubtitleType(type)) << type;
        EXPECT_FALSE(isSupportedType(type)) << type;
    }
    EXPECT_FALSE(isSubtitleType(fn::String("text/plain\0", 11)));
}

fn::String joined(bool onlySupported) {
    fn::String result;
    for (const Row& row : rows) {
        if (row.supported || !onlySupported) {
            result.append(result.empty() ? "" : ";").append(row.type);
        }
    }
    return result;
}

TEST(SubtitleTypes, ConcatenatedWithSemicolonsBetween) {
    EXPECT_EQ(subtitleTypesConcatenated(), joined(false));
    EXPECT_EQ(supportedSubtitleTypesConcatenated(), joined(true));
    EXPECT_EQ(subtitleTypesConcatenated().find("application/x-ass;application/x-ssa;"
                                               "application/x-srt;"),
              0U);
    EXPECT_NE(subtitleTypesConcatenated().back(), ';');
    EXPECT_NE(supportedSubtitleTypesConcatenated().back(), ';');
}

}  // namespace
}  // namespace subtitles
