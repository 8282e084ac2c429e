// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Walking XML with libxml2's text reader.
//
// The reader can feed its parser by itself, in pieces of 512 bytes. A defect then loses the nodes
// in front of it in the same piece, waiting for the end of a long construct takes quadratic time,
// and nothing can be said about what entities may do. So the text is parsed here, in one go, up to
// its first defect, and the text reader walks what was built.
//
// Two things that the tree does not tell are marked in it: an element without content whose end tag
// is written gets an empty text, so that it differs from "<b/>", and an element whose end tag was
// not reached keeps a mark, so that no end is delivered for it.

#include "foundation/xml-reader.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <utility>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlreader.h>

#include "foundation/string-view.h"
#include "foundation/xml-prescan.h"

namespace fn {

namespace {

struct FreeContext {
    void operator()(xmlParserCtxtPtr context) const { xmlFreeParserCtxt(context); }
};
struct FreeDocument {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
};
struct FreeReader {
    void operator()(xmlTextReaderPtr reader) const { xmlFreeTextReader(reader); }
};
struct FreeText {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using ContextPtr = std::unique_ptr<xmlParserCtxt, FreeContext>;
using DocumentPtr = std::unique_ptr<xmlDoc, FreeDocument>;
using ReaderPtr = std::unique_ptr<xmlTextReader, FreeReader>;
using TextPtr = std::unique_ptr<xmlChar, FreeText>;

const xmlChar* toXML(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

String fromXML(const xmlChar* text) {
    return String(reinterpret_cast<const char*>(text));
}

/// What entities may still add to the text.
struct Budget {
    std::size_t bytes;
};

// The marks of an element that is not closed yet.
char openMark = 0;
char selfClosingMark = 0;

bool isOpen(const xmlNode* node) {
    return node->type == XML_ELEMENT_NODE && node->_private != nullptr;
}

/// What stands for the content of an element without any.
bool isPlaceholder(const xmlNode* node) {
    return node->type == XML_TEXT_NODE && node->content != nullptr && node->content[0] == 0;
}

/// Ends the parse as not well-formed: nothing more is told of what follows.
///
/// Inside an element the parser is also told that it has stopped and finds nothing more to read,
/// so that it does not go on from defect to defect. `xmlStopParser` does the same, but it frees the
/// input too, and a parser that reports an error may go on looking at it. In a document type
/// declaration the parser is left to find its end: there it does not survive a sudden one.
void stop(xmlParserCtxtPtr context) {
    context->wellFormed = 0;
    context->disableSAX = 1;
    if (context->nodeNr > 0) {
        context->instate = XML_PARSER_EOF;
        context->input->cur = context->input->end;
    }
}

/// Keeps libxml2's messages to ourselves, and stops at the first defect: behind it nothing is read,
/// and some texts have a defect, with a long message, at every byte. The type of the error differs
/// between versions.
template <class Error>
void onError(void* /*data*/, Error error) {
    if (error->level == XML_ERR_FATAL && error->ctxt != nullptr) {
        stop(static_cast<xmlParserCtxtPtr>(error->ctxt));
    }
}

// NOLINTNEXTLINE(readability-function-size): as many parameters as libxml2 gives.
void onStartElement(void* data, const xmlChar* localName, const xmlChar* prefix,
                    const xmlChar* nameSpace, int nameSpaceCount, const xmlChar** nameSpaces,
                    int attributeCount, int defaultedCount, const xmlChar** attributes) {
    auto* const context = static_cast<xmlParserCtxtPtr>(data);
    const xmlChar* const next = context->input->cur;
    const bool isSelfClosing = next[0] == '/' && next[1] == '>';
    if (!isSelfClosing && next[0] != '>') {
        // The parser would tell of the tag first and then of its missing end.
        stop(context);
        return;
    }
    xmlSAX2StartElementNs(data, localName, prefix, nameSpace, nameSpaceCount, nameSpaces,
                          attributeCount, defaultedCount, attributes);
    if (context->node != nullptr) {
        context->node->_private = isSelfClosing ? &selfClosingMark : &openMark;
    }
}

/// The parser looks for characters faster than it looks whether it was stopped.
void onCharacters(void* data, const xmlChar* text, int size) {
    if (static_cast<xmlParserCtxtPtr>(data)->disableSAX == 0) {
        xmlSAX2Characters(data, text, size);
    }
}

void onEndElement(void* data, const xmlChar* localName, const xmlChar* prefix,
                  const xmlChar* nameSpace) {
    const auto* const context = static_cast<xmlParserCtxtPtr>(data);
    const xmlNodePtr node = context->node;
    if (node != nullptr) {
        if (node->_private == &openMark && node->children == nullptr) {
            xmlAddChild(node, xmlNewDocText(node->doc, toXML("")));
        }
        node->_private = nullptr;
    }
    xmlSAX2EndElementNs(data, localName, prefix, nameSpace);
}

/// Declares what would have to be fetched as empty.
void onEntityDeclaration(void* data, const xmlChar* name, int type, const xmlChar* publicId,
                         const xmlChar* systemId, xmlChar* content) {
    xmlChar empty[] = {0};
    if (type == XML_EXTERNAL_GENERAL_PARSED_ENTITY) {
        xmlSAX2EntityDecl(data, name, XML_INTERNAL_GENERAL_ENTITY, nullptr, nullptr, empty);
    } else if (type == XML_EXTERNAL_PARAMETER_ENTITY) {
        xmlSAX2EntityDecl(data, name, XML_INTERNAL_PARAMETER_ENTITY, nullptr, nullptr, empty);
    } else {
        xmlSAX2EntityDecl(data, name, type, publicId, systemId, content);
    }
}

void onExternalSubset(void* /*data*/, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                      const xmlChar* /*systemId*/) {}

xmlParserInputPtr onResolveEntity(void* /*data*/, const xmlChar* /*publicId*/,
                                  const xmlChar* /*systemId*/) {
    return nullptr;
}

/// The node that follows `node` inside `root`, children first; null at the end.
const xmlNode* nextInside(const xmlNode* node, const xmlNode* root) {
    if (node->type == XML_ELEMENT_NODE && node->children != nullptr) {
        return node->children;
    }
    while (node != root && node->next == nullptr) {
        node = node->parent;
    }
    return node != root ? node->next : nullptr;
}

/// What a copy of the node adds, in bytes, or a little more than `limit` where it is more. The walk
/// takes no longer than the copying that it stands for.
std::size_t sizeOf(const xmlNode* root, std::size_t limit) {
    constexpr std::size_t bytesPerNode = 4;  // as many as the shortest tag, "<b/>"
    std::size_t size = 0;
    for (const xmlNode* node = root; node != nullptr && size <= limit;
         node = nextInside(node, root)) {
        const bool isText = node->type == XML_TEXT_NODE;
        size += bytesPerNode + (isText ? static_cast<std::size_t>(xmlStrlen(node->content)) : 0);
    }
    return size;
}

/// Takes a copy of the entity's content from the budget; false where it is spent.
bool pay(Budget& budget, const xmlEntity* entity) {
    for (const xmlNode* child = entity->children; child != nullptr; child = child->next) {
        const std::size_t size = sizeOf(child, budget.bytes);
        if (size > budget.bytes) {
            return false;
        }
        budget.bytes -= size;
        // Behind the last child may stand what follows the entity's first use.
        if (child == entity->last) {
            break;
        }
    }
    return true;
}

/// Every use of an entity whose content is known copies that content. libxml2 bounds the bytes that
/// come of it, to a multiple of the text, but not the nodes, which are thirty times as large.
xmlEntityPtr onGetEntity(void* data, const xmlChar* name) {
    const xmlEntityPtr entity = xmlSAX2GetEntity(data, name);
    auto* const context = static_cast<xmlParserCtxtPtr>(data);
    auto* const budget = static_cast<Budget*>(context->_private);
    const bool isKnown = entity != nullptr && entity->children != nullptr;
    if (isKnown && !pay(*budget, entity)) {
        stop(context);
        return nullptr;
    }
    return entity;
}

/// A parameter entity's content is read at each use, and uses others. Behind a defect there is none
/// of them any more: the parser goes on to the end of the declaration, and must get there.
xmlEntityPtr onGetParameterEntity(void* data, const xmlChar* name) {
    const xmlEntityPtr entity = xmlSAX2GetParameterEntity(data, name);
    auto* const context = static_cast<xmlParserCtxtPtr>(data);
    auto* const budget = static_cast<Budget*>(context->_private);
    if (entity == nullptr || context->wellFormed == 0) {
        return nullptr;
    }
    const std::size_t size = 1 + static_cast<std::size_t>(std::max(entity->length, 0));
    if (size > budget->bytes) {
        stop(context);
        return nullptr;
    }
    budget->bytes -= size;
    return entity;
}

/// Sets what the program may have changed for all of libxml2 back to what is expected here.
void configure(xmlParserCtxtPtr context, int options) {
    const xmlSAXHandlerPtr sax = context->sax;
    xmlSAXVersion(sax, 2);
    sax->characters = onCharacters;
    sax->ignorableWhitespace = onCharacters;
    sax->startElementNs = onStartElement;
    sax->endElementNs = onEndElement;
    sax->entityDecl = onEntityDeclaration;
    sax->externalSubset = onExternalSubset;
    sax->resolveEntity = onResolveEntity;
    sax->getEntity = onGetEntity;
    sax->getParameterEntity = onGetParameterEntity;
    sax->serror = onError;
    xmlCtxtUseOptions(context, (options & XML_PARSE_NOENT) | XML_PARSE_NONET |
                                   XML_PARSE_IGNORE_ENC | XML_PARSE_COMPACT);
    context->keepBlanks = 1;
    // The first call passes over a byte order mark, the second keeps the parser from guessing.
    xmlSwitchEncoding(context, XML_CHAR_ENCODING_UTF8);
    context->encoding = xmlStrdup(toXML("UTF-8"));
}

}  // namespace

/// The text as a tree, up to its first defect.
struct XMLReader::Document {
    Document(const String& text, int options) {
        // Where several threads come first at once, one of them prepares libxml2.
        static const bool isReady = (xmlInitParser(), true);
        const std::size_t size = xml::findUnreadable(to_string_view(text));
        const bool fits = isReady && size > 0 && size <= INT_MAX;
        const ContextPtr context(
            fits ? xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(size)) : nullptr);
        if (context == nullptr) {
            return;
        }
        Budget budget{text.size() + (std::size_t{1} << 20U)};
        context->_private = &budget;
        configure(context.get(), options);
        xmlParseDocument(context.get());
        isWellFormed = context->wellFormed != 0 && size == text.size();
        tree.reset(std::exchange(context->myDoc, nullptr));
        if (tree != nullptr && tree->children != nullptr) {
            reader.reset(xmlReaderWalker(tree.get()));
        }
    }

