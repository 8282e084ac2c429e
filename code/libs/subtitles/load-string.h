// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The one way from the bytes of a file to text, for all loaders.

#pragma once

#include "foundation/byte-array.h"
#include "foundation/string.h"

namespace subtitles {

/// How many bytes of a file are looked at to tell what it is.
constexpr unsigned long analyzeLimit = 65536;
/// How many bytes of a file are loaded.
constexpr unsigned long loadLimit = 8388608;

/// The text of the file at `path`: its first `limit` bytes, decoded. A longer file is cut there,
/// inside of a line too.
///
/// An empty `encoding` asks for detection, on the same bytes. Where exactly `limit` bytes were read
/// of a text in UTF-8, or in no encoding that detection can name, a character that the cut left
/// incomplete is dropped: how long a file is never changes how its start is read. Raises an
/// `fn::Exception` that names the path where the file cannot be read, and one that names the
/// encoding where the caller's is unknown.
fn::String loadString(const fn::String& path, const fn::String& encoding, unsigned long limit);

/// The same for bytes that were read already, at most `limit` of them.
fn::String decodeText(const fn::ByteArray& bytes, const fn::String& encoding, unsigned long limit);

/// A name that detection gave, where some converter knows it, and otherwise the empty name. A
/// detector knows a few encodings that no converter does, and its guess must not end a scan.
fn::String knownEncoding(const fn::String& detected);

}  // namespace subtitles
