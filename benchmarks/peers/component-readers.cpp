// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The two libraries below ours, alone: what they take of the whole is nothing that a reader above
// them could save.

#include <libxml/HTMLparser.h>
#include <uchardet/uchardet.h>

#include "benchmarks/peers/reader.h"

namespace peers {
namespace {

class Libxml2Reader : public Reader {
public:
    std::size_t read(const std::string& file) override {
        std::size_t elements = 0;
        htmlSAXHandler handler = {};
        handler.startElement = [](void* context, const xmlChar*, const xmlChar**) {
            ++*static_cast<std::size_t*>(context);
        };
        handler.endElement = [](void*, const xmlChar*) {};
        handler.characters = [](void*, const xmlChar*, int) {};
        handler.initialized = 1;
        const htmlParserCtxtPtr parser =
            htmlCreatePushParserCtxt(&handler, &elements, "", 0, nullptr, XML_CHAR_ENCODING_UTF8);
        htmlCtxtUseOptions(parser, HTML_PARSE_RECOVER | HTML_PARSE_IGNORE_ENC | HTML_PARSE_NOERROR |
                                       HTML_PARSE_NOWARNING);
        htmlParseChunk(parser, file.data(), static_cast<int>(file.size()), 1);
        htmlFreeParserCtxt(parser);
        return elements;
    }

    void release() override {}
};

class UchardetReader : public Reader {
public:
    std::size_t read(const std::string& file) override {
        const uchardet_t detector = uchardet_new();
        uchardet_handle_data(detector, file.data(), file.size());
        uchardet_data_end(detector);
        const bool isDetected = *uchardet_get_charset(detector) != '\0';
        uchardet_delete(detector);
        return isDetected ? 1 : 0;
    }

    void release() override {}
};

}  // namespace

std::unique_ptr<Reader> makeLibxml2() {
    return std::make_unique<Libxml2Reader>();
}

std::unique_ptr<Reader> makeUchardet() {
    return std::make_unique<UchardetReader>();
}

}  // namespace peers
