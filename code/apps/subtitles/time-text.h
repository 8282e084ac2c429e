// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Times as people write them.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// "00:01:02.345", rounded to the nearest millisecond; hours take as many digits as they need.
std::string millisecondText(std::uint64_t nanoseconds);

/// "0:01:02.35", rounded to the nearest hundredth of a second.
std::string centisecondText(std::uint64_t nanoseconds);

/// Nanoseconds from "90", "90.5", "1:30", "01:30.250" or "00:01:30,250": seconds with an optional
/// fraction of up to nine digits, and minutes and hours in front of them. Behind a colon a number
/// stays below 60. Nothing where the text is no such time, or one of more than a million hours.
std::optional<std::uint64_t> parseTime(std::string_view text);

/// The same with an optional sign in front: "-1.5" is a second and a half earlier.
std::optional<std::int64_t> parseShift(std::string_view text);

}  // namespace tool
