// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "subtitles/subtitle-loader.h"

namespace subtitles {

/// ASS and SSA, under their extensions "ass" and "ssa". Its streams hold raw events, which
/// `ASSParser` reads one by one.
class ASSSubtitleLoader : public SubtitleLoader {
public:
    /// One reference for every file of these extensions: it is not opened, and need not exist.
    std::vector<SubtitleReference> analyzeFile(const fn::Path& path) override;
    bool canHandle(const SubtitleReference& reference) override;
    /// Raises `fn::UTF8Exception` where the decoded text is malformed UTF-8.
    fn::AutoPtr<SubtitleData> loadSubtitle(const SubtitleReference& reference,
                                           const fn::String& encoding) override;
};

}  // namespace subtitles
