// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <memory>

#include "foundation/export.h"
#include "foundation/string.h"

namespace fn {

/// Walks the nodes of an XML text, one after the other:
///
///     XMLReader reader = XMLReader::readerForText(text, XMLReader::SubstituteEntities);
///     while (reader.read(false)) ...
///
/// A text that is not well-formed is read up to its defect. Nothing is opened and nothing fetched,
/// whatever the text declares: an external entity reads as nothing, an external subset is passed
/// over. Nothing is printed.
///
/// Limits, beyond which a text counts as not well-formed: elements nested 256 deep, ten million
/// bytes of text in one piece, 250 attributes in one tag, and entities that add more than
/// libxml2 allows them, which is some ten times the text, or more than the text's own size and a
/// megabyte.
class FOUNDATION_EXPORT XMLReader {
public:
    /// References to the entities that a text declares are replaced by what they stand for.
    static constexpr int SubstituteEntities = 2;

    /// The node types that matter for mark-up, by libxml2's numbers.
    enum NodeType {
        NoNode = 0,  ///< Before the first node and behind the last one.
        StartTag = 1,
        Text = 3,
        CData = 4,
        WhiteSpace = 14,  ///< A text of white space alone.
        EndTag = 15,
    };

    /// True once the text has proved not to be well-formed, which is when `read` reaches the
    /// defect: the nodes before it are delivered.
    bool failed = false;

    /// A reader over the text, which is UTF-8 whatever it says about itself. The text must outlive
    /// the reader. Of the options, which are libxml2's bits, `SubstituteEntities` alone is heeded.
    static XMLReader readerForText(const String& text, int options);

    XMLReader(XMLReader&&) noexcept;
    XMLReader& operator=(XMLReader&&) noexcept;
    ~XMLReader();

    /// Moves to the next node, with `skipContent` from a start tag to its end tag. False at the end
    /// and after a failure.
    bool read(bool skipContent);

    /// A `NodeType`, or another of libxml2's numbers.
    int nodeType() const;
    /// The name as it is written, prefix included.
    String name() const;
    /// What a text holds, references expanded; empty for tags.
    String value() const;
    /// True for "<b/>", which has no end tag, and false for "<b></b>".
    bool isEmptyElement() const;
    bool hasAttribute(const String& attribute) const;
    /// The attribute's value, references expanded; empty where the tag does not have it.
    String getAttribute(const String& attribute) const;

private:
    struct Document;

    FOUNDATION_INTERNAL explicit XMLReader(std::unique_ptr<Document> parsed);
    FOUNDATION_INTERNAL bool step();

    std::unique_ptr<Document> document;
    bool isOnNode = false;
};

}  // namespace fn
