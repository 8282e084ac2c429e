// SPDX-License-Identifier: LGPL-2.1-or-later
//
// How an HTML parser drives the document machine: the text is made good UTF-8, the parser is kept
// quiet and to the text's own encoding, and its calls are turned into the machine's.

#include <memory>
#include <new>
#include <utility>

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include "foundation/utf8.h"

#include "subtitles/load-string.h"
#include "subtitles/smi-loader.h"

namespace subtitles {

namespace {

using smi::Element;

struct FreeParser {
    void operator()(htmlParserCtxtPtr parser) const {
        htmlFreeParserCtxt(parser);
        xmlResetLastError();
    }
};

/// The handler for all documents. Only three things are heard of: with no handler for CDATA, the
/// raw text of a style element comes as characters, and comments are passed over.
htmlSAXHandler* saxHandler() {
    static htmlSAXHandler handler = [] {
        htmlSAXHandler events = {};
        events.startElement = SMILoader::_startElement;
        events.endElement = SMILoader::_endElement;
        events.characters = SMILoader::_characters;
        events.initialized = 1;
        return events;
    }();
    return &handler;
}

/// The text with U+FFFD for its first malformed sequence, which is at `bad`, and each behind it.
/// The HTML parser takes all behind one bad byte for Latin-1; this keeps the damage to the byte.
fn::String withoutMalformedUTF8(const fn::String& text, const char* bad) {
    const char* position = text.data();
    const char* const end = position + text.size();
    fn::String result;
    result.reserve(text.size() + text.size() / 8);
    while (bad != end) {
        result.append(position, bad).append("\xEF\xBF\xBD");
        position = bad + fn::utf8::malformedSize(bad, end);
        bad = fn::utf8::findMalformed(position, end);
    }
    result.append(position, end);
    return result;
}

/// The bytes of a C string; a null pointer gives the empty text.
fn::StringView toView(const xmlChar* text) {
    return text != nullptr ? fn::StringView(reinterpret_cast<const char*>(text)) : fn::StringView();
}

fn::String toLowerCase(fn::StringView text) {
    return fn::String(text.data(), text.size()).toLowerCase();
}

/// The HTML parser gives nearly all names in lower case already.
Element startedElement(const xmlChar* name) {
    const Element element = smi::elementOf(toView(name));
    return element != Element::Other
               ? element
               : smi::elementOf(fn::to_string_view(toLowerCase(toView(name))));
}

bool isNamed(const xmlChar* attribute, fn::StringView name) {
    return toView(attribute) == name || toLowerCase(toView(attribute)) == name;
}

/// The value of an attribute in a list of names and values, empty where it has none. The last one
/// of a name counts.
fn::StringView valueOf(fn::StringView name, const xmlChar** attributes) {
    fn::StringView value;
    for (; attributes != nullptr && attributes[0] != nullptr; attributes += 2) {
        if (isNamed(attributes[0], name)) {
            value = toView(attributes[1]);
        }
        // An attribute without a value ends the list: what stands behind it does not count.
        if (attributes[1] == nullptr) {
            break;
        }
    }
    return value;
}

}  // namespace

void SMILoader::parse(const fn::String& path, const fn::String& encoding) {
    parseText(loadString(path, encoding, loadLimit));
}

void SMILoader::parseText(const fn::String& text) {
    readText(text);
    makeBuffers();
}

fn::AutoPtr<SubtitleData> SMILoader::load(const fn::String& path, const fn::String& encoding) {
    readText(loadString(path, encoding, loadLimit));
    return makeStream();
}

fn::AutoPtr<SubtitleData> SMILoader::loadText(const fn::String& text) {
    readText(text);
    return makeStream();
}

void SMILoader::readText(const fn::String& text) {
    const char* const bad = fn::utf8::findMalformed(text.data(), text.data() + text.size());
    if (bad == text.data() + text.size()) {
        readDocument(text);
    } else {
        readDocument(withoutMalformedUTF8(text, bad));
    }
}

void SMILoader::readDocument(const fn::String& text) {
    const std::unique_ptr<htmlParserCtxt, FreeParser> parser(
        htmlCreatePushParserCtxt(saxHandler(), this, "", 0, nullptr, XML_CHAR_ENCODING_UTF8));
    if (!parser) {
        throw std::bad_alloc();
    }
    // The text is UTF-8 by now, whatever a meta element in it says. Recovering is the default, but
    // setting options drops it.
    htmlCtxtUseOptions(parser.get(), HTML_PARSE_RECOVER | HTML_PARSE_IGNORE_ENC |
                                         HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING);
    htmlParser = parser.get();
    // The result counts the document's errors, and most documents have some.
    htmlParseChunk(parser.get(), text.data(), static_cast<int>(text.size()), 1);
    htmlParser = nullptr;
    if (exception) {
        std::rethrow_exception(std::exchange(exception, nullptr));
    }
    flushStyleText();
}

/// Runs an action that the HTML parser asks for. An exception cannot pass through the parser, which
/// is C: it is kept, and the parser stopped.
template <class Action>
void SMILoader::guarded(Action&& action) {
    if (exception) {
        return;
    }
    try {
        action();
    } catch (...) {
        exception = std::current_exception();
        if (htmlParser != nullptr) {
            xmlStopParser(static_cast<xmlParserCtxtPtr>(htmlParser));
        }
    }
}

/// A style element's text comes in pieces of any size, and a sheet that is cut in the middle of a
/// rule loses it. So the pieces are joined, and read when the next tag comes or the document ends.
void SMILoader::flushStyleText() {
    if (!styleText.empty()) {
        characters(std::exchange(styleText, fn::String()));
    }
}

void SMILoader::_startElement(void* context, const xmlChar* name, const xmlChar** attributes) {
    auto* const loader = static_cast<SMILoader*>(context);
    loader->guarded([&] {
        loader->flushStyleText();
        const Element element = startedElement(name);
        const fn::StringView attribute = smi::attributeOf(element);
        loader->start(element, attribute.empty() ? attribute : valueOf(attribute, attributes));
    });
}

void SMILoader::_endElement(void* context, const xmlChar* name) {
    auto* const loader = static_cast<SMILoader*>(context);
    loader->guarded([&] {
        loader->flushStyleText();
        loader->end(toView(name));
    });
}

void SMILoader::_characters(void* context, const xmlChar* text, int size) {
    auto* const loader = static_cast<SMILoader*>(context);
    loader->guarded([&] {
        const fn::StringView piece(reinterpret_cast<const char*>(text),
                                   static_cast<std::size_t>(size));
        if (loader->inStyle) {
            loader->styleText += piece;
        } else {
            loader->appendText(piece);
        }
    });
}

}  // namespace subtitles
