// SPDX-License-Identifier: LGPL-2.1-or-later

#include <algorithm>
#include <filesystem>

#include <gst/gst.h>

#include "foundation/path.h"

#include "subtitles/subtitle-finder.h"

#include "commands.h"
#include "cue-selection.h"
#include "file-failures.h"
#include "frame-grabber.h"
#include "json-document.h"
#include "output-file.h"
#include "picture.h"
#include "subtitle-file.h"
#include "time-text.h"

namespace tool {

using subtitles::SubtitleReference;

namespace {

constexpr const char* standardOutput = "-";
constexpr int stripWidth = 448;  // of one frame, in pixels

void checkOptions(const PreviewOptions& options) {
    if (options.film.empty() && options.subtitle.empty()) {
        throw UsageError("a film or a --subtitle is missing");
    }
    if (options.at.has_value() == (options.strip != 0)) {
        throw UsageError("give either --at or --strip");
    }
    if (options.json && options.output == standardOutput) {
        throw UsageError("--json and the picture cannot both go to standard output");
    }
}

SubtitleReference subtitleOfFilm(Console& console, const PreviewOptions& options) {
    const fn::Path film = fn::Path::parsePath(options.film);
    const std::string folder = std::filesystem::path(options.film).parent_path();
    // Without an extension the film's own name is left out.
    const fn::String suffix = film.extension().empty() ? film.baseName() : "." + film.extension();
    std::vector<SubtitleReference> found;
    subtitles::SubtitleFinder::instance()->processFolder(
        fn::Path::parsePath(folder.empty() ? "." : folder), film.baseName(), suffix, found);
    if (found.empty()) {
        throw Failure(options.film + ": no subtitles beside the film; --subtitle names a file");
    }
    return chooseAmong(console, options.film, found, options.track, Ambiguity::TakeFirst);
}

LoadedTrack load(Console& console, const PreviewOptions& options) {
    const SubtitleReference reference =
        options.subtitle.empty()
            ? subtitleOfFilm(console, options)
            : chooseTrack(console, options.subtitle, options.track, Ambiguity::TakeFirst);
    LoadedTrack track = loadTrack(reference, options.encoding, options.frameRate);
    if (track.cues.cues().empty()) {
        throw Failure(reference.path + ": no cues");
    }
    if (track.cues.unit() == TimeUnit::Frames) {
        console.message(reference.path + ": the frame rate is not told, so it is taken for " +
                        toString(filmFrameRate) + "; --fps tells another");
        track.cues.convertFrames(filmFrameRate);
    }
    return track;
}

/// The middles of the first cues that the film is long enough for.
std::vector<std::uint64_t> stripTimes(const LoadedTrack& track, std::size_t count,
                                      const std::optional<std::uint64_t>& filmEnd) {
    std::vector<std::uint64_t> times;
    for (const TimedCue& cue : selectCues(track.cues, Window(), GST_MSECOND)) {
        const std::uint64_t middle = cue.start + (cue.end - cue.start) / 2;
        if (times.size() < count && (!filmEnd || middle < *filmEnd)) {
            times.push_back(middle);
        }
    }
    return times;
}

Picture strip(Console& console, const LoadedTrack& track, const PreviewOptions& options) {
    FrameGrabber grabber(track, {options.film, stripWidth, true});
    const std::vector<std::uint64_t> times = stripTimes(track, options.strip, grabber.filmEnd());
    std::vector<Picture> frames;
    for (const std::uint64_t time : times) {
        console.showProgress(std::to_string(frames.size() + 1) + " of " +
                             std::to_string(times.size()) + ": " + millisecondText(time));
        frames.push_back(grabber.frameAt(time));
    }
    console.clearProgress();
    if (frames.empty()) {
        throw Failure("the film ends before the first cue");
    }
    return contactSheet(frames);
}

Picture frame(const LoadedTrack& track, const PreviewOptions& options) {
    return FrameGrabber(track, {options.film, 0, false}).frameAt(*options.at);
}

/// Whatever keeps a film from being drawn does not know its name.
Picture draw(Console& console, const LoadedTrack& track, const PreviewOptions& options) {
    try {
        return options.strip != 0 ? strip(console, track, options) : frame(track, options);
    } catch (const Failure& failure) {
        if (options.film.empty()) {
            throw;
        }
        throw Failure(describeFailure(options.film, failure.what()));
    }
}

bool isShownAt(const LoadedTrack& track, std::uint64_t time) {
    const Window moment{time, time + 1, 0};
    return !selectCues(track.cues, moment, 1).empty();
}

void printJson(Console& console, const PreviewOptions& options, const LoadedTrack& track,
               const Picture& picture) {
    JsonDocument document(console);
    document.fields({{"film", options.film.empty() ? Json(nullptr) : Json(options.film)},
                     {"output", options.output},
                     {"width", picture.width},
                     {"height", picture.height}});
    document.fields(trackToJson(track.reference));
    document.fields(loadedToJson(track));
    document.end();
}

void deliver(Console& console, const PreviewOptions& options, const LoadedTrack& track,
             const Picture& picture) {
    const std::string bytes = encodePNG(picture);
    if (options.output == standardOutput) {
        console.write(bytes);
    } else {
        writeOutputFile(options.output, bytes, options.force);
    }
    if (options.json) {
        printJson(console, options, track, picture);
    }
}

}  // namespace

ExitStatus preview(Console& console, const PreviewOptions& options) {
    checkOptions(options);
    if (options.output != standardOutput) {
        checkOutputFile(options.output, options.force);
    }
    if (!options.film.empty()) {
        checkExists(options.film);
    }
    const LoadedTrack track = load(console, options);
    if (track.isCut) {
        reportCut(console, track.reference.path);
    }
    deliver(console, options, track, draw(console, track, options));
    if (options.at && !isShownAt(track, *options.at)) {
        console.message(track.reference.path + ": no cue at " + millisecondText(*options.at));
        return ExitStatus::Findings;
    }
    return ExitStatus::Done;
}

}  // namespace tool
