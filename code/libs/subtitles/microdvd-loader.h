// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "subtitles/subtitle-loader.h"

namespace subtitles {

/// MicroDVD, under the extension "sub". Its streams count frames.
class MicroDVDSubtitleLoader : public SubtitleLoader {
public:
    /// One reference where the file's first 65536 bytes hold an entry.
    std::vector<SubtitleReference> analyzeFile(const fn::Path& path) override;
    bool canHandle(const SubtitleReference& reference) override;
    fn::AutoPtr<SubtitleData> loadSubtitle(const SubtitleReference& reference,
                                           const fn::String& encoding) override;
};

}  // namespace subtitles
