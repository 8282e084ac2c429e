// SPDX-License-Identifier: LGPL-2.1-or-later

#include "table.h"

#include <algorithm>

#include "visible-text.h"

namespace tool {

namespace {

std::string line(const std::vector<std::string>& cells, const std::vector<Column>& columns,
                 const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::string blanks(widths[i] - displayWidth(cells[i]), ' ');
        line += i == 0 ? "" : "  ";
        line += columns[i].align == Align::Right ? blanks + cells[i] : cells[i] + blanks;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

}  // namespace

std::vector<std::size_t> Table::widths() const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < layout.size(); ++i) {
        std::size_t width = displayWidth(layout[i].title);
        for (const std::vector<std::string>& row : rows) {
            width = std::max(width, displayWidth(row[i]));
        }
        widths.push_back(width);
    }
    return widths;
}

std::string Table::text() const {
    const std::vector<std::size_t> columnWidths = widths();
    std::vector<std::string> titles;
    for (const Column& column : layout) {
        titles.push_back(column.title);
    }
    std::string text = line(titles, layout, columnWidths);
    for (const std::vector<std::string>& row : rows) {
        text += line(row, layout, columnWidths);
    }
    return text;
}

}  // namespace tool
