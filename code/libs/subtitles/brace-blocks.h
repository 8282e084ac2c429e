// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/regular-expression.h"
#include "foundation/string.h"

namespace subtitles {

/// A block of control codes: a brace, what is in it, and the first closing brace. What is inside
/// may hold opening braces and line feeds.
extern const fn::RegularExpression braceBlock;

/// Replaces every match of `braceBlock` by nothing, in linear time. A brace that nothing closes
/// stays. Raises `fn::UTF8Exception` on malformed text, which is left as it was.
void removeBraceBlocks(fn::String& text);

}  // namespace subtitles
