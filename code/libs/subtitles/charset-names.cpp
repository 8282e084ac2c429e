// SPDX-License-Identifier: LGPL-2.1-or-later
//
// From the detector's names to those of the converters.
//
// Versions of uchardet differ in letter case and in what they call Korean; every spelling in use
// has a row. Names are compared exactly, so that an answer nobody foresaw goes out as it came.

#include "subtitles/charset-names.h"

namespace subtitles {
namespace {

struct Renaming {
    fn::StringView answer;
    const char* name;
};

// clang-format off
constexpr Renaming renamings[] = {
    {"WINDOWS-1250", "windows-1250"},
    {"WINDOWS-1252", "windows-1252"},
    // The code pages hold all that Big5 and EUC-KR do, and the characters that files use besides.
    {"Big5",         "CP950"},
    {"BIG5",         "CP950"},
    {"EUC-KR",       "CP949"},
    {"UHC",          "CP949"},
    // Plain ASCII says nothing of the encoding: what follows behind the bytes seen may be anything.
    {"ASCII",        ""},
};
// clang-format on

fn::String renamed(fn::StringView answer) {
    for (const Renaming& renaming : renamings) {
        if (renaming.answer == answer) {
            return renaming.name;
        }
    }
    return fn::String(answer.data(), answer.size());
}

}  // namespace

fn::String charsetName(fn::StringView answer, std::int64_t score) {
    fn::String name = renamed(answer);
    // Central European has to be earned. The other way round nothing is promoted.
    if (name == "windows-1250" && score <= 0) {
        return "windows-1252";
    }
    return name;
}

}  // namespace subtitles
