// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Frames a second as an exact fraction in lowest terms. A decimal would drift: at 24000/1001
/// frames a second, three hours are some 259,000 frames.
struct FrameRate {
    std::uint64_t numerator = 0;
    std::uint64_t denominator = 1;
};

/// What MicroDVD files without a word about their rate were mostly made for.
constexpr FrameRate filmFrameRate{24000, 1001};

/// The rate that the text tells: a number ("25", "23.976", "23,976") or a fraction of two whole
/// numbers ("24000/1001"), taken exactly. Nothing where it is neither, or has more than 18 digits.
std::optional<FrameRate> parseFrameRate(std::string_view text);

/// A rate that a film can have: from 1/1000 to 1000 frames a second.
bool isPlausible(const FrameRate& rate);

/// "25" or "24000/1001".
std::string toString(const FrameRate& rate);

/// The time of a frame in nanoseconds, cut to a whole number. Exact for every frame number; what
/// does not fit 64 bits becomes the largest value.
std::uint64_t frameTime(std::uint64_t frame, const FrameRate& rate);

}  // namespace tool
