// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/string.h"

#include "subtitles/attributed-text.h"
#include "subtitles/export.h"

namespace subtitles {

/// Reads Pango's text markup: runs of text, each with all the attributes that the tags around it
/// give. Runs break at every tag that is known, and only there; unknown tags and attributes are
/// passed over. Line ends CR LF become LF.
///
/// Sizes keep the number of the markup, in its own unit. Text that is not well-formed is read as
/// SRT mark-up instead, so that nothing fails. No entity opens a file or a network address. May be
/// called from any thread.
SUBTITLES_EXPORT AttributedText pangoParkupToAttributedText(const fn::String& markup);

}  // namespace subtitles
