// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/ass-loader.h"

#include "subtitles/ass-reader.h"
#include "subtitles/load-string.h"
#include "subtitles/loader-support.h"

namespace subtitles {
namespace {

constexpr const char* assType = "application/x-ass";

}  // namespace

std::vector<SubtitleReference> ASSSubtitleLoader::analyzeFile(const fn::Path& path) {
    if (!hasExtension(path, {"ass", "ssa"})) {
        return {};
    }
    return {makeFileReference(path, assType)};
}

bool ASSSubtitleLoader::canHandle(const SubtitleReference& reference) {
    return isFileReference(reference, assType);
}

fn::AutoPtr<SubtitleData> ASSSubtitleLoader::loadSubtitle(const SubtitleReference& reference,
                                                          const fn::String& encoding) {
    fn::AutoPtr<SubtitleData> data = parseASS(loadString(reference.path, encoding, loadLimit));
    data->sanitize();
    return data;
}

}  // namespace subtitles
