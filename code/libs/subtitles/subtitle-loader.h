// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <list>
#include <vector>

#include "foundation/auto-ptr.h"
#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/export.h"
#include "subtitles/subtitle-data.h"
#include "subtitles/subtitle-reference.h"

namespace subtitles {

/// Reads subtitles of one format. A loader has no state: one object serves any number of threads.
///
/// `gst_init` must have been called before anything is loaded. All file access and decoding that
/// fails raises an `fn::Exception` whose text names the file or the encoding.
class SUBTITLES_EXPORT SubtitleLoader {
public:
    SubtitleLoader() = default;
    SubtitleLoader(const SubtitleLoader&) = delete;
    SubtitleLoader& operator=(const SubtitleLoader&) = delete;

    /// What the file at `path` holds: nothing where it is not of this format, and one reference or,
    /// for SMI alone, one for each language.
    ///
    /// Looks at the extension first, in any letter case, and opens the file only where that fits.
    /// Reads at most 65536 bytes, for SMI all of it, and for ASS nothing: its extension is enough.
    /// Broken content gives an empty result.
    virtual std::vector<SubtitleReference> analyzeFile(const fn::Path& path) = 0;

    /// Whether the reference is one that this loader loads. The file is not looked at.
    virtual bool canHandle(const SubtitleReference& reference) = 0;

    /// The stream of a reference that the loader can handle, sorted and clean, ready for playing.
    /// Empty where nothing of the content fits the format.
    ///
    /// At most 8388608 bytes of the file are read; what lies behind is absent. An empty `encoding`
    /// asks for detection, any other is taken at its word. Where that is
    /// "UTF-8" and a line is malformed, SRT and ASS may raise `fn::UTF8Exception`, which does not
    /// name the file.
    virtual fn::AutoPtr<SubtitleData> loadSubtitle(const SubtitleReference& reference,
                                                   const fn::String& encoding) = 0;

    virtual ~SubtitleLoader();

    /// New loaders for all formats, in the order in which they are to be asked: SRT, MicroDVD, ASS,
    /// SMI. They belong to the caller; the list does not delete them.
    static std::list<SubtitleLoader*> createDefaultLoaders();

    /// The loaders of this library, in the same order, and the same objects at each call. They
    /// belong to the library and live as long as the process. May be called from any thread.
    static std::list<SubtitleLoader*> getAllLoaders();
};

}  // namespace subtitles
