// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/subtitle-types.h"

#include "foundation/string-view.h"

namespace subtitles {
namespace {

// NOLINTNEXTLINE(readability-identifier-naming): the twin of `subtitle_types`
const char* const supported_subtitle_types[] = {
    "application/x-ass",
    "application/x-ssa",
    "application/x-srt",
    "application/x-micro-dvd-sub",
    "application/x-smi",
    "text/plain",
    "text/x-raw",
    "application/x-attributed-text",
    "subpicture/x-pgs",
    "subpicture/x-dvd",
    "application/x-subtitle-vtt",
    nullptr,
};

bool contains(const char* const* types, const fn::String& mimeType) {
    for (; *types != nullptr; ++types) {
        if (fn::to_string_view(mimeType) == *types) {
            return true;
        }
    }
    return false;
}

fn::String concatenated(const char* const* types) {
    fn::String result;
    for (; *types != nullptr; ++types) {
        result.append(result.empty() ? "" : ";").append(*types);
    }
    return result;
}

}  // namespace

const char* const subtitle_types[] = {
    "application/x-ass",
    "application/x-ssa",
    "application/x-srt",
    "application/x-micro-dvd-sub",
    "application/x-smi",
    "text/plain",
    "text/x-raw",
    "application/x-attributed-text",
    "subpicture/x-pgs",
    "subpicture/x-dvd",
    "application/x-subtitle-vtt",
    "subpicture/x-dvb",
    "application/x-subtitle-unknown",
    "subtitle/x-kate",
    "application/x-kate",
    nullptr,
};

bool isSubtitleType(const fn::String& mimeType) {
    return contains(subtitle_types, mimeType);
}

bool isSupportedType(const fn::String& mimeType) {
    return contains(supported_subtitle_types, mimeType);
}

fn::String subtitleTypesConcatenated() {
    return concatenated(subtitle_types);
}

fn::String supportedSubtitleTypesConcatenated() {
    return concatenated(supported_subtitle_types);
}

}  // namespace subtitles
