// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <vector>

#include "foundation/directory-iterator.h"
#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/export.h"
#include "subtitles/subtitle-reference.h"

namespace subtitles {

/// Finds the subtitles that belong to a video, and reads their languages out of the files' names.
///
/// It has no state and may be used from any thread. `gst_init` must have been called. Everything
/// that a file cannot be read for raises an `fn::Exception`, from all its operations; results that
/// were appended by then stay.
class SUBTITLES_EXPORT SubtitleFinder {
public:
    SubtitleFinder(const SubtitleFinder&) = delete;
    SubtitleFinder& operator=(const SubtitleFinder&) = delete;

    /// The one finder, which lives as long as the process. May be called from any thread.
    static SubtitleFinder* instance();

    /// Appends what the folder's entries hold whose names begin with `prefix` and do not end in
    /// `excludedSuffix`, in any letter case, and sorts the whole result by path, byte by byte.
    ///
    /// Pass the video's name without extension and its own extension with the dot. An empty prefix
    /// begins every name; an empty suffix ends every name, so that nothing is left. Sub-folders are
    /// not entered, and no entry but the candidates is opened. The paths in the references are
    /// absolute. A folder that is missing, or is none, gives nothing new. What one file raises ends
    /// the scan, without the sorting; go file by file with `processFile` where the others still
    /// matter.
    void processFolder(const fn::Path& folder, const fn::String& prefix,
                       const fn::String& excludedSuffix, std::vector<SubtitleReference>& result);

    /// Appends what every loader makes of the file at `entry.path`, with the language that its name
    /// tells where a loader found one track and no language. Nothing else of `entry` counts, and
    /// neither does the folder.
    void processFile(const fn::DirectoryEntry& entry, const fn::Path& folder,
                     const fn::String& prefix, std::vector<SubtitleReference>& result);

    /// What every loader makes of a subtitle file that was chosen for a video, in the order of the
    /// loaders. The language is always read from the name, in place of what the loader found; the
    /// names need not share a beginning.
    std::vector<SubtitleReference> analyzeSubtitles(const fn::String& videoPath,
                                                    const fn::String& subtitlePath);

    /// Reads the language out of a file's name without extension, behind as many bytes as `prefix`
    /// has: from the first letter of any script to the end. A known code becomes the reference's
    /// `languageCode`, with its letter case kept; any other text becomes its `customLanguageName`,
    /// an empty one too. A name that is not longer than the prefix changes nothing.
    void tryToSetlanguageFromName(const fn::String& baseName, const fn::String& prefix,
                                  SubtitleReference& reference);

private:
    SubtitleFinder() = default;
};

}  // namespace subtitles
