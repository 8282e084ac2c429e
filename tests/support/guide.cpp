// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/support/guide.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace subtitles::test {

namespace {

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? ""
                                      : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::string cellText(const std::string& cell) {
    const std::string text = trimmed(cell);
    return !text.empty() && text[0] == '`' ? text.substr(1, text.find('`', 1) - 1) : text;
}

// "| one | two |": what stands between the bars.
std::vector<std::string> cells(const std::string& row) {
    std::vector<std::string> result;
    std::istringstream stream(row.substr(1, row.rfind('|') - 1));
    for (std::string cell; std::getline(stream, cell, '|');) {
        result.push_back(cellText(cell));
    }
    return result;
}

}  // namespace

std::string readGuide(const std::string& name) {
    std::ifstream file(SUBTITLES_GUIDES "/" + name);
    if (!file) {
        throw std::runtime_error("no guide " + name);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string section(const std::string& guide, const std::string& title) {
    const std::string heading = "\n## " + title + "\n";
    const std::size_t begin = guide.find(heading);
    if (begin == std::string::npos) {
        throw std::runtime_error("no section " + title);
    }
    return guide.substr(begin, guide.find("\n## ", begin + heading.size()) - begin);
}

std::vector<std::vector<std::string>> codeRows(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.rfind("| `", 0) == 0) {
            rows.push_back(cells(line));
        }
    }
    return rows;
}

std::vector<std::string> fencedLines(const std::string& text, const std::string& language) {
    std::vector<std::string> lines;
    const std::string fence = "\n```" + language + "\n";
    const std::size_t begin = text.find(fence);
    if (begin == std::string::npos) {
        throw std::runtime_error("no block " + language);
    }
    std::istringstream stream(text.substr(begin + fence.size()));
    for (std::string line; std::getline(stream, line) && line != "```";) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace subtitles::test
