// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/export.h"
#include "foundation/string.h"

namespace fn::debug {

/// The readable form of a run-time type name: "N9subtitles12SubtitleDataE" gives
/// subtitles::SubtitleData. A text that is no such name comes back as it is.
FOUNDATION_EXPORT String demangleTypeName(const String& name);

}  // namespace fn::debug
