// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Whole numbers of the command line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

/// The whole number that the text is: digits and nothing else, `mostDigits` of them at most, which
/// are 19 or fewer.
std::optional<std::uint64_t> decimal(std::string_view text, std::size_t mostDigits);

}  // namespace tool
