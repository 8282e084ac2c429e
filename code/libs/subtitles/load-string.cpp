// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Reading, detecting, decoding: the three steps from a path to text.

#include "subtitles/load-string.h"

#include "foundation/file-stream.h"
#include "foundation/stream-reader.h"
#include "foundation/string-view.h"
#include "foundation/utf8.h"

#include "subtitles/charset-detector.h"

namespace subtitles {
namespace {

fn::ByteArray readFile(const fn::String& path, unsigned long limit) {
    fn::FileInputStream stream(fn::FileDescriptor::read(path));
    fn::StreamReader reader(&stream);
    return reader.readEverything(limit);
}

fn::String detectEncoding(fn::StringView bytes) {
    CharsetDetector detector;
    detector.pushData(bytes.data(), bytes.size());
    detector.done();
    return knownEncoding(detector.detectedCharset());
}

/// Text that is UTF-8 up to an incomplete character at its very end. Half a character there would
/// speak for some single-byte encoding, in a file of plain ASCII until then even alone.
bool isUTF8CutShort(fn::StringView bytes, std::size_t tail) {
    return tail > 0 && fn::utf8::isValid(bytes.substr(0, bytes.size() - tail));
}

bool isUTF8(const fn::String& encoding) {
    const fn::String name = encoding.toLowerCaseASCII();
    return name == "utf-8" || name == "utf8";
}

}  // namespace

fn::String knownEncoding(const fn::String& detected) {
    return fn::String::isKnownEncoding(detected) ? detected : fn::String();
}

fn::String decodeText(const fn::ByteArray& bytes, const fn::String& encoding, unsigned long limit) {
    fn::StringView text = bytes.view();
    const std::size_t tail = text.size() == limit ? fn::utf8::incompleteTail(text) : 0;
    fn::String used = encoding;
    if (used.empty()) {
        used =
            detectEncoding(isUTF8CutShort(text, tail) ? text.substr(0, text.size() - tail) : text);
    }
    if (used.empty() || isUTF8(used)) {
        text.remove_suffix(tail);
    }
    return fn::String::withEncoding(bytes.data(), text.size(), used);
}

fn::String loadString(const fn::String& path, const fn::String& encoding, unsigned long limit) {
    return decodeText(readFile(path, limit), encoding, limit);
}

}  // namespace subtitles
