// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The document machine: what each tag and each text does to the open paragraph and the open sync
// block. It keeps one of each and flushes them as the tags arrive, since nothing closes them in
// most files. How the HTML parser drives it stands in smi-document.cpp.

#include "subtitles/smi-loader.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include <gst/gst.h>

#include "foundation/utf8.h"

#include "subtitles/attributed-text-writer.h"
#include "subtitles/stream-times.h"

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

bool isLineEnd(char byte) {
    return byte == '\n' || byte == '\r';
}

bool contains(fn::StringView text, char byte) {
    return !text.empty() && std::memchr(text.data(), byte, text.size()) != nullptr;
}

/// Whether the text is empty or begins as white space, a no-break space or "&nbsp;" may: most texts
/// do not, and need no closer look.
bool beginsLikeABlank(const fn::String& text) {
    const auto first = static_cast<unsigned char>(*text.c_str());
    // Behind ASCII, white space is U+0085, U+00A0, U+1680 and some from U+2000 to U+3000.
    return first <= ' ' || first == '&' || first == 0xC2 || (first >= 0xE1 && first <= 0xE3);
}

/// Whether a text shows nothing. A block with no more than that is an end mark: its time ends the
/// subtitle before it.
bool isBlank(const fn::String& whole) {
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
    // A document has a few spellings of a few classes, and thousands of paragraphs. One in which
    // each paragraph has its own gains nothing from that.
    const fn::String spelling = toString(name);
    const auto known = spellings.find(spelling);
    if (known != spellings.end()) {
        return *known->second;
    }
    const fn::String& inLowerCase = *classes.insert(spelling.toLowerCase()).first;
    constexpr std::size_t mostSpellings = 1000;
    if (spellings.size() < mostSpellings) {
        spellings.emplace(spelling, &inLowerCase);
    }
    return inLowerCase;
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
    // Most texts have line ends behind them and none inside.
    while (!text.empty() && isLineEnd(text.back())) {
        text.remove_suffix(1);
    }
    // Three searches by the C library are faster than one for any of the three.
    if (!contains(text, '\n') && !contains(text, '\r') && !contains(text, '\t')) {
        run.text += text;
        return;
    }
    for (const char byte : text) {
        if (!isLineEnd(byte)) {
            run.text += byte == '\t' ? ' ' : byte;
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
    constexpr std::size_t mostRecords = 64;
    if (runs.size() < mostRecords) {
        runs.push_back(std::move(run));
        run = AttributedText::Run();
        return;
    }
    furtherRuns.append(run);
    run.text.clear();
    if (run.attributes.attributeMask != 0) {
        run.attributes = TextAttributes();
    }
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
    if (runs.empty() && run.attributes.attributeMask == 0) {
        finishPlainSync();
    } else {
        finishParagraph();
        appendRuns();
        runs.clear();
    }
    syncStart = -1;
    // `inParagraph` stays: in a document without end tags the next block's text follows at once.
}

void SMILoader::appendRuns() {
    if (furtherRuns.count() > 0) {
        appendCue(furtherRuns.take(runs, blocks));
    } else if (runs.size() == 1 && isBlank(runs.front().text)) {
        // Two runs are never looked at, even if both are blank.
        appendCue(BufferBlocks::Bytes());
    } else if (!runs.empty()) {
        appendCue(attributedTextToBytes(runs, blocks));
    }
}

/// The short way for a block without mark-up, as nearly all are: its text need not become a run of
/// the block first, and what holds it is kept for the next one.
void SMILoader::finishPlainSync() {
    if (!run.text.empty()) {
        appendCue(isBlank(run.text) ? BufferBlocks::Bytes() : plainTextToBytes(run.text, blocks));
        run.text.clear();
    }
    finishParagraph();
}

void SMILoader::appendCue(BufferBlocks::Bytes bytes) {
    cues.push_back({static_cast<std::uint64_t>(syncStart), std::move(bytes)});
    if (htmlParser == nullptr) {
        makeBuffers();
    }
}

void SMILoader::makeBuffers() {
    for (Cue& cue : cues) {
        buffers.push_back(BufferBlocks::toBuffer(std::move(cue.bytes)));
        buffers.back()->pts = cue.start;
    }
    cues.clear();
}

fn::AutoPtr<SubtitleData> SMILoader::makeStream() {
    const auto isEarlier = [](const Cue& a, const Cue& b) { return a.start < b.start; };
    if (!std::is_sorted(cues.begin(), cues.end(), isEarlier)) {
        std::stable_sort(cues.begin(), cues.end(), isEarlier);
    }
    fn::AutoPtr<SubtitleData> data(new SubtitleData(
        "application/x-attributed-text", fn::AutoPtr<_GstBuffer>(), SubtitleData::NANOSECONDS));
    Buffers& stream = data->buffers;
    for (auto cue = cues.begin(); cue != cues.end(); ++cue) {
        const auto next = std::next(cue);
        const GstClockTime duration =
            next == cues.end() ? lastDuration
                               : durationUntil(next->start, cue->start, GST_CLOCK_TIME_NONE, true);
        if (cue->bytes.data() != nullptr && duration != GST_CLOCK_TIME_NONE) {
            stream.push_back(BufferBlocks::toBuffer(std::move(cue->bytes)));
            stream.back()->pts = cue->start;
            stream.back()->duration = duration;
        }
    }
    cues.clear();
    return data;
}

}  // namespace subtitles
