// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The document machine: what each tag and each text does to the open paragraph and the open sync
// block. It keeps one of each and flushes them as the tags arrive, since nothing closes them in
// most files. How the HTML parser drives it stands in smi-document.cpp.

#include "subtitles/smi-loader.h"

#include <algorithm>
#include <utility>

#include <gst/gst.h>

#include "foundation/utf8.h"

#include "subtitles/attributed-text-writer.h"

namespace subtitles {

namespace {

using smi::Element;

/// The record that an inline tag pushes, and whose mask its end tag removes; empty for others.
TextAttributes attributesOf(Element element) {
    TextAttributes attributes;
    switch (element) {
        case Element::Bold:
            attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
            attributes.attributeMask = TextAttributes::FONT_WEIGHT;
            break;
        case Element::Italic:
            attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
            attributes.attributeMask = TextAttributes::FONT_STYLE;
            break;
        case Element::Underline:
            attributes.underline = TextAttributes::UNDERLINE_SINGLE;
            attributes.attributeMask = TextAttributes::UNDERLINE;
            break;
        case Element::StrikeThrough:
            attributes.strikeThrough = true;
            attributes.attributeMask = TextAttributes::STRIKE_THROUGH;
            break;
        default: break;
    }
    return attributes;
}

fn::String toString(fn::StringView text) {
    return fn::String(text.data(), text.size());
}

/// A byte of a text that does not stand for itself.
bool isSpecial(char byte) {
    return byte == '\n' || byte == '\r' || byte == '\t';
}

/// Whether the text is empty or begins as white space, a no-break space or "&nbsp;" may: most texts
/// do not, and need no closer look.
bool beginsLikeABlank(const fn::String& text) {
    const auto first = static_cast<unsigned char>(*text.c_str());
    // Behind ASCII, white space is U+0085, U+00A0, U+1680 and some from U+2000 to U+3000.
    return first <= ' ' || first == '&' || first == 0xC2 || (first >= 0xE1 && first <= 0xE3);
}

bool isInline(Element element) {
    return element == Element::Bold || element == Element::Italic ||
           element == Element::Underline || element == Element::StrikeThrough;
}

}  // namespace

void SMILoader::startElement(const fn::String& name,
                             const std::map<fn::String, fn::String>& attributes) {
    const Element element = smi::elementOf(fn::to_string_view(name));
    const fn::StringView attribute = smi::attributeOf(element);
    const auto found =
        attribute.empty() ? attributes.end() : fn::find(attributes, toString(attribute));
    start(element, found != attributes.end() ? fn::to_string_view(found->second) : "");
}

/// A start tag, with the value of its element's one attribute; where the tag does not have that, an
/// empty value does the same.
void SMILoader::start(Element element, fn::StringView value) {
    if (element == Element::Style && parseStyleSheets) {
        inStyle = true;
    } else if (element == Element::Paragraph) {
        startParagraph(noteClass(value));
    } else if (element == Element::Sync) {
        startSync(value);
    }
    if (!inParagraph) {
        return;
    }
    if (isInline(element)) {
        finishRun();
        attributeStack.pushAttributes(attributesOf(element));
        run.attributes = attributeStack.cummulativeAttributes();
    } else if (element == Element::Break) {
        run.text += '\n';
    }
}

/// The paragraph's class, in lower case. It counts as used whether the paragraph's text does or
/// not, outside a sync block too.
const fn::String& SMILoader::noteClass(fn::StringView name) {
    static const fn::String none;
    if (name.empty()) {
        return none;
    }
    // A document has a few spellings of a few classes, and thousands of paragraphs.
    const auto known = spellings.find(name);
    if (known != spellings.end()) {
        return known->second;
    }
    const fn::String spelling = toString(name);
    classes.insert(spelling.toLowerCase());
    return spellings.emplace(spelling, spelling.toLowerCase()).first->second;
}

void SMILoader::startParagraph(const fn::String& className) {
    if (syncStart == -1) {
        inParagraph = false;
        return;
    }
    inParagraph = isWanted(className);
    // A second paragraph of the same block goes onto a line of its own.
    if (inParagraph && (!run.text.empty() || !runs.empty())) {
        run.text += '\n';
        finishParagraph();
    }
}

bool SMILoader::isWanted(const fn::String& className) const {
    if (languagesOnly && (!buffers.empty() || !cues.empty())) {
        return false;
    }
    return wantedClass.empty() || wantedClass == className;
}

void SMILoader::startSync(fn::StringView time) {
    finishSync();
    const int milliseconds = toString(time).toInt(-1, 10, nullptr);
    if (milliseconds >= 0) {
        syncStart = milliseconds * 1000000LL;
    }
}

void SMILoader::endElement(const fn::String& name) {
    end(fn::to_string_view(name));
}

void SMILoader::end(fn::StringView name) {
    // The only name whose case plays no part here.
    if (inStyle && toString(name).toLowerCase() == "style") {
        inStyle = false;
    }
    const Element element = smi::elementOf(name);
    if (element == Element::Sync) {
        finishSync();
    }
    if (!inParagraph) {
        return;
    }
    if (element == Element::Paragraph) {
        finishParagraph();
        inParagraph = false;
    } else if (isInline(element)) {
        // By attribute, not by tag: badly nested tags end what their kind has set. The open run
        // got its attributes when it began.
        attributeStack.removeAttributes(static_cast<int>(attributesOf(element).attributeMask));
        finishRun();
        run.attributes = attributeStack.cummulativeAttributes();
    }
}

void SMILoader::characters(const fn::String& text) {
    if (inStyle) {
        readStyle(text);
    }
    appendText(fn::to_string_view(text));
}

/// Line ends of the source mean nothing, not even a blank: only "br" and a new paragraph do.
void SMILoader::appendText(fn::StringView text) {
    if (!inParagraph) {
        return;
    }
    const char* position = text.data();
    const char* const end = position + text.size();
    while (position != end) {
        const char* const special = std::find_if(position, end, isSpecial);
        run.text.append(position, static_cast<std::size_t>(special - position));
        position = special;
        for (; position != end && isSpecial(*position); ++position) {
            if (*position == '\t') {
                run.text += ' ';
            }
        }
    }
}

void SMILoader::readStyle(fn::String text) {
    text.replaceAll("<!--", "");
    text.replaceAll("-->", "");
    text.replaceAll("Generated by KMPlayer", "");
    StyleSheet sheet;
    parseStyleSheetGuarded(sheet, text, styleEffort);
    parseStylesheet(sheet);
}

void SMILoader::finishRun() {
    // An empty run keeps its attributes: "<p><b></p><p>x" shows x in bold.
    if (run.text.empty()) {
        return;
    }
    runs.push_back(std::move(run));
    run = AttributedText::Run();
}

void SMILoader::finishParagraph() {
    finishRun();
    if (!attributeStack.empty()) {
        attributeStack = TextAttributesStack();
    }
}

void SMILoader::finishSync() {
    if (syncStart == -1) {
        return;
    }
    finishParagraph();
    if (isBlankSync()) {
        // An end mark: it shows nothing, but its time ends the subtitle before it.
        appendCue(BufferBlocks::Bytes());
    } else if (!runs.empty()) {
        appendCue(attributedTextToBytes(runs, blocks));
    }
    syncStart = -1;
    // `inParagraph` stays: in a document without end tags the next block's text follows at once.
    runs.clear();
}

void SMILoader::appendCue(BufferBlocks::Bytes bytes) {
    if (htmlParser != nullptr) {
        cues.push_back({syncStart, std::move(bytes)});
    } else {
        appendBuffer(syncStart, std::move(bytes));
    }
}

void SMILoader::appendBuffer(long long start, BufferBlocks::Bytes bytes) {
    buffers.push_back(BufferBlocks::toBuffer(std::move(bytes)));
    GST_BUFFER_PTS(buffers.back().get()) = static_cast<GstClockTime>(start);
}

void SMILoader::makeBuffers() {
    for (Cue& cue : cues) {
        appendBuffer(cue.start, std::move(cue.bytes));
    }
    cues.clear();
}

/// One run that is only blank. Two runs are never looked at, even if both are.
bool SMILoader::isBlankSync() const {
    if (runs.size() != 1) {
        return false;
    }
    const fn::String& whole = runs.front().text;
    if (whole == "\xC2\xA0") {
        return true;  // As nearly all end marks are.
    }
    if (!beginsLikeABlank(whole) && fn::utf8::isValid(fn::to_string_view(whole))) {
        return false;
    }
    // Trimmed first: blanks between two no-break spaces are text.
    fn::String text = whole.trim(true);
    text.replaceAll("\xC2\xA0", "");
    text.replaceAll("&nbsp;", "");
    text.replaceAll("&nbsp", "");
    return text.empty();
}

}  // namespace subtitles
