// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "overlay-input.h"
#include "picture.h"
#include "pipeline.h"
#include "subtitle-file.h"

namespace tool {

/// Frames of a film with its subtitle drawn on them, as a player shows them.
class FrameGrabber {
public:
    struct Options {
        std::string film;   ///< Without a film, the background is plain.
        int width = 0;      ///< Of the frames, in pixels; 0 leaves the film's own.
        bool time = false;  ///< Each frame tells its time in a corner.
    };

    /// Opens the film. Throws `Failure` where that, or reading the subtitle, is not possible.
    FrameGrabber(const LoadedTrack& track, const Options& options);

    /// When the film ends, in nanoseconds; nothing without a film.
    const std::optional<std::uint64_t>& filmEnd() const { return endOfFilm; }

    /// The frame at a time in nanoseconds. Throws `Failure` where there is none.
    Picture frameAt(std::uint64_t time);

private:
    OverlayInput overlayInput;  // outlives the pipeline, whose threads call it
    Pipeline pipeline;
    std::optional<std::uint64_t> endOfFilm;
};

}  // namespace tool
