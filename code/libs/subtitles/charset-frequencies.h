// SPDX-License-Identifier: LGPL-2.1-or-later
//
// How much each byte of a text speaks for Central European (windows-1250, above zero) or for
// Western European (windows-1252, below zero). The detector can hardly tell the two apart, since
// they share most of their bytes. Letters of ASCII count too: "k" and "y" are frequent in the
// languages of Central Europe, "e", "q" and "s" in those of the West.

#pragma once

#include <array>
#include <cstdint>

namespace subtitles {

struct ByteWeight {
    unsigned char byte;
    std::int16_t weight;
};

// clang-format off
constexpr ByteWeight byteWeights[] = {
    {0x40, 513}, {0x41, 1000}, {0x42, -196}, {0x43, -338}, {0x44, 497}, {0x45, -1420},
    {0x46, -1356}, {0x47, -850}, {0x48, 452}, {0x49, -1961}, {0x4A, -1513}, {0x4B, 726},
    {0x4C, -2247}, {0x4D, -367}, {0x4E, 1490}, {0x4F, -1300}, {0x50, -158}, {0x51, -2306},
    {0x52, -1420}, {0x53, 16}, {0x54, 352}, {0x55, 226}, {0x56, -330}, {0x57, -1495}, {0x59, 959},
    {0x5A, 1308}, {0x61, 1845}, {0x62, 1743}, {0x63, 2658}, {0x64, 234}, {0x65, -4533},
    {0x66, -1098}, {0x67, -1782}, {0x68, -1138}, {0x69, 2185}, {0x6A, 3159}, {0x6B, 4390},
    {0x6C, -1125}, {0x6D, 2217}, {0x6E, -2643}, {0x6F, 647}, {0x70, 297}, {0x71, -4997},
    {0x72, -3176}, {0x73, -4854}, {0x74, -505}, {0x75, -1176}, {0x76, 744}, {0x77, -1243},
    {0x78, -2163}, {0x79, 3706}, {0x7A, 763}, {0x8A, 628}, {0x8E, 363}, {0x9A, 3989},
    {0x9C, -1279}, {0x9D, 513}, {0x9E, 4714}, {0xAA, 2405}, {0xB6, 1777}, {0xBA, 6035},
    {0xC0, -1107}, {0xC3, 811}, {0xC4, -639}, {0xC7, -1107}, {0xC8, 725}, {0xC9, -745},
    {0xCE, 1986}, {0xD8, 888}, {0xDE, 725}, {0xDF, -1567}, {0xE0, -3675}, {0xE1, 6477},
    {0xE2, 2190}, {0xE3, 10702}, {0xE4, -1107}, {0xE7, -2306}, {0xE8, -824}, {0xE9, -2951},
    {0xEA, -3262}, {0xEC, 5665}, {0xED, 6755}, {0xEE, 2178}, {0xEF, 1622}, {0xF2, 811},
    {0xF3, 1088}, {0xF4, -1430}, {0xF6, -1567}, {0xF8, 4352}, {0xF9, 1048}, {0xFA, 725},
    {0xFB, -904}, {0xFC, -1107}, {0xFD, 3343}, {0xFE, 4616},
};
// clang-format on

static_assert(sizeof(byteWeights) / sizeof(byteWeights[0]) == 95);

/// The weights by byte; a byte that says nothing has 0.
constexpr std::array<std::int16_t, 256> frequencies = [] {
    std::array<std::int16_t, 256> table{};
    for (const ByteWeight& entry : byteWeights) {
        table[entry.byte] = entry.weight;
    }
    return table;
}();

}  // namespace subtitles
