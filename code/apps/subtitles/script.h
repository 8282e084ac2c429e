// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Whole files from cues: what stands around the text that the library's exporters make.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cue-list.h"
#include "cue-selection.h"

namespace tool {

enum class ScriptFormat { WebVTT, ASS };

/// The format by the extension of a file's name (.vtt, .ass), in any case.
std::optional<ScriptFormat> scriptFormatOf(const std::string& path);

/// "webvtt" or "ass".
std::string toString(ScriptFormat format);

/// The finest time that the format can tell, in nanoseconds.
std::uint64_t timeStep(ScriptFormat format);

/// The file's text, UTF-8 with line feeds. The cues must come from the list.
std::string scriptText(ScriptFormat format, const CueList& list, const std::vector<TimedCue>& cues);

}  // namespace tool
