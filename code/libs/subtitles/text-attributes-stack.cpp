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
    const std::size_t firstValue = _values.size();
    forEachNumbered([&](std::uint32_t number, auto field) {
        if ((attributes.attributeMask & bitOf(number)) != 0) {
            _values.push_back({_entries.size(), _newest[number], pack(attributes.*field, _texts),
                               number, attributes.letterSpacing});
            _newest[number] = _values.size() - 1;
        }
    });
    _entries.push_back({attributes.attributeMask, firstValue});
    _stale |= attributes.attributeMask;
}

void TextAttributesStack::popAttributes() {
    if (!_entries.empty()) {
        removeNewestEntry();
    }
}

void TextAttributesStack::removeAttributes(int mask) {
    for (std::uint32_t attribute = 0; attribute < attributeCount; ++attribute) {
        if ((static_cast<std::uint32_t>(mask) & bitOf(attribute)) != 0) {
            removeAttribute(attribute);
        }
    }
    while (!_entries.empty() && _entries.back().mask == 0) {
        removeNewestEntry();
    }
}

TextAttributes TextAttributesStack::cummulativeAttributes() const {
    static const TextAttributes defaults;
    forEachNumbered([&](std::uint32_t number, auto field) {
        // LETTER_SPACING counts only where GRAVITY brings it along.
        if ((_stale & bitOf(number)) == 0 || bitOf(number) == TextAttributes::LETTER_SPACING) {
            return;
        }
        const bool withSpacing = bitOf(number) == TextAttributes::GRAVITY;
        const std::uint32_t bits =
            bitOf(number) | (withSpacing ? std::uint32_t{TextAttributes::LETTER_SPACING} : 0);
        if (_newest[number] == none) {
            _cumulative.*field = defaults.*field;
            _cumulative.attributeMask &= ~bits;
        } else {
            unpack(_values[_newest[number]].content, _texts, &(_cumulative.*field));
            _cumulative.attributeMask |= bits;
        }
        if (withSpacing) {
            _cumulative.letterSpacing =
                _newest[number] == none ? 0 : _values[_newest[number]].letterSpacing;
        }
    });
    _stale = 0;
    return _cumulative;
}

void TextAttributesStack::removeNewestEntry() {
    const std::size_t firstValue = _entries.back().firstValue;
    for (; _values.size() > firstValue; _values.pop_back()) {
        const Value& value = _values.back();
        // One that was removed is in no chain any more.
        if (_newest[value.attribute] == _values.size() - 1) {
            _newest[value.attribute] = value.older;
            _stale |= bitOf(value.attribute);
        }
        if ((textBits & bitOf(value.attribute)) != 0) {
            _texts.pop_back();
        }
    }
    _entries.pop_back();
}

void TextAttributesStack::removeAttribute(std::uint32_t attribute) {
    for (std::size_t i = _newest[attribute]; i != none; i = _values[i].older) {
        _entries[_values[i].entry].mask &= ~bitOf(attribute);
    }
    if (_newest[attribute] != none) {
        _newest[attribute] = none;
        _stale |= bitOf(attribute);
    }
}

}  // namespace subtitles
