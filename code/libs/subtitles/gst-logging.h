// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The road of log messages into GStreamer's debug log, where whoever develops a player looks for
// them: GST_DEBUG=subtitle*:5 shows everything.

#pragma once

#include "foundation/logging.h"
#include "foundation/string.h"

namespace subtitles {

/// The category of that name, which lives as long as the process. May be called from any thread.
///
/// The first call sends all categories to GStreamer's debug log, each to the debug category of its
/// own name, unless the program has a sink factory of its own or sets one later. Errors come out at
/// the level ERROR and traces at DEBUG; below a category's threshold no text is made.
fn::logging::Category* loggingCategory(const fn::String& name);

}  // namespace subtitles
