// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// Texts made of pieces that are drawn at random, for properties that must hold of every text. The
/// same seed gives the same texts on every system.
class RandomText {
public:
    explicit RandomText(std::vector<std::string> choices, unsigned seed = 1)
        : pieces(std::move(choices)), engine(seed) {}

    /// A text of `most` pieces at most, perhaps of none.
    std::string next(std::size_t most) {
        std::string text;
        for (std::size_t count = below(most + 1); count != 0; --count) {
            text += pieces[below(pieces.size())];
        }
        return text;
    }

    /// A copy of the text in which one byte is left out, doubled or replaced by any other.
    std::string mutated(const std::string& text) {
        std::string changed = text;
        if (!text.empty()) {
            const std::size_t position = below(text.size());
            switch (below(3)) {
                case 0: changed.erase(position, 1); break;
                case 1: changed.insert(position, 1, text[position]); break;
                default: changed[position] = static_cast<char>(below(256)); break;
            }
        }
        return changed;
    }

    /// A number below `limit`, which is not 0.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine()) % limit; }

private:
    std::vector<std::string> pieces;
    std::mt19937 engine;
};

}  // namespace test
