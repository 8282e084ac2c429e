// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the tool tells of the cues of a file, in the words in which tests of consumers print theirs.

#pragma once

#include <string>
#include <vector>

namespace test {

/// "1000+1500 text" of every cue, in milliseconds, with "\N" for line feeds. The arguments are
/// those of `subtitles show`.
std::vector<std::string> toldCues(std::vector<std::string> arguments);

/// The arguments of `subtitles show` for a file of every format among the samples.
std::vector<std::vector<std::string>> sampleOfEveryFormat();

}  // namespace test