    bool isWellFormed = false;
    DocumentPtr tree;
    ReaderPtr reader;  ///< Walks the tree; null at the end.
};

XMLReader::XMLReader(std::unique_ptr<Document> parsed) : document(std::move(parsed)) {}
XMLReader::XMLReader(XMLReader&&) noexcept = default;
XMLReader& XMLReader::operator=(XMLReader&&) noexcept = default;
XMLReader::~XMLReader() = default;

XMLReader XMLReader::readerForText(const String& text, int options) {
    return XMLReader(std::make_unique<Document>(text, options));
}

bool XMLReader::step() {
    const xmlTextReaderPtr reader = document->reader.get();
    isOnNode = reader != nullptr && xmlTextReaderRead(reader) == 1;
    const bool reachesDefect = isOnNode && xmlTextReaderNodeType(reader) == EndTag &&
                               isOpen(xmlTextReaderCurrentNode(reader));
    if (!isOnNode || reachesDefect) {
        isOnNode = false;
        document->reader.reset();
        failed = !document->isWellFormed;
    }
    return isOnNode;
}

bool XMLReader::read(bool skipContent) {
    const bool skips = skipContent && nodeType() == StartTag && !isEmptyElement();
    const xmlNode* const element =
        skips ? xmlTextReaderCurrentNode(document->reader.get()) : nullptr;
    while (step()) {
        const xmlNode* const node = xmlTextReaderCurrentNode(document->reader.get());
        if (!isPlaceholder(node) && (element == nullptr || node == element)) {
            return true;
        }
    }
    return false;
}

int XMLReader::nodeType() const {
    return isOnNode ? xmlTextReaderNodeType(document->reader.get()) : NoNode;
}

String XMLReader::name() const {
    return isOnNode ? fromXML(xmlTextReaderConstName(document->reader.get())) : String();
}

String XMLReader::value() const {
    return isOnNode ? fromXML(xmlTextReaderConstValue(document->reader.get())) : String();
}

bool XMLReader::isEmptyElement() const {
    return isOnNode && xmlTextReaderIsEmptyElement(document->reader.get()) == 1 &&
           !isOpen(xmlTextReaderCurrentNode(document->reader.get()));
}

bool XMLReader::hasAttribute(const String& attribute) const {
    return nodeType() == StartTag &&
           TextPtr(xmlTextReaderGetAttribute(document->reader.get(), toXML(attribute.c_str()))) !=
               nullptr;
}

String XMLReader::getAttribute(const String& attribute) const {
    if (nodeType() != StartTag) {
        return {};
    }
    const TextPtr value(
        xmlTextReaderGetAttribute(document->reader.get(), toXML(attribute.c_str())));
    return fromXML(value.get());
}

}  // namespace fn
