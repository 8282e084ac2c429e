// SPDX-License-Identifier: LGPL-2.1-or-later

#include "decimal.h"

namespace tool {

std::optional<std::uint64_t> decimal(std::string_view text, std::size_t mostDigits) {
    if (text.empty() || text.size() > mostDigits) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        number = number * 10 + static_cast<std::uint64_t>(c - '0');
    }
    return number;
}

}  // namespace tool
