// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/charset-frequencies.h"

#include <ios>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/encode.h"

TEST(CharsetFrequencies, AreTheKnownWeightsAndZeroElsewhere) {
    std::istringstream in(test::readTestData("charset-frequencies.txt"));
    std::map<unsigned, int> expected;
    unsigned byte = 0;
    int weight = 0;
    while (in >> std::hex >> byte >> std::dec >> weight) {
        EXPECT_TRUE(expected.emplace(byte, weight).second) << byte << " stands there twice";
    }
    ASSERT_EQ(expected.size(), 95U);
    for (unsigned i = 0; i < subtitles::frequencies.size(); ++i) {
        EXPECT_EQ(subtitles::frequencies[i], expected[i]) << "byte " << std::hex << i;
    }
}
