// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What SRT's tags do to the text under construction.

#include "subtitles/subtitle-parser-actions.h"

#include <cstdint>
#include <utility>

#include "subtitles/color.h"
#include "subtitles/text-attributes.h"

namespace subtitles::srt {

namespace {

TextAttributes makeBold() {
    TextAttributes attributes;
    attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    attributes.attributeMask = TextAttributes::FONT_WEIGHT;
    return attributes;
}

TextAttributes makeItalic() {
    TextAttributes attributes;
    attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    attributes.attributeMask = TextAttributes::FONT_STYLE;
    return attributes;
}

TextAttributes makeUnderlined() {
    TextAttributes attributes;
    attributes.underline = TextAttributes::UNDERLINE_SINGLE;
    attributes.attributeMask = TextAttributes::UNDERLINE;
    return attributes;
}

// A film has thousands of these tags, and a record is made of twenty fields.
const TextAttributes& bold() {
    static const TextAttributes attributes = makeBold();
    return attributes;
}

const TextAttributes& italic() {
    static const TextAttributes attributes = makeItalic();
    return attributes;
}

const TextAttributes& underlined() {
    static const TextAttributes attributes = makeUnderlined();
    return attributes;
}

/// A text that is no colour gives black.
TextAttributes colored(const fn::String& value) {
    TextAttributes attributes;
    attributes.foregroundColor.parse(value);
    attributes.attributeMask = TextAttributes::FOREGROUND_COLOR;
    return attributes;
}

}  // namespace

void State::runDone() {
    if (!text.empty()) {
        run.attributes = open.cummulativeAttributes();
        run.text = std::move(text);
        result.push_back(std::move(run));
    }
    text.clear();
}

void Markup::perform(Action action, const char* at) {
    switch (action) {
        case Action::AppendByte: state.text += *at; break;
        case Action::OpenBold: open(bold()); break;
        case Action::CloseBold: close(TextAttributes::FONT_WEIGHT); break;
        case Action::OpenItalic: open(italic()); break;
        case Action::CloseItalic: close(TextAttributes::FONT_STYLE); break;
        case Action::OpenUnderline: open(underlined()); break;
        case Action::CloseUnderline: close(TextAttributes::UNDERLINE); break;
        case Action::BeginColor: colorBegin = at; break;
        case Action::EndColor: colorEnd = at; break;
        case Action::OpenColor: openColor(); break;
        case Action::CloseColor: close(TextAttributes::FOREGROUND_COLOR); break;
    }
}

void Markup::clear() {
    state.text.clear();
    state.open.clear();
    state.result.clear();
    colorBegin = nullptr;
    colorEnd = nullptr;
    openMask = 0;
}

void Markup::open(const TextAttributes& attributes) {
    state.runDone();
    // One closing tag ends all of its kind, so that a second "<i>" in italic text changes nothing.
    // A text may open it a million times. A second colour is another one.
    const bool isAsBefore = attributes.attributeMask != TextAttributes::FOREGROUND_COLOR &&
                            (openMask & attributes.attributeMask) != 0;
    if (!isAsBefore) {
        state.open.pushAttributes(attributes);
        openMask |= attributes.attributeMask;
    }
}

void Markup::close(TextAttributes::Attribute attribute) {
    state.runDone();
    state.open.removeAttributes(static_cast<int>(attribute));
    openMask &= ~static_cast<std::uint32_t>(attribute);
}

void Markup::openColor() {
    // On `<font color="r><font color=">y` the second tag begins a value behind the quote at which
    // the first one's value ends, and that end is the last one seen: the value is empty.
    const bool isValue = colorBegin < colorEnd;
    open(colored(isValue ? fn::String(colorBegin, colorEnd) : fn::String()));
}

}  // namespace subtitles::srt
