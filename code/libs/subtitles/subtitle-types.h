// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The mime types of subtitle streams: all that the library knows by name, and those that it
// supports. Types are compared exactly, case included.

#pragma once

#include "foundation/string.h"

#include "subtitles/export.h"

namespace subtitles {

/// The types that the library knows, ended by a null pointer.
extern SUBTITLES_EXPORT const char* const
    subtitle_types[];  // NOLINT(readability-identifier-naming): players know it by this name

/// Whether the type is one of `subtitle_types`.
SUBTITLES_EXPORT bool isSubtitleType(const fn::String& mimeType);
/// Whether the type is one that the library supports.
SUBTITLES_EXPORT bool isSupportedType(const fn::String& mimeType);

/// The types that the library knows, and those that it supports, with ";" between them.
SUBTITLES_EXPORT fn::String subtitleTypesConcatenated();
SUBTITLES_EXPORT fn::String supportedSubtitleTypesConcatenated();

}  // namespace subtitles
