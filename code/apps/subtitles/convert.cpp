// SPDX-License-Identifier: LGPL-2.1-or-later

#include "commands.h"
#include "cue-list.h"
#include "cue-selection.h"
#include "json-document.h"
#include "output-file.h"
#include "script.h"
#include "subtitle-file.h"

namespace tool {

namespace {

constexpr const char* standardOutput = "-";

ScriptFormat formatOf(const ConvertOptions& options) {
    if (options.format) {
        return *options.format;
    }
    if (options.output == standardOutput) {
        return ScriptFormat::WebVTT;
    }
    if (const std::optional<ScriptFormat> format = scriptFormatOf(options.output)) {
        return *format;
    }
    throw UsageError(options.output + ": name the file .vtt or .ass, or give a --format");
}

void checkOptions(const ConvertOptions& options) {
    if (options.window.from >= options.window.to) {
        throw UsageError("--from must be before --to");
    }
    if (options.json && options.output == standardOutput) {
        throw UsageError("--json and the subtitles cannot both go to standard output");
    }
}

LoadedTrack load(Console& console, const ConvertOptions& options) {
    LoadedTrack track =
        loadTrack(chooseTrack(console, options.input, options.track, Ambiguity::Refuse),
                  options.encoding, options.frameRate);
    if (track.cues.cues().empty()) {
        throw Failure(options.input + ": no cues");
    }
    if (track.cues.unit() == TimeUnit::Frames) {
        if (const std::string& rate = track.cues.refusedRate(); !rate.empty()) {
            throw Failure(options.input + ": its first entry tells a rate of " + rate +
                          " frames a second, which no film has; --fps tells another");
        }
        console.message(options.input + ": the frame rate is not told, so it is taken for " +
                        toString(filmFrameRate) + "; --fps tells another");
        track.cues.convertFrames(filmFrameRate);
    }
    return track;
}

void printJson(Console& console, const ConvertOptions& options, ScriptFormat format,
               const LoadedTrack& track, std::size_t cues) {
    JsonDocument document(console);
    document.fields(
        {{"input", options.input}, {"output", options.output}, {"outputFormat", toString(format)}});
    Json input = trackToJson(track.reference);
    input.erase("path");
    document.fields(input);
    document.fields(loadedToJson(track));
    document.field("cues", cues);
    document.end();
}

}  // namespace

ExitStatus convert(Console& console, const ConvertOptions& options) {
    checkOptions(options);
    const ScriptFormat format = formatOf(options);
    const bool toFile = options.output != standardOutput;
    if (toFile) {
        checkOutputFile(options.output, options.force);
    }
    const LoadedTrack track = load(console, options);
    const std::vector<TimedCue> cues = selectCues(track.cues, options.window, timeStep(format));
    const std::string text = scriptText(format, track.cues, cues);
    if (toFile) {
        writeOutputFile(options.output, text, options.force);
    } else {
        console.write(text);
    }
    if (options.json) {
        printJson(console, options, format, track, cues.size());
    }
    if (track.isCut) {
        reportCut(console, options.input);
    }
    if (cues.empty()) {
        console.message(options.input + ": no cue is left");
        return ExitStatus::Findings;
    }
    return track.isCut ? ExitStatus::Findings : ExitStatus::Done;
}

}  // namespace tool
