// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>

#include "subtitles/style-sheet.h"

namespace subtitles {

/// "rgb(255,0,0,255)", "hsv(...)", "12px", "50%", "'red'", "url('a.png')" or "none".
std::string describe(const StyleSheet::Value& value);

/// "name: value value".
std::string describe(const StyleSheet::Property& property);

/// "[a#id.class:pseudo[attribute] b]": the segments with a blank between two.
std::string describe(const StyleSheet::Selector& selector);

/// The rule sets, "[a][a b]{x: 1; y: 'z'}", and then the root properties, "x: 1;", each with a
/// blank before the next; empty for an empty sheet.
std::string describe(const StyleSheet& sheet);

/// True where every field of every record is the same, those included that do not count.
bool areSame(const StyleSheet& a, const StyleSheet& b);

}  // namespace subtitles
