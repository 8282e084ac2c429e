// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Nested attributes without walking the nest.
//
// The values of all entries lie in one vector, entry after entry, and those of one attribute are
// linked from the newest to the oldest; the newest of each attribute are the answer to every query.
// Removing an attribute walks its links and cuts them off, so that each value is walked at most
// once in its life. The values themselves go with their entry.

#include "subtitles/text-attributes-stack.h"

#include "subtitles/text-attributes-fields.h"

namespace subtitles {
namespace {

using Texts = std::vector<fn::String>;

constexpr std::uint32_t textBits =
    TextAttributes::FONT_DESCRIPTION | TextAttributes::FONT_FAMILY | TextAttributes::LANGUAGE;

constexpr std::uint32_t bitOf(std::uint32_t attribute) {
    return 1U << attribute;
}

// `forEachAttribute` with the number of the bit: `visit(number, field)`.
template <class Visit>
void forEachNumbered(Visit&& visit) {
    std::uint32_t number = 0;
    forEachAttribute([&](TextAttributes::Attribute /*bit*/, const char* /*name*/, auto field) {
        visit(number, field);
        ++number;
    });
}

std::int64_t pack(const fn::String& text, Texts& texts) {
    texts.push_back(text);
    return static_cast<std::int64_t>(texts.size()) - 1;
}
std::int64_t pack(const Color& color, Texts& /*texts*/) {
    return (color.red << 16) | (color.green << 8) | color.blue;
}
std::int64_t pack(std::int32_t number, Texts& /*texts*/) {
    return number;
}

void unpack(std::int64_t content, const Texts& texts, fn::String* text) {
    *text = texts[static_cast<std::size_t>(content)];
}
void unpack(std::int64_t content, const Texts& /*texts*/, Color* color) {
    *color = {static_cast<std::uint8_t>(content >> 16), static_cast<std::uint8_t>(content >> 8),
              static_cast<std::uint8_t>(content)};
}
template <class Number>
void unpack(std::int64_t content, const Texts& /*texts*/, Number* number) {
    *number = static_cast<Number>(content);
}

}  // namespace

void TextAttributesStack::pushAttributes(const TextAttributes& attributes) {
    const std::size_t firstValue = values.size();
    forEachNumbered([&](std::uint32_t number, auto field) {
        if ((attributes.attributeMask & bitOf(number)) != 0) {
            values.push_back({entries.size(), newest[number], pack(attributes.*field, texts),
                              number, attributes.letterSpacing});
            newest[number] = values.size() - 1;
        }
    });
    entries.push_back({attributes.attributeMask, firstValue});
    stale |= attributes.attributeMask;
}

void TextAttributesStack::popAttributes() {
    if (!entries.empty()) {
        removeNewestEntry();
    }
}

void TextAttributesStack::removeAttributes(int mask) {
    for (std::uint32_t attribute = 0; attribute < _attributeCount; ++attribute) {
        if ((static_cast<std::uint32_t>(mask) & bitOf(attribute)) != 0) {
            removeAttribute(attribute);
        }
    }
    while (!entries.empty() && entries.back().mask == 0) {
        removeNewestEntry();
    }
}

const TextAttributes& TextAttributesStack::cummulativeAttributes() const {
    static const TextAttributes defaults;
    forEachNumbered([&](std::uint32_t number, auto field) {
        // LETTER_SPACING counts only where GRAVITY brings it along.
        if ((stale & bitOf(number)) == 0 || bitOf(number) == TextAttributes::LETTER_SPACING) {
            return;
        }
        const bool withSpacing = bitOf(number) == TextAttributes::GRAVITY;
        const std::uint32_t bits =
            bitOf(number) | (withSpacing ? std::uint32_t{TextAttributes::LETTER_SPACING} : 0);
        if (newest[number] == _none) {
            cumulative.*field = defaults.*field;
            cumulative.attributeMask &= ~bits;
        } else {
            unpack(values[newest[number]].content, texts, &(cumulative.*field));
            cumulative.attributeMask |= bits;
        }
        if (withSpacing) {
            cumulative.letterSpacing =
                newest[number] == _none ? 0 : values[newest[number]].letterSpacing;
        }
    });
    stale = 0;
    return cumulative;
}

void TextAttributesStack::clear() {
    while (!entries.empty()) {
        removeNewestEntry();
    }
}

void TextAttributesStack::removeNewestEntry() {
    const std::size_t firstValue = entries.back().firstValue;
    for (; values.size() > firstValue; values.pop_back()) {
        const Value& value = values.back();
        // One that was removed is in no chain any more.
        if (newest[value.attribute] == values.size() - 1) {
            newest[value.attribute] = value.older;
            stale |= bitOf(value.attribute);
        }
        if ((textBits & bitOf(value.attribute)) != 0) {
            texts.pop_back();
        }
    }
    entries.pop_back();
}

void TextAttributesStack::removeAttribute(std::uint32_t attribute) {
    for (std::size_t i = newest[attribute]; i != _none; i = values[i].older) {
        entries[values[i].entry].mask &= ~bitOf(attribute);
    }
    if (newest[attribute] != _none) {
        newest[attribute] = _none;
        stale |= bitOf(attribute);
    }
}

}  // namespace subtitles
