// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/string.h"

#include "subtitles/color.h"

namespace subtitles {

/// The colour as ASS writes it: "&H", the alpha if asked for, then blue, green and red, in two
/// upper-case hexadecimal digits each. `alpha` is the opacity, 255 for opaque; ASS counts the other
/// way, so its complement is printed. There is no "&" at the end.
fn::String colorToASS(const Color& color, unsigned char alpha, bool withAlpha);

}  // namespace subtitles
