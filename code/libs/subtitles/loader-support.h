// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the loaders have in common.

#pragma once

#include <initializer_list>

#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/subtitle-reference.h"

namespace subtitles {

/// Whether the path's extension is one of these, which are in lower case, in any letter case.
bool hasExtension(const fn::Path& path, std::initializer_list<const char*> extensions);

/// A reference to a file of that type; what its language is, others find out.
SubtitleReference makeFileReference(const fn::Path& path, const char* mimeType);

/// Whether the reference is to a file of exactly that type.
bool isFileReference(const SubtitleReference& reference, const char* mimeType);

}  // namespace subtitles
