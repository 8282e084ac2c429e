// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/apps/told-cues.h"

#include <cmath>
#include <cstdlib>

#include "foundation/json.h"
#include "foundation/string.h"
#include "foundation/value.h"

#include "tests/apps/run-tool.h"

namespace test {

namespace {

long long milliseconds(const fn::Value& nanoseconds) {
    return std::llround(nanoseconds.asNumber<double>() / 1e6);
}

}  // namespace

std::vector<std::string> toldCues(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"show", "--json"});
    const fn::Value told = fn::json::deserialize(runTool(arguments).output, "");
    std::vector<std::string> cues;
    for (const fn::Value& cue : told.map().at("cues").list()) {
        const long long start = milliseconds(cue.map().at("start"));
        const long long end = milliseconds(cue.map().at("end"));
        fn::String text = cue.map().at("text").asString();
        text.replaceAll("\n", "\\N");
        cues.push_back(std::to_string(start) + "+" + std::to_string(end - start) + " " + text);
    }
    return cues;
}

std::vector<std::vector<std::string>> sampleOfEveryFormat() {
    const std::string film = std::string(std::getenv("SUBTITLES_SAMPLES")) + "/film/The Harbour.";
    return {{film + "en.sdh.srt"},
            {film + "pl.sub"},
            {film + "it.ass"},
            {film + "smi", "--language", "ko"}};
}

}  // namespace test
