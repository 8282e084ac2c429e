// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/string-view.h"
#include "foundation/string.h"

namespace subtitles {

/// The name to give out for the detector's answer to a text whose bytes have this sum of
/// `frequencies`: one that a converter knows, and for windows-1250 the one that the sum speaks for.
fn::String charsetName(fn::StringView answer, std::int64_t score);

}  // namespace subtitles
