// SPDX-License-Identifier: LGPL-2.1-or-later
//
// JSON in both directions: any bytes travel through it as a text, and any document that can be read
// comes back from what is written of it.

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/exception.h"
#include "foundation/json.h"
#include "foundation/stream.h"
#include "foundation/string.h"
#include "foundation/utf8.h"
#include "foundation/value.h"

#include "fuzz/fuzz-require.h"

namespace {

fn::String write(const fn::Value& value, bool indented) {
    fn::ByteArrayOutputStream stream;
    fn::json::serialize(value, stream, indented);
    return fn::String(std::string(stream.byteArray().view()));
}

void requireRoundTrip(const fn::Value& value) {
    for (const bool indented : {false, true}) {
        const fn::String text = write(value, indented);
        FUZZ_REQUIRE(fn::utf8::isValid(fn::to_string_view(text)));
        const fn::Value read = fn::json::deserialize(fn::to_string_view(text), "");
        FUZZ_REQUIRE(read == value);
        FUZZ_REQUIRE(read.type() == value.type());
        FUZZ_REQUIRE(write(read, indented) == text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String bytes(std::string(data, data + size));
    fn::Value value;
    value.map()[bytes].list().push_back(bytes);
    requireRoundTrip(value);
    try {
        value = fn::json::deserialize(fn::to_string_view(bytes), "");
    } catch (const fn::DataFormatException& exception) {
        // A message for a log, not a copy of the document.
        FUZZ_REQUIRE(exception.displayText().size() < 512);
        return 0;
    }
    requireRoundTrip(value);
    return 0;
}
