// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <vector>

#include <gst/gst.h>
#include <subtitles/attributed-text.h>
#include <subtitles/subtitle-data.h>
#include <subtitles/subtitle-reference.h>

#include "plugins/gstreamer/cue-order.h"

namespace subtitles::element {

/// What the element's properties ask for.
struct TrackRequest {
    fn::String location;       ///< A subtitle file; not looked at where there is a reference.
    fn::String reference;      ///< The JSON of a `SubtitleReference`, or empty.
    fn::String language;       ///< A code, a name or a class; empty takes the first track.
    fn::String encoding;       ///< Empty or "auto" asks for detection.
    int fpsNumerator = 24000;  ///< Frames a second, for files that count frames.
    int fpsDenominator = 1001;
};

/// One subtitle track, loaded: its cues in the order of their start times.
class CueTrack {
public:
    /// Reads the file. Raises `fn::Exception` with a text for the viewer where nothing can be read.
    static CueTrack load(const TrackRequest& request);

    const CueOrder& order() const { return cues; }

    /// What the cue at `index` shows, without the byte 0 that ends a text. Raises `fn::Exception`
    /// where an ASS event cannot be read.
    AttributedText text(std::size_t index) const;

    /// The cue as an ASS event: nine fields, the text last.
    fn::String event(std::size_t index) const;

    /// The head of an ASS script that fits the events: the file's own, or a plain style.
    fn::String scriptHead() const;

    /// Whether the file is an ASS script.
    bool isASS() const;

    const SubtitleReference& reference() const { return chosen; }
    /// The encoding in which the file was read.
    const fn::String& encoding() const { return usedEncoding; }

private:
    SubtitleReference chosen;
    fn::String usedEncoding;
    fn::AutoPtr<SubtitleData> data;
    std::vector<_GstBuffer*> buffers;  ///< Of `data`, in the order of `cues`.
    CueOrder cues;
};

}  // namespace subtitles::element
