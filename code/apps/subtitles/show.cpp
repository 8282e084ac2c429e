// SPDX-License-Identifier: LGPL-2.1-or-later

#include <cstdint>

#include "commands.h"
#include "cue-list.h"
#include "json-document.h"
#include "look.h"
#include "subtitle-file.h"
#include "time-text.h"

namespace tool {

namespace {

std::string timeText(std::uint64_t time, TimeUnit unit) {
    return unit == TimeUnit::Frames ? "{" + std::to_string(time) + "}" : millisecondText(time);
}

std::string spanText(const Cue& cue, TimeUnit unit) {
    const std::string start = timeText(cue.start, unit) + " -->";
    return cue.end ? start + " " + timeText(*cue.end, unit) : start;
}

/// The times stand back behind the text on a terminal.
std::string faint(const std::string& text, TextStyle style) {
    return style == TextStyle::None ? text : "\x1B[2m" + text + "\x1B[0m";
}

void print(Console& console, const CueList& list) {
    const TextStyle style = console.textStyle();
    bool isFirst = true;
    for (const Cue& cue : list.cues()) {
        const std::string text = terminalText(list.text(cue), style);
        console.write(isFirst ? "" : "\n");
        console.write(faint(spanText(cue, list.unit()), style) + "\n");
        console.write(text.empty() ? text : text + "\n");
        isFirst = false;
    }
}

void printJson(Console& console, const LoadedTrack& track) {
    JsonDocument document(console);
    document.fields(trackToJson(track.reference));
    document.fields(loadedToJson(track));
    document.beginArray("cues");
    for (const Cue& cue : track.cues.cues()) {
        const subtitles::AttributedText text = track.cues.text(cue);
        document.element({{"start", cue.start},
                          {"end", cue.end ? Json(*cue.end) : Json(nullptr)},
                          {"text", plainText(text)},
                          {"runs", runsToJson(text)}});
    }
    document.endArray();
    document.end();
}

}  // namespace

ExitStatus show(Console& console, const ShowOptions& options) {
    const LoadedTrack track =
        loadTrack(chooseTrack(console, options.file, options.track, Ambiguity::TakeFirst),
                  options.encoding, options.frameRate);
    options.json ? printJson(console, track) : print(console, track.cues);
    if (track.isCut) {
        reportCut(console, options.file);
    }
    if (track.cues.cues().empty()) {
        console.message(options.file + ": no cues");
        return ExitStatus::Findings;
    }
    return track.isCut ? ExitStatus::Findings : ExitStatus::Done;
}

}  // namespace tool
