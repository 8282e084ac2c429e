// SPDX-License-Identifier: LGPL-2.1-or-later
//
// References as JSON: any text can be read, and what was read comes back from its own JSON.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "subtitles/subtitle-reference.h"

#include "fuzz/fuzz-require.h"

using subtitles::SubtitleReference;

namespace {

bool sameFields(const SubtitleReference& left, const SubtitleReference& right) {
    return left.type == right.type && left.mimeType == right.mimeType &&
           left.languageCode == right.languageCode &&
           left.customLanguageName == right.customLanguageName && left.name == right.name &&
           left.path == right.path && left.loaderProperties == right.loaderProperties &&
           left.streamName == right.streamName;
}

void requireRoundTrip(const SubtitleReference& reference) {
    SubtitleReference read;
    FUZZ_REQUIRE(read.deserialize(reference.serialize()));
    FUZZ_REQUIRE(sameFields(read, reference));
    FUZZ_REQUIRE(read.languageName() == reference.languageName());
}

/// A reference with the pieces of the text, which may be any bytes, in its fields.
SubtitleReference referenceOf(const fn::String& text) {
    const std::vector<fn::String> pieces = text.split('|');
    const auto piece = [&](std::size_t i) { return pieces[i % pieces.size()]; };
    SubtitleReference reference;
    reference.type = text.size() % 2 == 0 ? SubtitleReference::FILE : SubtitleReference::STREAM;
    reference.mimeType = piece(0);
    reference.languageCode = piece(1);
    reference.customLanguageName = piece(2);
    reference.name = piece(3);
    if (reference.type == SubtitleReference::FILE) {
        reference.path = piece(4);
        reference.loaderProperties[piece(5)] = piece(6);
    } else {
        reference.streamName = piece(4);
    }
    return reference;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(std::string(data, data + size));
    SubtitleReference reference;
    if (reference.deserialize(text)) {
        requireRoundTrip(reference);
    }
    requireRoundTrip(referenceOf(text));
    return 0;
}
