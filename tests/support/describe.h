// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Prints the model's values to one line each, so that a test's expectation is a text and its
// failure reads as a difference.

#pragma once

#include <string>

#include "foundation/auto-ptr.h"
#include "foundation/string-view.h"

#include "subtitles/attributed-text.h"
#include "subtitles/color.h"
#include "subtitles/subtitle-data.h"
#include "subtitles/text-attributes-delta.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// Bytes for people: `\0`, `\n`, `\r`, `\t`, `\\`, other control bytes and malformed UTF-8 as
/// `\xNN`, all else as it stands.
std::string escaped(fn::StringView bytes);

/// "ff8000".
std::string describe(const Color& color);

/// What is set, in the order of the mask's bits: "weight=700 color=ff0000", empty where nothing is.
/// Mask bits without a meaning come last: "unknown=100000".
std::string describe(const TextAttributes& attributes);

/// Every field, set or not, and the mask: for tests of what travels although it does not count.
std::string describeFields(const TextAttributes& attributes);

/// "[weight=700: bold][ plain\0]"; empty where there are no runs.
std::string describe(const AttributedText& text);

/// "changed(weight=700) removed(rise=2)".
std::string describe(const TextAttributesDelta& delta);

/// The buffer's PTS and duration, and what it holds: "0+1000 [runs]" for attributed text, and the
/// escaped bytes in quotes for any other type. A time that is missing is "-", a null buffer "null".
std::string describe(const fn::AutoPtr<_GstBuffer>& buffer, fn::StringView mimeType);

/// "application/x-attributed-text ns | 0+999 [a] | 1000+5000000000 [b]", with "frames" where the
/// stream counts those. A header is the first entry: "header "...".
std::string describe(const SubtitleData& data);

/// Where buffers begin and how long they last, and nothing else: "0+999 1000+5000000000".
std::string describeTimes(const SubtitleData& data);

}  // namespace subtitles
