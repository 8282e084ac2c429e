// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/export.h"
#include "foundation/stream.h"
#include "foundation/string-view.h"
#include "foundation/string.h"
#include "foundation/value.h"

namespace fn::json {

/// How deep lists and maps may be nested.
constexpr int maximumDepth = 100;

/// Writes the value as JSON text, in one line or, with `indented`, over several.
///
/// What comes out is always valid JSON and valid UTF-8. A string may hold any bytes, since a file's
/// name may: a byte that is no part of UTF-8 is written as "\u0000" and the code point of the
/// byte's number, U+0080 to U+00FF, and a NUL byte as "\u0000\u0000". `deserialize` turns both
/// back.
///
/// The entries of a map come in its order; a key that is no string is written as its text. JSON has
/// no infinity and no not-a-number: both become null. Nesting deeper than `maximumDepth` raises
/// `fn::DataFormatException`.
FOUNDATION_EXPORT void serialize(const Value& value, OutputStream& stream, bool indented);

/// Reads JSON text. An object is a map with strings as keys, and of equal keys the last one counts.
/// A number without fraction and exponent is an integer, unsigned above the signed range and a
/// double where neither holds it.
///
/// Raises `fn::DataFormatException` for malformed text, for a number beyond the range of a double,
/// and where the text is nested deeper than `maximumDepth`. The exception's text begins with
/// `source`, the name of what is read, where that is not empty.
FOUNDATION_EXPORT Value deserialize(StringView text, const String& source);

}  // namespace fn::json
