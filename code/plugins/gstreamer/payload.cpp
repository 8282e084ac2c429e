// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/payload.h"

#include <cstddef>

#include <glib.h>

#include "plugins/gstreamer/valid-text.h"

namespace subtitles::element {

namespace {

fn::String escaped(const fn::String& text) {
    return fn::String(OwnedText(g_markup_escape_text(validText(text).c_str(), -1)).get());
}

fn::String hexColor(const Color& color) {
    return "#" + fn::String::numberHex(color.red, 2, '0') +
           fn::String::numberHex(color.green, 2, '0') + fn::String::numberHex(color.blue, 2, '0');
}

constexpr const char* sizeWords[] = {"xx-small", "x-small", "small",   "medium",
                                     "large",    "x-large", "xx-large"};
constexpr const char* styleWords[] = {"normal", "oblique", "italic"};
constexpr const char* underlineWords[] = {"none", "single", "double", "low", "error"};

/// The word at an index that came over the wire; the first one where there is none.
template <std::size_t size>
const char* wordAt(const char* const (&words)[size], int index) {
    return words[index >= 0 && index < static_cast<int>(size) ? index : 0];
}

/// The attributes of one span.
class SpanAttributes {
public:
    explicit SpanAttributes(const TextAttributes& attributes) : from(attributes) {
        addFont();
        addDecoration();
    }

    const fn::String& text() const { return written; }

private:
    bool has(TextAttributes::Attribute attribute) const {
        return (from.attributeMask & attribute) != 0;
    }

    void add(const char* name, const fn::String& value) {
        written.append(" ").append(name).append("=\"").append(escaped(value)).append("\"");
    }

    void addFont() {
        if (has(TextAttributes::FONT_DESCRIPTION)) {
            add("font_desc", from.fontDescription);
        }
        if (has(TextAttributes::FONT_FAMILY)) {
            add("face", from.fontFamily);
        }
        // One size at most: a span that names an attribute twice is no markup.
        if (has(TextAttributes::FONT_SIZE_ABSOLUTE) && from.fontSizeAbsolute > 0) {
            add("size", fn::String::number(from.fontSizeAbsolute, 0, ' '));
        } else if (has(TextAttributes::FONT_SIZE_RELATIVE)) {
            add("size", wordAt(sizeWords, from.fontSizeRelative + 3));
        }
        if (has(TextAttributes::FONT_STYLE)) {
            add("style", wordAt(styleWords, from.fontStyle));
        }
        if (has(TextAttributes::FONT_WEIGHT)) {
            const int weight = TextAttributes::fontWeightFromInt(from.fontWeight);
            add("weight", fn::String::number(weight, 0, ' '));
        }
    }

    void addDecoration() {
        if (has(TextAttributes::FOREGROUND_COLOR)) {
            add("foreground", hexColor(from.foregroundColor));
        }
        if (has(TextAttributes::BACKGROUND_COLOR)) {
            add("background", hexColor(from.backgroundColor));
        }
        if (has(TextAttributes::UNDERLINE)) {
            add("underline", wordAt(underlineWords, from.underline));
        }
        if (has(TextAttributes::STRIKE_THROUGH)) {
            add("strikethrough", from.strikeThrough ? "true" : "false");
        }
    }

    const TextAttributes& from;
    fn::String written;
};

}  // namespace

fn::String toPangoMarkup(const AttributedText& text) {
    fn::String markup;
    for (const AttributedText::Run& run : text) {
        const SpanAttributes attributes(run.attributes);
        if (attributes.text().empty()) {
            markup += escaped(run.text);
        } else {
            markup += "<span" + attributes.text() + ">" + escaped(run.text) + "</span>";
        }
    }
    return markup;
}

fn::String toPlainText(const AttributedText& text) {
    fn::String plain;
    for (const AttributedText::Run& run : text) {
        plain += run.text;
    }
    return validText(plain);
}

}  // namespace subtitles::element
