// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>
#include <string_view>

namespace backport::cpp11 {

/// A pointer to bytes that belong to somebody else, and their number.
template <class Char, class Traits = std::char_traits<Char>>
using basic_string_view = std::basic_string_view<Char, Traits>;

}  // namespace backport::cpp11

namespace fn {

/// The view type that every operation of this library takes and gives.
using StringView = backport::cpp11::basic_string_view<char, std::char_traits<char>>;

}  // namespace fn
