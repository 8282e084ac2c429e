// SPDX-License-Identifier: LGPL-2.1-or-later

#include "text-encoding.h"

#include "foundation/byte-array.h"
#include "foundation/file-stream.h"
#include "foundation/stream-reader.h"
#include "foundation/string-view.h"
#include "foundation/string.h"
#include "foundation/utf8.h"

#include "subtitles/charset-detector.h"

namespace tool {

namespace {

fn::ByteArray readFile(const std::string& path) {
    fn::FileInputStream stream(fn::FileDescriptor::read(path));
    return fn::StreamReader(&stream).readEverything(readLimit);
}

/// The bytes as the library looks at them: a character that its limit has cut in two is no fault of
/// UTF-8, and speaks for no other encoding.
fn::StringView withoutCutCharacter(fn::StringView bytes) {
    if (bytes.size() != readLimit) {
        return bytes;
    }
    const fn::StringView whole = bytes.substr(0, bytes.size() - fn::utf8::incompleteTail(bytes));
    return fn::utf8::isValid(whole) ? whole : bytes;
}

}  // namespace

std::string encodingOfFile(const std::string& path) {
    const fn::ByteArray all = readFile(path);
    const fn::StringView bytes = withoutCutCharacter(all.view());
    subtitles::CharsetDetector detector;
    detector.pushData(bytes.data(), bytes.size());
    detector.done();
    const fn::String& charset = detector.detectedCharset();
    if (!charset.empty() && fn::String::isKnownEncoding(charset)) {
        return charset;
    }
    return fn::utf8::isValid(bytes) ? "UTF-8" : "windows-1252";
}

}  // namespace tool
