// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Colour texts, and the words for other attributes, which take any text as well.

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include <strings.h>

#include "subtitles/color-table.h"
#include "subtitles/color.h"
#include "subtitles/text-attributes.h"

#include "fuzz/fuzz-require.h"

namespace {

using subtitles::Color;
using subtitles::ColorEntry;
using subtitles::TextAttributes;

// One channel, each form by its own rule.
std::uint8_t channel(const std::string& digits) {
    const unsigned long value = std::strtoul(digits.c_str(), nullptr, 16);
    switch (digits.size()) {
        case 1: return static_cast<std::uint8_t>(value * 0x11);
        case 3: return static_cast<std::uint8_t>((value << 4U) | (value >> 8U));
        default: return static_cast<std::uint8_t>(value);
    }
}

std::optional<Color> fromDigits(const std::string& digits) {
    const bool allDigits = std::all_of(digits.begin(), digits.end(), [](unsigned char c) {
        return c < 0x80 && std::isxdigit(c) != 0;
    });
    if (!allDigits || digits.size() % 3 != 0 || digits.size() < 3 || digits.size() > 12) {
        return {};
    }
    const std::size_t size = digits.size() / 3;
    return Color{channel(digits.substr(0, size)), channel(digits.substr(size, size)),
                 channel(digits.substr(2 * size))};
}

// The same answer from a walk over all names.
std::optional<Color> expectedColor(const std::string& text) {
    if (text[0] == '#') {
        return fromDigits(text.substr(1));
    }
    for (const ColorEntry& entry : subtitles::colorEntries) {
        if (strcasecmp(text.c_str(), subtitles::colorNames + entry.name) == 0) {
            return Color{entry.red, entry.green, entry.blue};
        }
    }
    return {};
}

void checkColor(const fn::String& text) {
    const Color before = {1, 2, 3};
    Color color = before;
    const bool parsed = color.parse(text);
    // A text ends at its first NUL here.
    const std::optional<Color> expected = expectedColor(text.c_str());
    FUZZ_REQUIRE(parsed == expected.has_value());
    FUZZ_REQUIRE(color == expected.value_or(before));
    FUZZ_REQUIRE(color.toString().size() == 7);
}

void checkWords(const fn::String& text) {
    const int weight = TextAttributes::fontWeightFromString(text);
    FUZZ_REQUIRE(TextAttributes::fontWeightFromInt(weight) == weight);
    FUZZ_REQUIRE(std::abs(TextAttributes::fontSizeFromString(text)) <= 3);
    FUZZ_REQUIRE(std::abs(TextAttributes::fontStretchFromString(text)) <= 4);
    FUZZ_REQUIRE(TextAttributes::fontStyleFromString(text) <= 2);
    FUZZ_REQUIRE(TextAttributes::fontVariantFromString(text) <= 1);
    FUZZ_REQUIRE(TextAttributes::gravityFromString(text) <= 4);
    FUZZ_REQUIRE(TextAttributes::gravityHintFromString(text) <= 2);
    FUZZ_REQUIRE(TextAttributes::underlineFromString(text) <= 4);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(reinterpret_cast<const char*>(data), size);
    checkColor(text);
    checkWords(text);
    return 0;
}
