// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/microdvd-loader.h"

#include "subtitles/load-string.h"
#include "subtitles/loader-support.h"
#include "subtitles/microdvd-parser.h"

namespace subtitles {
namespace {

constexpr const char* microDVDType = "application/x-micro-dvd-sub";

// One entry tells the format; there is no need to read more than a few.
constexpr int analyzedEntries = 3;
constexpr int allEntries = -1;

}  // namespace

std::vector<SubtitleReference> MicroDVDSubtitleLoader::analyzeFile(const fn::Path& path) {
    std::vector<SubtitleReference> references;
    if (!hasExtension(path, {"sub"})) {
        return references;
    }
    const fn::AutoPtr<SubtitleData> data =
        parseMicroDVD(loadString(path.toString(), "", analyzeLimit), analyzedEntries);
    if (!data->buffers.empty()) {
        references.push_back(makeFileReference(path, microDVDType));
    }
    return references;
}

bool MicroDVDSubtitleLoader::canHandle(const SubtitleReference& reference) {
    return isFileReference(reference, microDVDType);
}

fn::AutoPtr<SubtitleData> MicroDVDSubtitleLoader::loadSubtitle(const SubtitleReference& reference,
                                                               const fn::String& encoding) {
    fn::AutoPtr<SubtitleData> data =
        parseMicroDVD(loadString(reference.path, encoding, loadLimit), allEntries);
    data->sanitize();
    return data;
}

}  // namespace subtitles
