// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A loaded subtitle as a person sees it: cues with a start, an end and a text.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/auto-ptr.h"

#include "subtitles/attributed-text.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/subtitle-data.h"

#include "frame-rate.h"

namespace tool {

enum class TimeUnit { Nanoseconds, Frames };

struct Cue {
    std::uint64_t start = 0;
    /// Nothing where the file does not tell: MicroDVD's second number may be left out.
    std::optional<std::uint64_t> end;
    GstBuffer* payload = nullptr;  ///< Belongs to the list's data.
};

/// The cues of a subtitle, in the order of their starts. Cues that no player could ever show, for
/// want of a start, are left out.
class CueList {
public:
    /// Frames become nanoseconds where their rate is known: `givenRate`, or else the one that the
    /// file tells.
    CueList(fn::AutoPtr<subtitles::SubtitleData> loaded, const std::optional<FrameRate>& givenRate);

    const std::vector<Cue>& cues() const { return entries; }

    TimeUnit unit() const { return timeUnit; }

    /// The rate with which frames became nanoseconds; nothing where they did not.
    const std::optional<FrameRate>& frameRate() const { return usedRate; }

    /// The rate that the file tells where no film can have it, as it is written there; else empty.
    /// It is not used.
    const std::string& refusedRate() const { return refused; }

    /// Turns frames into nanoseconds.
    void convertFrames(const FrameRate& rate);

    /// The styled text of a cue, as valid UTF-8 with line feeds alone as line ends and without the
    /// NUL that ends a text inside the library.
    subtitles::AttributedText text(const Cue& cue) const;

private:
    void takeStatedRate(const std::optional<FrameRate>& givenRate);

    fn::AutoPtr<subtitles::SubtitleData> data;
    std::vector<Cue> entries;
    TimeUnit timeUnit;
    std::optional<FrameRate> usedRate;
    std::string refused;
};

}  // namespace tool
