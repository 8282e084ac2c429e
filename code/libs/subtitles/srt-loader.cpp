// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/srt-loader.h"

#include "subtitles/load-string.h"
#include "subtitles/loader-support.h"
#include "subtitles/srt-reader.h"

namespace subtitles {
namespace {

constexpr const char* srtType = "application/x-srt";

bool holdsCues(const fn::String& text) {
    const fn::AutoPtr<SubtitleData> data = parseSRT(text);
    return !data->buffers.empty();
}

}  // namespace

std::vector<SubtitleReference> SrtSubtitleLoader::analyzeFile(const fn::Path& path) {
    std::vector<SubtitleReference> references;
    if (!hasExtension(path, {"srt", "sub", "smi"})) {
        return references;
    }
    // A file that cannot be read is the caller's concern, one that cannot be parsed is no SRT: so
    // the reading stands outside of the guard.
    const fn::String text = loadString(path.toString(), "", analyzeLimit);
    try {
        if (holdsCues(text)) {
            references.push_back(makeFileReference(path, srtType));
        }
    } catch (...) {
        // Whatever it was that the parser stumbled over, the file is none of ours.
    }
    return references;
}

bool SrtSubtitleLoader::canHandle(const SubtitleReference& reference) {
    return isFileReference(reference, srtType);
}

fn::AutoPtr<SubtitleData> SrtSubtitleLoader::loadSubtitle(const SubtitleReference& reference,
                                                          const fn::String& encoding) {
    fn::AutoPtr<SubtitleData> data = parseSRT(loadString(reference.path, encoding, loadLimit));
    data->sanitize();
    return data;
}

}  // namespace subtitles
