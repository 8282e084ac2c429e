// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>
#include <map>

#include "foundation/logging.h"
#include "foundation/string.h"

#include "subtitles/export.h"

namespace subtitles {

/// Where one subtitle track can be had: a file, or a stream that somebody else knows by name. The
/// finder makes references, loaders load them, and a player keeps them as JSON. A plain value.
class SUBTITLES_EXPORT SubtitleReference {
public:
    enum Type : std::int32_t {
        INVALID = -1,  ///< Not set.
        FILE = 0,      ///< A file: `path` and `loaderProperties` count.
        STREAM = 1,    ///< A stream: `streamName` counts.
    };

    /// The name of the language to show: the custom one, or what the table has for the code, which
    /// is "Unknown" where it has none. A custom name out of a file's name need not be UTF-8.
    fn::String languageName() const;

    /// The reference as one JSON object in UTF-8, its keys in ascending order. Of `path` with
    /// `loaderProperties`, and `streamName`, only what goes with the type is in it. A path that is
    /// not UTF-8 survives.
    fn::String serialize() const;

    /// Reads the JSON object that `serialize` wrote. False where the text is empty, and, with an
    /// error in the log, where it is no JSON object or its "type" is no number that an `int` holds;
    /// nothing is changed then.
    ///
    /// A missing key empties its field, and so does a list or a map in its place; a missing "type"
    /// is INVALID, and only the fields that go with the type are touched. Entries of
    /// "loader-properties" are added to those that are there. Unknown keys are read over.
    bool deserialize(const fn::String& text);

    static fn::logging::Category* _fn_getLoggingCategoryStatic();
    fn::logging::Tag _fn_getLoggingTag() const;
    static fn::logging::Tag _fn_getLoggingTagStatic();

    Type type = INVALID;  ///< The first thing that a loader looks at.
    /// Says which loader it is for: "application/x-srt", "application/x-micro-dvd-sub",
    /// "application/x-ass" or "application/x-smi".
    fn::String mimeType;
    fn::String languageCode;        ///< As found, in any case; see `Language::forCode`.
    fn::String customLanguageName;  ///< Goes before the name of the code where it is not empty.
    fn::String name;                ///< For display; the library only carries it along.
    fn::String path;                ///< As `fn::Path` has it on this system; may be any bytes.
    /// What the loader wants back. SMI alone has one: the "class" of the track's paragraphs.
    std::map<fn::String, fn::String> loaderProperties;
    fn::String streamName;  ///< The library only carries it along.

private:
    SUBTITLES_INTERNAL void readFrom(const fn::String& text);
};

}  // namespace subtitles
