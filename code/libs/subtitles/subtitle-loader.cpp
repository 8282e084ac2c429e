// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The registry of the loaders.

#include "subtitles/subtitle-loader.h"

#include "subtitles/ass-loader.h"
#include "subtitles/microdvd-loader.h"
#include "subtitles/smi-subtitle-loader.h"
#include "subtitles/srt-loader.h"

namespace subtitles {

SubtitleLoader::~SubtitleLoader() = default;

// Each format has its place: a ".sub" or ".smi" file that holds SRT text is to be found as SRT
// first.
std::list<SubtitleLoader*> SubtitleLoader::createDefaultLoaders() {
    return {
        new SrtSubtitleLoader,
        new MicroDVDSubtitleLoader,
        new ASSSubtitleLoader,
        new SMISubtitleLoader,
    };
}

std::list<SubtitleLoader*> SubtitleLoader::getAllLoaders() {
    // Neither the objects nor the list is ever deleted: a thread may still be loading when the
    // process ends.
    static const auto& loaders = *new std::list<SubtitleLoader*>(createDefaultLoaders());
    return loaders;
}

}  // namespace subtitles
