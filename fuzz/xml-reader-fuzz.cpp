// SPDX-License-Identifier: LGPL-2.1-or-later
//
// XML, walked node by node: tags nest, a text that is not well-formed fails at its end and not
// before, and no text becomes much more than it is.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/string.h"
#include "foundation/utf8.h"
#include "foundation/xml-reader.h"

#include "fuzz/fuzz-require.h"

namespace {

using fn::XMLReader;

bool isBlank(const fn::String& text) {
    return text.find_first_not_of(" \t\r\n") == fn::String::npos;
}

/// The tags that are open, and how much was delivered.
class Walk {
public:
    explicit Walk(XMLReader& walked) : reader(walked) {}

    void visit() {
        FUZZ_REQUIRE(!reader.failed);
        ++nodes;
        bytes += reader.value().size();
        switch (reader.nodeType()) {
            case XMLReader::StartTag: open(); break;
            case XMLReader::EndTag: close(); break;
            case XMLReader::Text:
                FUZZ_REQUIRE(fn::utf8::isValid(fn::to_string_view(reader.value())));
                FUZZ_REQUIRE(!isBlank(reader.value()) && !openTags.empty());
                break;
            case XMLReader::WhiteSpace:
                FUZZ_REQUIRE(isBlank(reader.value()) && !reader.value().empty());
                break;
            default: FUZZ_REQUIRE(reader.nodeType() != XMLReader::NoNode); break;
        }
    }

    void finish(std::size_t textSize) const {
        FUZZ_REQUIRE(reader.nodeType() == XMLReader::NoNode);
        FUZZ_REQUIRE(!reader.read(false));
        FUZZ_REQUIRE(reader.failed || (openTags.empty() && hadRoot));
        // Entities may add the text's own size and a megabyte, an entity's first use not counted.
        const std::size_t limit = 20 * textSize + (1U << 22U);
        FUZZ_REQUIRE(nodes <= limit && bytes <= limit);
    }

private:
    void open() {
        FUZZ_REQUIRE(!reader.name().empty());
        FUZZ_REQUIRE(!(hadRoot && openTags.empty()));
        hadRoot = true;
        FUZZ_REQUIRE(reader.hasAttribute("a") || reader.getAttribute("a").empty());
        if (!reader.isEmptyElement()) {
            openTags.push_back(reader.name());
        }
    }

    void close() {
        FUZZ_REQUIRE(!openTags.empty() && openTags.back() == reader.name());
        openTags.pop_back();
    }

    XMLReader& reader;
    std::vector<fn::String> openTags;
    bool hadRoot = false;
    std::size_t nodes = 0;
    std::size_t bytes = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fn::String text(std::string(data, data + size));
    for (const int options : {XMLReader::SubstituteEntities + 0, 0}) {
        XMLReader reader = XMLReader::readerForText(text, options);
        Walk walk(reader);
        while (reader.read(false)) {
            walk.visit();
        }
        walk.finish(size);
    }
    return 0;
}
