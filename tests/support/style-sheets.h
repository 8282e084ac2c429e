// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Style sheets of any size, for what has to take no longer than their length: each kind is one that
// would be read again and again, or kept again and again, by a careless reader.

#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace test {

struct StyleSheetKind {
    const char* name;
    const char* first;
    const char* repeated;
    const char* last;

    /// At most `size` bytes, as many repetitions as fit.
    std::string text(std::size_t size) const {
        std::string text = first;
        const std::size_t end = std::string(last).size();
        const std::string unit = repeated;
        while (text.size() + unit.size() + end <= size) {
            text += unit;
        }
        return text + last;
    }
};

inline constexpr StyleSheetKind styleSheetKinds[] = {
    {"Rules", "", ".KRCC { Name: Korean; lang: ko-KR; SAMIType: CC; }\n", ""},
    {"ShortRules", "", "a{b:c}", ""},
    {"EmptyRules", "", "*{}", ""},
    {"Declarations", "a{", "b:c;", "}"},
    {"Values", "a{b:", "1 ", "}"},
    {"Colors", "a{b:", "rgb(1,2,3)", "}"},
    {"Components", "a{b:rgb(", "1,", ")}"},
    {"LongString", "a{b:'", "abc ", "'}"},
    {"LongComment", "/*", "* /", "*/a{}"},
    {"Blanks", "a", " ", "{}"},
    {"RootProperties", "", "color:red;", ""},
    {"ShortRootProperties", "", "a:1;", ""},
    {"RootPropertyFaults", "", "a;", ""},
    {"Chain", "", "a ", "{x:1}"},
    {"List", "a", ",a", "{x:1}"},
    {"Classes", "", ".a", "{x:1}"},
    {"ClassesAndAChain", "", ".a", " a a a a a a a a a a a a a a a a{x:1}"},
    {"LongNameAndAChain", "", "aaaaaaaa", " b b b b b b b b b b b b b b b b b b b b b b{x:1}"},
    {"OpenAttributes", "", "a[;", ""},
    {"OpenRules", "", "a{;", ""},
    {"OpenRulesAndAStraySlash", "", "a{;", "/"},
    {"OpenRulesInAComment", "", "a{;", "/*"},
    {"EscapedSemicolons", "", ".b\\;", ""},
    {"EscapedSemicolonsAndAChain", "", ".b\\;", " a a a a a a a a a a a a a a a a"},
    {"DeclarationsAndAStraySlash", "", "a{x:1;", "/"},
    {"OpenStrings", "", "a{x:';", ""},
    {"OpenBraces", "", "a{x:f(;", ""},
    {"NestedBraces", "a{x:", "f(", ")}"},
    {"OpenComments", "", "a/*;", ""},
    {"Hashes", "", "#", ""},
    {"Repetition", "color: red; ", ")", ""},
};

}  // namespace test
