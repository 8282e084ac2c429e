// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Languages from file names. The input is a film's name, a line feed, and a subtitle's name.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "subtitles/language.h"
#include "subtitles/subtitle-finder.h"

#include "fuzz/fuzz-require.h"

using subtitles::Language;
using subtitles::SubtitleFinder;
using subtitles::SubtitleReference;

namespace {

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// Where the first letter of ASCII stands; other letters may stand in front of it.
std::size_t firstAsciiLetter(const std::string& text) {
    const auto isLetter = [](char byte) {
        return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
    };
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isLetter) -
                                    text.begin());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    const std::size_t border = std::min(text.find('\n'), text.size());
    const std::string prefix = text.substr(0, border);
    const std::string name = text.substr(std::min(border + 1, text.size()));
    const std::string rest = name.substr(std::min(prefix.size(), name.size()));

    SubtitleReference reference;
    reference.languageCode = "\n";  // No language begins with it.
    reference.customLanguageName = "\n";
    SubtitleFinder::instance()->tryToSetlanguageFromName(name, prefix, reference);

    const bool codeSet = reference.languageCode != "\n";
    const bool customSet = reference.customLanguageName != "\n";
    if (rest.empty()) {
        FUZZ_REQUIRE(!codeSet && !customSet);
        return 0;
    }
    FUZZ_REQUIRE(codeSet != customSet);
    const fn::String& set = codeSet ? reference.languageCode : reference.customLanguageName;
    FUZZ_REQUIRE(endsWith(rest, set));
    FUZZ_REQUIRE(codeSet == (Language::forCode(set).name != "Unknown"));
    // A text that is set begins at the first letter there is.
    FUZZ_REQUIRE(set.empty() || rest.size() - set.size() <= firstAsciiLetter(rest));
    return 0;
}
