// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/xml-prescan.h"

#include <algorithm>

namespace fn::xml {

namespace {

/// Where the comment, CDATA section or instruction that begins at `start` ends, `start` itself
/// where there is none, and `npos` where it has no end or where its end has a defect.
std::size_t endOfSection(StringView text, std::size_t start) {
    const StringView here = text.substr(start);
    if (here.substr(0, 4) == "<!--") {
        // A comment ends at its first two hyphens, or it is none.
        const std::size_t end = text.find("--", start + 4);
        return end != StringView::npos && text.substr(end + 2, 1) == ">" ? end + 3
                                                                         : StringView::npos;
    }
    const bool isCData = here.substr(0, 9) == "<![CDATA[";
    const bool isInstruction = here.substr(0, 2) == "<?";
    if (!isCData && !isInstruction) {
        return start;
    }
    const StringView ending = isCData ? "]]>" : "?>";
    const std::size_t end = text.find(ending, start);
    return end == StringView::npos ? end : end + ending.size();
}

/// The attributes of a tag as far as it was read. They are counted by their equals signs, and in
/// the declaration of an entity, which can hide them, by its references.
class AttributeCounter {
public:
    void startTag(bool declaresEntity) {
        *this = AttributeCounter();
        isInTag = true;
        isDeclaringEntity = declaresEntity;
    }
    void endTag() { isInTag = false; }

    void readByte(char byte) {
        if (!isInTag) {
            return;
        }
        if (openQuote != 0) {
            attributeTotal += isDeclaringEntity && byte == '&' ? 1 : 0;
            openQuote = byte == openQuote ? '\0' : openQuote;
            return;
        }
        attributeTotal += byte == '=' ? 1 : 0;
        openQuote = byte == '\'' || byte == '"' ? byte : '\0';
        isInTag = byte != '>';
    }

    int count() const { return isInTag ? attributeTotal : 0; }

private:
    bool isInTag = false;
    bool isDeclaringEntity = false;
    char openQuote = 0;
    int attributeTotal = 0;
};

}  // namespace

std::size_t findUnreadable(StringView text) {
    constexpr int maximumAttributes = 250;
    const std::size_t size = std::min(text.find('\0'), text.size());
    text = text.substr(0, size);
    AttributeCounter attributes;
    std::size_t tag = 0;
    for (std::size_t i = 0; i < size; ++i) {
        if (text[i] != '<') {
            attributes.readByte(text[i]);
            if (attributes.count() > maximumAttributes) {
                return tag;
            }
            continue;
        }
        const std::size_t end = endOfSection(text, i);
        if (end == StringView::npos) {
            return i;
        }
        if (end != i) {
            attributes.endTag();
            i = end - 1;
        } else {
            tag = i;
            attributes.startTag(text.substr(i, 3) == "<!E");
        }
    }
    return size;
}

}  // namespace fn::xml
