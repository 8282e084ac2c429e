// SPDX-License-Identifier: LGPL-2.1-or-later
//
// One SMI document, read: its timed buffers, and the language classes that it holds.

#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <list>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/auto-ptr.h"
#include "foundation/string-view.h"
#include "foundation/string.h"

#include "subtitles/attributed-text-writer.h"
#include "subtitles/attributed-text.h"
#include "subtitles/buffer-blocks.h"
#include "subtitles/gst-buffer-ptr.h"
#include "subtitles/smi-element.h"
#include "subtitles/style-sheet-parser.h"
#include "subtitles/style-sheet.h"
#include "subtitles/subtitle-data.h"
#include "subtitles/text-attributes-stack.h"

namespace subtitles {

/// Turns the tags and texts of one document into timed buffers. Built for one call of `parse`, by
/// one thread.
///
/// An SMI document is a row of sync blocks, each with a start time, that hold one paragraph for
/// each language; the class of the paragraph tells the language, and a style sheet in the
/// document's head names the classes. Element names come in any case and end tags are mostly left
/// out.
class SMILoader {
public:
    using Buffers = std::list<fn::AutoPtr<_GstBuffer>>;

    /// What a style sheet or a paragraph tells of one class. At most one of code and name is set.
    struct LanguageEntry {
        fn::String className;     ///< In lower case: the value for `wantedClass`.
        fn::String languageCode;  ///< A code of the language table, or empty.
        fn::String languageName;  ///< For a class whose language the table does not know.
    };

    /// Reads and parses the whole document, cut at the size that loaders read. Raises what reading
    /// and decoding raise; no content fails.
    void parse(const fn::String& path, const fn::String& encoding);

    /// The same for a text. Malformed UTF-8 in it becomes U+FFFD.
    void parseText(const fn::String& text);

    /// The buffers in the order of the document, without durations. A copy that shares them.
    Buffers getBuffers() const { return buffers; }

    /// Instead of `parse`: the stream, never null, as `SubtitleData::sanitize` leaves it. Half of a
    /// document's cues are end marks, which do not outlive that; here none becomes a buffer.
    fn::AutoPtr<SubtitleData> load(const fn::String& path, const fn::String& encoding);

    /// The same for a text.
    fn::AutoPtr<SubtitleData> loadText(const fn::String& text);

    /// One entry for each class that a paragraph has, in ascending byte order.
    std::list<LanguageEntry> getLanguages() const;

    void startElement(const fn::String& name, const std::map<fn::String, fn::String>& attributes);
    void endElement(const fn::String& name);
    void characters(const fn::String& text);

    void finishRun();
    void finishParagraph();
    void finishSync();

    void parseStylesheet(const StyleSheet& sheet);
    fn::String getStringValue(StyleSheet::Property property) const;

    bool parseStyleSheets = true;  ///< Whether style elements are read at all.
    bool inStyle = false;          ///< Inside a style element that is read.
    fn::String wantedClass;        ///< The class to load; empty means every paragraph.
    bool inParagraph = false;      ///< Text counts now.
    AttributedText runs;           ///< The finished runs of the open sync block, the first ones.
    AttributedText::Run run;
    TextAttributesStack attributeStack;  ///< The open inline tags of the paragraph.
    long long syncStart = -1;  ///< Start of the open block in nanoseconds; -1 when none is open.
    Buffers buffers;
    std::map<fn::String, LanguageEntry> languages;  ///< What style sheets define, by class.
    std::set<fn::String> classes;                   ///< What paragraphs use, in lower case.
    bool languagesOnly = false;  ///< No paragraph counts any more once there is a buffer.

    // What the HTML parser calls. Nothing is thrown through its frames.
    static void _startElement(void* context, const unsigned char* name,
                              const unsigned char** attributes);
    static void _endElement(void* context, const unsigned char* name);
    static void _characters(void* context, const unsigned char* text, int size);

private:
    void start(smi::Element element, fn::StringView value);
    void end(fn::StringView name);
    const fn::String& noteClass(fn::StringView name);
    void startParagraph(const fn::String& className);
    bool isWanted(const fn::String& className) const;
    void startSync(fn::StringView time);
    void appendText(fn::StringView text);
    void readStyle(fn::String text);
    void normalize(LanguageEntry& entry);
    bool isLanguage(const fn::String& code);
    void readText(const fn::String& text);
    void readDocument(const fn::String& text);
    void flushStyleText();
    void finishPlainSync();
    void appendRuns();

    template <class Action>
    void guarded(Action&& action);

    void* htmlParser = nullptr;    ///< While a text is read.
    std::exception_ptr exception;  ///< What an entry point caught.
    /// What is in `classes`, by each spelling that a paragraph has.
    std::unordered_map<std::string, const fn::String*> spellings;
    /// A cue or, without bytes, an end mark. While the HTML parser runs, which takes and gives back
    /// a lot of memory, the buffers would lie scattered between that: reading would take half as
    /// long again. So they are made when it has come to its end.
    struct Cue {
        std::uint64_t start;
        BufferBlocks::Bytes bytes;
    };

    void appendCue(BufferBlocks::Bytes bytes);
    void makeBuffers();
    fn::AutoPtr<SubtitleData> makeStream();

    RunBytes furtherRuns;          ///< Of the open sync block, behind `runs`.
    BufferBlocks blocks;           ///< Where the bytes of the buffers lie.
    std::vector<Cue> cues;         ///< What is to become buffers.
    fn::String styleText;          ///< The style element so far: it arrives in pieces.
    StyleSheetEffort styleEffort;  ///< Of all style elements together.
    std::unordered_map<std::string, bool> askedCodes;  ///< Whether they are languages'.
};

}  // namespace subtitles
