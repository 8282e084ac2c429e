// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/loader-support.h"

#include <algorithm>

namespace subtitles {

bool hasExtension(const fn::Path& path, std::initializer_list<const char*> extensions) {
    const fn::String extension = path.extension().toLowerCase();
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

SubtitleReference makeFileReference(const fn::Path& path, const char* mimeType) {
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.mimeType = mimeType;
    reference.path = path.toString();
    return reference;
}

bool isFileReference(const SubtitleReference& reference, const char* mimeType) {
    return reference.type == SubtitleReference::FILE && reference.mimeType == mimeType;
}

}  // namespace subtitles
