// SPDX-License-Identifier: LGPL-2.1-or-later
//
// One subtitle file, from its name to its cues.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "subtitles/subtitle-reference.h"

#include "console.h"
#include "cue-list.h"
#include "frame-rate.h"
#include "json-document.h"

namespace tool {

/// The subtitles that a file holds: one for most formats, one for each language of an SMI file. Of
/// several formats that can read the file the first one counts. A file whose extension tells its
/// format gives one subtitle, even where its start shows none. Throws `Failure` where nothing about
/// the file says that it holds subtitles, and what the loaders throw.
std::vector<subtitles::SubtitleReference> tracksInFile(const std::string& path);

/// Which of several subtitles in a file is meant. What is empty does not count.
struct TrackChoice {
    std::string language;  ///< A code ("en", "eng") or a name ("English"), in any case.
    std::string className;
};

/// What to do where a choice leaves several subtitles.
enum class Ambiguity { TakeFirst, Refuse };

/// The subtitle that is meant. Throws `Failure`, which tells what there is, where none fits or
/// where several do and that is to be refused; otherwise says on the console that there are more.
subtitles::SubtitleReference chooseTrack(Console& console, const std::string& path,
                                         const TrackChoice& choice, Ambiguity ambiguity);

/// The same among subtitles that were found at `place`, at least one.
subtitles::SubtitleReference chooseAmong(Console& console, const std::string& place,
                                         const std::vector<subtitles::SubtitleReference>& tracks,
                                         const TrackChoice& choice, Ambiguity ambiguity);

/// A subtitle with its cues and the encoding in which it was read.
struct LoadedTrack {
    subtitles::SubtitleReference reference;
    std::string encoding;
    CueList cues;
    bool isCut = false;  ///< The file goes on behind what the library reads of one.
};

/// Loads a subtitle; an empty `encoding` is detected. Throws `Failure`, which names the file, where
/// it cannot be read or decoded.
LoadedTrack loadTrack(const subtitles::SubtitleReference& reference, const std::string& encoding,
                      const std::optional<FrameRate>& frameRate);

/// Says that the cues behind the limit are missing.
void reportCut(Console& console, const std::string& path);

/// "SRT", as people call the format.
std::string formatName(const subtitles::SubtitleReference& reference);

/// What scripts are told of a subtitle: path, format, mimeType, languageCode, languageName, class.
Json trackToJson(const subtitles::SubtitleReference& reference);
/// And of a loaded one: encoding, unit, frameRate.
Json loadedToJson(const LoadedTrack& track);

}  // namespace tool
