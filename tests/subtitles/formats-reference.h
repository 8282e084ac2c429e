// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What formats say of their texts, in the slowest and plainest way: one replacement after the
// other, and expressions as they are. Tests and fuzz targets hold the library against it.

#pragma once

#include <array>
#include <optional>

#include "foundation/string.h"

namespace formats_reference {

/// The groups of a MicroDVD entry: start, end, text. Nothing where the line is none. Raises
/// `fn::UTF8Exception` on a malformed line.
std::optional<std::array<fn::String, 3>> microDVDEntry(const fn::String& line);

/// The groups of an ASS time: hours, minutes, seconds, fraction. Nothing where there is none.
std::optional<std::array<fn::String, 4>> assTime(const fn::String& text);

/// The text of a MicroDVD entry as SRT mark-up. Raises `fn::UTF8Exception` on malformed text.
fn::String microDVDMarkup(fn::String text);

/// The text of an ASS event as SRT mark-up. Raises `fn::UTF8Exception` on malformed text.
fn::String assMarkup(fn::String text);

/// The text of a run as WebVTT.
fn::String webVTTText(const fn::String& text);

}  // namespace formats_reference
