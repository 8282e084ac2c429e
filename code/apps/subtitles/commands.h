// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the tool does, one function a command. Each takes its options as the command line gave them,
// writes to the console, and throws `Failure`, `UsageError` or an `fn::Exception` where it cannot
// do what it was told.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console.h"
#include "cue-selection.h"
#include "exit-status.h"
#include "frame-rate.h"
#include "script.h"
#include "subtitle-file.h"

namespace tool {

struct FindOptions {
    std::string place;  ///< A film, or a folder.
    /// With what names begin; for a folder only, where nothing means every name.
    std::optional<std::string> prefix;
    bool json = false;
};

/// Lists the subtitles that belong to a film: those in its folder whose names begin like its own. A
/// file that cannot be read is reported, and the others are listed all the same.
ExitStatus find(Console& console, const FindOptions& options);

struct ShowOptions {
    std::string file;
    std::string encoding;  ///< Empty to detect it.
    TrackChoice track;
    std::optional<FrameRate> frameRate;
    bool json = false;
};

/// Prints the cues of a file with their times.
ExitStatus show(Console& console, const ShowOptions& options);

struct ConvertOptions {
    std::string input;
    std::string output;                  ///< "-" is standard output.
    std::optional<ScriptFormat> format;  ///< Nothing to go by the output's extension.
    std::string encoding;                ///< Empty to detect it.
    TrackChoice track;
    std::optional<FrameRate> frameRate;
    Window window;
    bool force = false;  ///< Replace the output where it exists.
    bool json = false;
};

/// Writes the cues of a file as a file of another format.
ExitStatus convert(Console& console, const ConvertOptions& options);

struct PreviewOptions {
    std::string film;      ///< Empty for a plain background.
    std::string subtitle;  ///< Empty to look beside the film.
    std::string output;    ///< "-" is standard output.
    std::string encoding;  ///< Empty to detect it.
    TrackChoice track;
    std::optional<FrameRate> frameRate;
    std::optional<std::uint64_t> at;  ///< In nanoseconds; nothing with a strip.
    std::size_t strip = 0;            ///< So many cues side by side.
    bool force = false;               ///< Replace the output where it exists.
    bool json = false;
};

/// Writes a picture of the film with its subtitle.
ExitStatus preview(Console& console, const PreviewOptions& options);

struct DetectOptions {
    std::vector<std::string> files;
    bool json = false;
};

/// Names the encodings of files.
ExitStatus detect(Console& console, const DetectOptions& options);

}  // namespace tool
