// SPDX-License-Identifier: LGPL-2.1-or-later

#include "table.h"

#include <gtest/gtest.h>

namespace {

using tool::Align;
using tool::Table;

TEST(Table, AlignsItsColumns) {
    Table table({{"NAME"}, {"CUES", Align::Right}, {"FILE"}});
    table.addRow({"German", "7", "a.srt"});
    table.addRow({"", "12345", "b.srt"});
    EXPECT_EQ(table.text(),
              "NAME     CUES  FILE\n"
              "German      7  a.srt\n"
              "        12345  b.srt\n");
}

TEST(Table, CountsColumnsOfTheTerminal) {
    Table table({{"NAME"}, {"FILE"}});
    table.addRow({"\uD55C\uAD6D\uC5B4", "a"});
    table.addRow({"e\u0301", "b"});
    EXPECT_EQ(table.text(),
              "NAME    FILE\n"
              "\uD55C\uAD6D\uC5B4  a\n"
              "e\u0301       b\n");
}

TEST(Table, EndsNoLineInBlanks) {
    Table table({{"NAME"}, {"FILE"}});
    table.addRow({"a", ""});
    EXPECT_EQ(table.text(), "NAME  FILE\na\n");
}

}  // namespace
