// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tool {

enum class Align { Left, Right };

struct Column {
    std::string title;
    Align align = Align::Left;
};

/// Lines with columns that are as wide as their widest cell. Cells are single lines of valid UTF-8;
/// how wide a letter is on a terminal counts, not how many bytes it has.
class Table {
public:
    explicit Table(std::vector<Column> columns) : layout(std::move(columns)) {}

    void addRow(std::vector<std::string> cells) { rows.push_back(std::move(cells)); }

    /// The titles, then the rows, each with a line feed.
    std::string text() const;

private:
    std::vector<std::size_t> widths() const;

    std::vector<Column> layout;
    std::vector<std::vector<std::string>> rows;
};

}  // namespace tool
