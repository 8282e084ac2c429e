// SPDX-License-Identifier: LGPL-2.1-or-later

#include "script.h"

#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/ass-exporter.h"
#include "subtitles/webvtt-exporter.h"

#include "time-text.h"

namespace tool {

namespace {

/// The default style's 38 points are made for a picture of 720 lines.
constexpr const char* assHead =
    "[Script Info]\n"
    "ScriptType: v4.00+\n"
    "PlayResX: 1280\n"
    "PlayResY: 720\n"
    "WrapStyle: 0\n"
    "ScaledBorderAndShadow: yes\n"
    "\n"
    "[V4+ Styles]\n";

constexpr const char* assEvents =
    "\n"
    "[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

/// An exported text starts with the line feed that ends the line of times; one without anything to
/// show is empty.
std::string webVTTCue(const subtitles::WebVTTExporter& exporter, const CueList& list,
                      const TimedCue& cue) {
    fn::String text = exporter.attributedTextToString(list.text(*cue.cue));
    // The exporter leaves ">" as it stands; an arrow would be taken for a line of times.
    text.replaceAll("-->", "--&gt;");
    return millisecondText(cue.start) + " --> " + millisecondText(cue.end) + text + "\n";
}

std::string webVTTFile(const CueList& list, const std::vector<TimedCue>& cues) {
    const subtitles::WebVTTExporter exporter;
    std::string text = "WEBVTT\n";
    for (const TimedCue& cue : cues) {
        text += "\n" + webVTTCue(exporter, list, cue);
    }
    return text;
}

std::string assFile(const CueList& list, const std::vector<TimedCue>& cues) {
    const subtitles::ASSStyle style;
    const subtitles::ASSExporter exporter(style);
    std::string text = assHead + style.getFormat() + style.getStyle("Default") + assEvents;
    for (const TimedCue& cue : cues) {
        text += "Dialogue: 0," + centisecondText(cue.start) + "," + centisecondText(cue.end) +
                ",Default,,0,0,0,," + exporter.attributedTextToString(list.text(*cue.cue)) + "\n";
    }
    return text;
}

}  // namespace

std::optional<ScriptFormat> scriptFormatOf(const std::string& path) {
    const fn::Path parsed = fn::Path::parsePath(path);
    const fn::String extension = parsed.extension().toLowerCase();
    if (extension == "vtt") {
        return ScriptFormat::WebVTT;
    }
    return extension == "ass" ? std::optional(ScriptFormat::ASS) : std::nullopt;
}

std::string toString(ScriptFormat format) {
    return format == ScriptFormat::WebVTT ? "webvtt" : "ass";
}

std::uint64_t timeStep(ScriptFormat format) {
    return format == ScriptFormat::WebVTT ? 1000000 : 10000000;
}

std::string scriptText(ScriptFormat format, const CueList& list,
                       const std::vector<TimedCue>& cues) {
    return format == ScriptFormat::WebVTT ? webVTTFile(list, cues) : assFile(list, cues);
}

}  // namespace tool
