// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <vector>

#include "subtitles/subtitle-loader.h"

namespace subtitles {

/// Reads SMI files, which may hold several languages: one reference for each, whose
/// `loaderProperties` name the language's class under "class".
class SMISubtitleLoader : public SubtitleLoader {
public:
    /// Reads the whole file, once to detect its encoding and once to parse it. Raises what reading
    /// raises.
    std::vector<SubtitleReference> analyzeFile(const fn::Path& path) override;
    bool canHandle(const SubtitleReference& reference) override;
    fn::AutoPtr<SubtitleData> loadSubtitle(const SubtitleReference& reference,
                                           const fn::String& encoding) override;
};

}  // namespace subtitles
