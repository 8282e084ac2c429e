// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <memory>

#include "foundation/string.h"

#include "subtitles/export.h"

namespace subtitles {

class CharsetDetectorImpl;

/// Names the encoding of a text from its bytes. One object serves one text and one thread; there is
/// no going back to the start.
class SUBTITLES_EXPORT CharsetDetector {
public:
    CharsetDetector();
    CharsetDetector(const CharsetDetector&) = delete;
    CharsetDetector& operator=(const CharsetDetector&) = delete;
    ~CharsetDetector();

    /// Takes the next `size` bytes of the text. At most 4 GiB less one byte go in one call: of a
    /// larger size only the low 32 bits count.
    void pushData(const void* data, unsigned long size);

    /// Says that the text is at its end. To be called once; there is no answer before.
    void done();

    /// The name of the encoding, for `fn::String::withEncoding`, valid as long as the detector.
    /// Empty where there is none to tell: without data, for plain ASCII, and for bytes that fit
    /// nothing.
    ///
    /// Mostly one of "UTF-8", "UTF-16LE", "windows-1250", "windows-1252", "CP949" (Korean), "CP950"
    /// (traditional Chinese), or another name as uchardet has it. That may be one that no converter
    /// knows ("HZ-GB-2312"); `fn::String::isKnownEncoding` tells.
    const fn::String& detectedCharset() const;

    /// The encoding of a file, judged by its first `maxBytes` bytes, or by up to 4095 more, since
    /// whole blocks of 4096 are read. The largest value of the type means all of it. A null path is
    /// an empty one. Raises an `fn::Exception` where the file cannot be opened or read.
    static fn::String detectFileCharset(const char* path, unsigned long maxBytes);

private:
    std::unique_ptr<CharsetDetectorImpl> impl;
};

}  // namespace subtitles
