// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Pango markup is XML without a root. Each tag puts a record on a stack, and each run carries what
// the stack adds up to when the run begins.

#include "subtitles/pango-markup.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/xml-reader.h"

#include "subtitles/subtitle-parser.h"
#include "subtitles/text-attributes-stack.h"

namespace subtitles {

namespace {

constexpr const char* validTags[] = {"span", "b",   "big",   "i",  "s",
                                     "sub",  "sup", "small", "tt", "u"};

/// "smaller" counts up and "larger" down: a step that two `big` tags give is -2.
void parseFontSize(TextAttributes& attributes, const TextAttributes& base, const fn::String& size) {
    const int number = size.toInt(0, 10, nullptr);
    if (number != 0) {
        attributes.fontSizeAbsolute = number;
        attributes.attributeMask |= TextAttributes::FONT_SIZE_ABSOLUTE;
        return;
    }
    const fn::String word = size.toLowerCase();
    const bool hasStep = (base.attributeMask & TextAttributes::FONT_SIZE_RELATIVE) != 0;
    const int step = hasStep ? base.fontSizeRelative : 0;
    if ((word == "smaller" && step > 2) || (word == "larger" && step < -2)) {
        return;
    }
    if (word == "smaller") {
        attributes.fontSizeRelative = step + 1;
    } else if (word == "larger") {
        attributes.fontSizeRelative = step - 1;
    } else {
        attributes.fontSizeRelative = TextAttributes::fontSizeFromString(word);
    }
    attributes.attributeMask |= TextAttributes::FONT_SIZE_RELATIVE;
}

/// The colour in a markup attribute goes into `field`; what is no colour changes nothing.
void parseColor(TextAttributes& attributes, fn::XMLReader& reader, const fn::String& name,
                TextAttributes::Attribute attribute) {
    Color color;
    if (!reader.hasAttribute(name) || !color.parse(reader.getAttribute(name))) {
        return;
    }
    switch (attribute) {
        case TextAttributes::FOREGROUND_COLOR: attributes.foregroundColor = color; break;
        case TextAttributes::BACKGROUND_COLOR: attributes.backgroundColor = color; break;
        case TextAttributes::UNDERLINE_COLOR: attributes.underlineColor = color; break;
        case TextAttributes::STRIKE_THROUGH_COLOR: attributes.strikeThroughColor = color; break;
        default: return;
    }
    attributes.attributeMask |= attribute;
}

/// What one attribute of a span does with its value.
using Setter = void (*)(TextAttributes& attributes, const TextAttributes& base,
                        const fn::String& value);

/// One name that a span may have: either a bit with its setter, or a colour.
struct SpanAttribute {
    const char* name;
    TextAttributes::Attribute attribute;
    Setter set;  ///< Null for a colour.
};

// clang-format off
constexpr Setter setDescription = [](auto& a, const auto&, const auto& v) { a.fontDescription = v; };
constexpr Setter setFamily      = [](auto& a, const auto&, const auto& v) { a.fontFamily = v; };
constexpr Setter setStyle       = [](auto& a, const auto&, const auto& v) { a.fontStyle = TextAttributes::fontStyleFromString(v); };
constexpr Setter setWeight      = [](auto& a, const auto&, const auto& v) { a.fontWeight = TextAttributes::fontWeightFromString(v); };
constexpr Setter setVariant     = [](auto& a, const auto&, const auto& v) { a.fontVariant = TextAttributes::fontVariantFromString(v); };
constexpr Setter setStretch     = [](auto& a, const auto&, const auto& v) { a.fontStretch = TextAttributes::fontStretchFromString(v); };
constexpr Setter setUnderline   = [](auto& a, const auto&, const auto& v) { a.underline = TextAttributes::underlineFromString(v); };
constexpr Setter setRise        = [](auto& a, const auto&, const auto& v) { a.rise = v.toInt(0, 10, nullptr); };
constexpr Setter setFallback    = [](auto& a, const auto&, const auto& v) { a.fallback = v.toBool(); };
constexpr Setter setLanguage    = [](auto& a, const auto&, const auto& v) { a.language = v; };
constexpr Setter setSpacing     = [](auto& a, const auto&, const auto& v) { a.letterSpacing = v.toInt(0, 10, nullptr); };
constexpr Setter setGravity     = [](auto& a, const auto&, const auto& v) { a.gravity = TextAttributes::gravityFromString(v); };
constexpr Setter setGravityHint = [](auto& a, const auto&, const auto& v) { a.gravityHint = TextAttributes::gravityHintFromString(v); };

/// In the order in which they are read: of two synonyms on one tag, the later row wins.
constexpr SpanAttribute spanAttributes[] = {
    {"font",            TextAttributes::FONT_DESCRIPTION,     setDescription},
    {"font_desc",       TextAttributes::FONT_DESCRIPTION,     setDescription},
    {"font_family",     TextAttributes::FONT_FAMILY,          setFamily},
    {"face",            TextAttributes::FONT_FAMILY,          setFamily},
    {"font_size",       TextAttributes::FONT_SIZE_ABSOLUTE,   parseFontSize},
    {"size",            TextAttributes::FONT_SIZE_ABSOLUTE,   parseFontSize},
    {"font_style",      TextAttributes::FONT_STYLE,           setStyle},
    {"style",           TextAttributes::FONT_STYLE,           setStyle},
    {"font_weight",     TextAttributes::FONT_WEIGHT,          setWeight},
    {"weight",          TextAttributes::FONT_WEIGHT,          setWeight},
    {"font_variant",    TextAttributes::FONT_VARIANT,         setVariant},
    {"variant",         TextAttributes::FONT_VARIANT,         setVariant},
    {"font_stretch",    TextAttributes::FONT_STRETCH,         setStretch},
    {"stretch",         TextAttributes::FONT_STRETCH,         setStretch},
    {"foreground",      TextAttributes::FOREGROUND_COLOR,     nullptr},
    {"fgcolor",         TextAttributes::FOREGROUND_COLOR,     nullptr},
    {"color",           TextAttributes::FOREGROUND_COLOR,     nullptr},
    {"background",      TextAttributes::BACKGROUND_COLOR,     nullptr},
    {"bgcolor",         TextAttributes::BACKGROUND_COLOR,     nullptr},
    {"underline",       TextAttributes::UNDERLINE,            setUnderline},
    {"underline_color", TextAttributes::UNDERLINE_COLOR,      nullptr},
    {"rise",            TextAttributes::RISE,                 setRise},
    {"strikethrough",   TextAttributes::STRIKE_THROUGH_COLOR, nullptr},
    {"fallback",        TextAttributes::FALLBACK,             setFallback},
    {"lang",            TextAttributes::LANGUAGE,             setLanguage},
    {"letter_spacing",  TextAttributes::LETTER_SPACING,       setSpacing},
    {"gravity",         TextAttributes::GRAVITY,              setGravity},
    {"gravity_hint",    TextAttributes::GRAVITY_HINT,         setGravityHint},
};
// clang-format on

/// "strikethrough" does not strike anything through: it sets the rise to 1 where the tag's "rise"
/// reads as true and to 0 where not, over a rise that stands there already. Only the tag "s"
/// strikes through.
void applyStrikeThrough(TextAttributes& attributes, fn::XMLReader& reader) {
    attributes.rise = reader.getAttribute("rise").toBool() ? 1 : 0;
    attributes.attributeMask |= TextAttributes::RISE;
}

void applySpanAttribute(TextAttributes& attributes, fn::XMLReader& reader,
                        const TextAttributes& base, const SpanAttribute& entry) {
    const fn::String name(entry.name);
    if (!reader.hasAttribute(name)) {
        return;
    }
    if (entry.attribute == TextAttributes::STRIKE_THROUGH_COLOR) {
        applyStrikeThrough(attributes, reader);
    }
    if (entry.set == nullptr) {
        parseColor(attributes, reader, name, entry.attribute);
        return;
    }
    entry.set(attributes, base, reader.getAttribute(name));
    // A size sets its bit itself, since it may be of either kind or none.
    if (entry.attribute != TextAttributes::FONT_SIZE_ABSOLUTE) {
        attributes.attributeMask |= entry.attribute;
    }
}

TextAttributes attributesForSpan(fn::XMLReader& reader, const TextAttributes& base) {
    TextAttributes attributes;
    for (const SpanAttribute& entry : spanAttributes) {
        applySpanAttribute(attributes, reader, base, entry);
    }
    return attributes;
}

void setRiseTag(TextAttributes& attributes, const TextAttributes& base, int rise) {
    parseFontSize(attributes, base, "smaller");
    attributes.rise = rise;
    attributes.attributeMask |= TextAttributes::RISE;
}

/// The record that the tag puts on the stack. The name is a valid one.
TextAttributes attributesForTag(const fn::String& name, fn::XMLReader& reader,
                                const TextAttributes& base) {
    TextAttributes attributes;
    if (name == "span") {
        attributes.applyTextAttributes(attributesForSpan(reader, base));
    } else if (name == "b") {
        attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
        attributes.attributeMask = TextAttributes::FONT_WEIGHT;
    } else if (name == "big") {
        parseFontSize(attributes, base, "larger");
    } else if (name == "i") {
        attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
        attributes.attributeMask = TextAttributes::FONT_STYLE;
    } else if (name == "s") {
        attributes.strikeThrough = true;
        attributes.attributeMask = TextAttributes::STRIKE_THROUGH;
    } else if (name == "sub") {
        setRiseTag(attributes, base, -5000);
    } else if (name == "sup") {
        setRiseTag(attributes, base, 5000);
    } else if (name == "small") {
        parseFontSize(attributes, base, "smaller");
    } else if (name == "tt") {
        attributes.fontFamily = "Monospace";
        attributes.attributeMask = TextAttributes::FONT_FAMILY;
    } else if (name == "u") {
        attributes.underline = TextAttributes::UNDERLINE_SINGLE;
        attributes.attributeMask = TextAttributes::UNDERLINE;
    }
    return attributes;
}

bool isValidTag(const fn::String& name) {
    return std::find(std::begin(validTags), std::end(validTags), name) != std::end(validTags);
}

/// The runs so far, the one that is open, and the open tags.
class Reading {
public:
    void start(fn::XMLReader& reader) {
        const fn::String name = reader.name();
        if (!isValidTag(name) || reader.isEmptyElement()) {
            return;
        }
        stack.pushAttributes(attributesForTag(name, reader, stack.cummulativeAttributes()));
        breakRun();
    }

