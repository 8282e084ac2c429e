// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "subtitles/subtitle-loader.h"

namespace subtitles {

/// SRT, under its own extension and under those of two other formats: "sub" and "smi" files often
/// hold SRT text.
class SrtSubtitleLoader : public SubtitleLoader {
public:
    /// One reference where the file's first 65536 bytes hold a cue that ends after it starts. Text
    /// that the reader refuses, such as malformed UTF-8, is no SRT and raises nothing.
    std::vector<SubtitleReference> analyzeFile(const fn::Path& path) override;
    bool canHandle(const SubtitleReference& reference) override;
    fn::AutoPtr<SubtitleData> loadSubtitle(const SubtitleReference& reference,
                                           const fn::String& encoding) override;
};

}  // namespace subtitles
