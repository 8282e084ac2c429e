// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What can be done with one record of attributes: values from words, laying one record over
// another, and a text for logs.

#include "subtitles/text-attributes.h"

#include <cstdint>

#include "subtitles/attribute-words.h"
#include "subtitles/text-attributes-fields.h"

namespace subtitles {
namespace {

template <class Words>
std::int32_t lookUp(const Words& words, const fn::String& word) {
    return valueOfWord(words, fn::to_string_view(word.toLowerCase()));
}

fn::String valueText(const fn::String& value) {
    return value;
}
fn::String valueText(const Color& value) {
    return value.toString();
}
fn::String valueText(std::int32_t value) {
    return fn::String::number(value);
}

}  // namespace

TextAttributes::FontWeight TextAttributes::fontWeightFromInt(int weight) {
    // clang-format off
    if (weight >= 950) { return FONT_WEIGHT_ULTRAHEAVY; }
    if (weight >= 850) { return FONT_WEIGHT_HEAVY; }
    if (weight >= 750) { return FONT_WEIGHT_ULTRABOLD; }
    if (weight >= 650) { return FONT_WEIGHT_BOLD; }
    if (weight >= 550) { return FONT_WEIGHT_SEMIBOLD; }
    if (weight >= 450) { return FONT_WEIGHT_MEDIUM; }
    if (weight >= 390) { return FONT_WEIGHT_NORMAL; }
    if (weight >= 340) { return FONT_WEIGHT_BOOK; }
    if (weight >= 250) { return FONT_WEIGHT_LIGHT; }
    if (weight >= 150) { return FONT_WEIGHT_ULTRALIGHT; }
    return FONT_WEIGHT_THIN;
    // clang-format on
}

TextAttributes::FontWeight TextAttributes::fontWeightFromString(const fn::String& word) {
    // A number is read from the word as it was given, and 0 is no weight's value.
    const std::int32_t named = lookUp(fontWeightWords, word);
    return named != 0 ? static_cast<FontWeight>(named)
                      : fontWeightFromInt(word.toInt(FONT_WEIGHT_NORMAL));
}

std::int32_t TextAttributes::fontSizeFromString(const fn::String& word) {
    return lookUp(fontSizeWords, word);
}

TextAttributes::FontStyle TextAttributes::fontStyleFromString(const fn::String& word) {
    return static_cast<FontStyle>(lookUp(fontStyleWords, word));
}

TextAttributes::FontVariant TextAttributes::fontVariantFromString(const fn::String& word) {
    return static_cast<FontVariant>(lookUp(fontVariantWords, word));
}

TextAttributes::FontStretch TextAttributes::fontStretchFromString(const fn::String& word) {
    return static_cast<FontStretch>(lookUp(fontStretchWords, word));
}

TextAttributes::Gravity TextAttributes::gravityFromString(const fn::String& word) {
    return static_cast<Gravity>(lookUp(gravityWords, word));
}

TextAttributes::GravityHint TextAttributes::gravityHintFromString(const fn::String& word) {
    return static_cast<GravityHint>(lookUp(gravityHintWords, word));
}

TextAttributes::Underline TextAttributes::underlineFromString(const fn::String& word) {
    return static_cast<Underline>(lookUp(underlineWords, word));
}

void TextAttributes::applyTextAttributes(const TextAttributes& other) {
    std::uint32_t applied = other.attributeMask & allAttributes & ~std::uint32_t{LETTER_SPACING};
    // Players know letter spacing as a companion of gravity: it comes with it or not at all.
    if ((applied & GRAVITY) != 0) {
        applied |= LETTER_SPACING;
    }
    forEachAttribute([&](Attribute bit, const char* /*name*/, auto field) {
        if ((applied & bit) != 0) {
            this->*field = other.*field;
        }
    });
    attributeMask |= applied;
}

fn::String TextAttributes::toString() const {
    fn::String result;
    forEachAttribute([&](Attribute bit, const char* name, auto field) {
        if ((attributeMask & bit) == 0) {
            return;
        }
        // Logs have always shown the foreground here, and whoever reads them counts on it.
        const fn::String value =
            bit == BACKGROUND_COLOR ? valueText(foregroundColor) : valueText(this->*field);
        result.append(result.empty() ? "" : ", ").append(name).append(": ").append(value);
    });
    return result;
}

}  // namespace subtitles