    void end(const fn::String& name) {
        if (!isValidTag(name)) {
            return;
        }
        stack.popAttributes();
        breakRun();
    }

    void append(const fn::String& value) { run.text += value; }

    AttributedText finish() {
        flush();
        return std::move(runs);
    }

private:
    void flush() {
        if (!run.text.empty()) {
            runs.push_back(std::move(run));
        }
    }

    void breakRun() {
        flush();
        run = AttributedText::Run();
        run.attributes = stack.cummulativeAttributes();
    }

    AttributedText runs;
    AttributedText::Run run;
    TextAttributesStack stack;
};

}  // namespace

AttributedText pangoParkupToAttributedText(const fn::String& markup) {
    fn::String wrapped = "<root>" + markup + "</root>";
    wrapped.replaceAll("\r\n", "\n");
    fn::XMLReader reader = fn::XMLReader::readerForText(wrapped, fn::XMLReader::SubstituteEntities);
    Reading reading;
    while (reader.read(false)) {
        switch (reader.nodeType()) {
            case fn::XMLReader::StartTag: reading.start(reader); break;
            case fn::XMLReader::EndTag: reading.end(reader.name()); break;
            case fn::XMLReader::Text: reading.append(reader.value()); break;
            default: break;
        }
    }
    return reader.failed ? parseSRTFormatting(markup) : reading.finish();
}

}  // namespace subtitles
