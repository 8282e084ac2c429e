// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Shapes of input that parsers of subtitles have broken on, each through every way in: the four
// loaders with and without an encoding, the finder, the readers of markup, style sheets, events,
// references and buffers, and the exporters on what comes out.
//
// What must hold everywhere: a result or an exception of the family, a stream that can be played,
// and buffers that can be read back. What each shape means is the matter of the readers' own tests.

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/path.h"

#include "subtitles/ass-exporter.h"
#include "subtitles/ass-parser.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/color.h"
#include "subtitles/pango-markup.h"
#include "subtitles/style-sheet-parser.h"
#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-loader.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/webvtt-exporter.h"

#include "tests/support/temporary-folder.h"

namespace {

using namespace std::string_literals;
using subtitles::AttributedText;
using subtitles::SubtitleData;
using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

struct Shape {
    const char* name;
    std::string text;  ///< What stands where a cue's text stands, or a whole file.
};

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

constexpr std::size_t thousand = 1000;
constexpr std::size_t many = 100000;
constexpr std::size_t million = 1000000;

// NOLINTNEXTLINE(readability-function-size): one table
std::vector<Shape> makeShapes() {
    return {
        {"Nothing", ""},
        {"UnterminatedTag", "a<i"},
        {"UnterminatedTagAtOnce", "<"},
        {"UnterminatedClosingTag", "a<i>b</"},
        {"UnterminatedBrace", "a{b"},
        {"UnterminatedBracket", "a[b"},
        {"UnterminatedComment", "a<!-- b"},
        {"UnterminatedAttribute", "<font color=\"red"},
        {"UnterminatedEntity", "a&amp"},
        {"ClosingTagsSideBySide", "<b>a</b></b></i></font></p>"},
        {"TagInsideATag", "<i <b>x"},
        {"BackslashAtTheEnd", "a\\"},
        {"BraceAtTheEnd", "a{"},
        {"BraceAndBackslashAtTheEnd", "a{\\"},
        {"AttributeWithoutAName", "<font =\"red\">a</font>"},
        {"AttributeWithoutAValue", "<font color=>a</font>"},
        {"AttributeWithoutAnEqualsSign", "<font color \"red\">a</font>"},
        {"AttributeWithoutQuotes", "<font color=red>a</font>"},
        {"AttributesOfParagraphs",
         "<P =ENCC>a<P Class>b<P Class=>c<P Class \"ENCC\">d<P Class=\"ENCC>e</P>"},
        {"AttributesOfSelectors", "<style>p[=a] {b: c} p[a] {b: c} p[a=] {b: c} p[ {b: c}</style>"},
        {"ColorInsideAColor", "<font color=\"r><font color=\">y"},
        {"TwoStartsInOneSync", "<SYNC Start=1 Start=2><P>a"},
        {"TwoClassesInOneParagraph", "<SYNC Start=1><P Class=ENCC Class=FRCC>a"},
        {"SyncWithoutAStart", "<SYNC><P>a<SYNC Start=><P>b"},
        {"SyncOfANegativeStart", "<SYNC Start=-1><P>a<SYNC Start=-9223372036854775808><P>b"},
        {"ClosingBraceAheadOfTheFirst", "}{1}{2}a"},
        {"ClosingBraceAlone", "}"},
        {"NoughtAsAText", "{1}{1}0"},
        {"SecondBraceWithoutEnd", "{1}{2"},
        {"EmptyBraces", "{}{}a"},
        {"FieldsOfAThousandDigits",
         "{" + std::string(thousand, '9') + "}{" + std::string(thousand, '9') + "}a\n" +
             std::string(thousand, '9') + ":1:1,1 --> 1:1:1," + std::string(thousand, '9') +
             "\na\n\nDialogue: 0," + std::string(thousand, '9') + ":00:01.00,0:00:02." +
             std::string(thousand, '9') +
             ",Default,,0,0,0,,a\n<SYNC Start=" + std::string(thousand, '9') + "><P>a"},
        {"ValuesOfAThousandDigits",
         "<font color=\"#" + std::string(thousand, 'f') + "\" size=\"" +
             std::string(thousand, '9') + "\">a</font>{\\b" + std::string(thousand, '9') +
             "}b{y:" + std::string(thousand, '9') + "}c&#" + std::string(thousand, '9') + ";"},
        {"MissingFields", "Dialogue: 0\nDialogue:\nDialogue: ,,,,\n00:00:01,000 -->\n--> 1\n{1}a"},
        {"FormatsWithoutFields",
         "[Events]\nFormat:\nDialogue: 0,0:00:01.00\nFormat: ,,,\nDialogue: 0,0:00:01.00,a"},
        {"FormatWithoutText", "[Events]\nFormat: Start, End\nDialogue: 0:00:01.00,0:00:02.00,a"},
        {"FormatOfOneFieldOverAndOver",
         "[Events]\nFormat: " + repeated("Start,", thousand) + "Text\nDialogue: 0:00:01.00,a"},
        {"TimesThatWrap",
         "1193047:00:00,000 --> 4294967295:00:00,000\na\n\n"
         "00:4294967295:00,000 --> 00:00:4294967295,4294967295\nb\n\n"
         "{4294967295}{9223372036854775807}c\n{18446744073709551615}{1}d\n"
         "Dialogue: 0,4294967295:59:59.99,4294967295:59:59.999,Default,,0,0,0,,e\n"
         "<SYNC Start=9223372036854775807><P>f<SYNC Start=9223372036855><P>g"},
        {"EndBeforeStart", "00:00:02,000 --> 00:00:01,000\na\n\n{2}{1}b"},
        {"NestingAMillionDeep", repeated("<b>", million)},
        {"NestingThatEnds", repeated("<b>", many) + "a" + repeated("</b>", many)},
        {"NestingOfTwoKinds", repeated("<b><i></b>", many) + "a"},
        {"NestingOfBlocks", repeated("<div>", many)},
        {"NestingOfParagraphs", repeated("<p>", million)},
        {"NestingOfFonts", repeated("<font color=red>", many)},
        {"ManyBraces", repeated("{", million)},
        {"ManyBrackets", repeated("[", million)},
        {"AMillionStyleElements", repeated("<style/>", million)},
        {"AMillionStyleElementsThatDoNotEnd", repeated("<style>", million)},
        {"ManyStyleElementsThatEnd", repeated("<style>p{a:b}</style>", many)},
        {"ManyClasses",
         [] {
             std::string text;
             for (std::size_t i = 0; i < 10 * thousand; ++i) {
                 text += "<p class=" + std::to_string(i) + ">a";
             }
             return text;
         }()},
        {"AClassOfAMillionBytes", "<p class=" + std::string(million, 'a') + ">a"},
        {"ManyAttributes", "<p " + repeated("a=b ", 10 * thousand) + ">a"},
        {"ManyEntities", repeated("&lt;", many)},
        {"ManyLineEnds", repeated("\n", million)},
        {"ManyCarriageReturns", repeated("\r", million)},
        {"ManySyncs", repeated("<sync start=1>", many)},
        {"OneLineOfAMillionDigits", std::string(million, '1')},
        {"OneLineOfManyArrows", repeated("-->", many)},
        {"Nuls", std::string(100, '\0')},
        {"NulInATag", "<i\0>a</i>"s},
        {"NulInATime", "00:00:01\0,000 --> 00:00:02,000\na"s},
        {"CutInsideATwoByteCharacter", "\xC3"},
        {"CutInsideAThreeByteCharacter", "a\xE2\x82"},
        {"CutInsideAFourByteCharacter", "a\xF0\x9F\x98"},
        {"ContinuationBytesAlone", "\x80\x80\xBF"},
        {"OverlongNul", "a\xC0\x80z"},
        {"Surrogates", "\xED\xA0\x80\xED\xB0\x80"},
        {"BeyondUnicode", "\xF4\x90\x80\x80"},
        {"AllBytes",
         [] {
             std::string all;
             for (int byte = 255; byte >= 0; --byte) {
                 all += static_cast<char>(byte);
             }
             return all;
         }()},
        {"CutInsideAKoreanCharacter", "\xC7\xD1\xB1"},
        {"CutInsideAnEscape", "\x1B$)"},
        {"CutInsideASurrogatePair", "\xFF\xFE\x61\0\x3D\xD8"s},
        {"ByteOrderMarks", "\xEF\xBB\xBF\xFF\xFE\xFE\xFF"},
        {"Utf16WithHalfACharacter", "\xFF\xFE\x61"},
        {"Chemistry", "CC(=O)Oc1ccccc1C(=O)O\tAspirin\nC1=CC=CC=C1\tBenzene\n"},
        {"PicturesOfSubtitles", "\x00\x00\x01\xBA\x44\x00\x04\x00\x04\x01\x01\x89\xC3\xF8"s},
        {"AnArchive", "PK\x03\x04\x14\x00\x00\x00\x08\x00"s},
        {"AnImage", "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"s},
        {"AWebPage", "<!DOCTYPE html><html><head><script>if (a<b) {}</script></head></html>"},
        {"ADocumentThatDeclaresEntities",
         "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY b SYSTEM "
         "\"file:///etc/passwd\">]><a>&b;</a>"},
        {"NoNewlineAtTheEnd", "00:00:01,000 --> 00:00:02,000\na"},
        {"CarriageReturnAtTheEnd", "00:00:01,000 --> 00:00:02,000\r\na\r"},
        {"StyleSheetThatNeverEnds", "<style>color: red; )</style>"},
        {"StyleSheetOfHalfARule", "<style>p { a: b"},
        {"StyleSheetWithABackslashAtTheEnd", "<style>p\\</style>"},
        {"DrawingCommands", "{\\p1}m 0 0 l 1 1{\\p0}"},
        {"WireOfZeros", std::string(82, '\0')},
        {"WireOfAllOnes", std::string(200, '\xFF')},
        {"WireWithTheLargestCount", "\xFF\xFF\xFF\x7F"s + std::string(78, '\0')},
        {"WireWithALengthOfAllOnes", "\x01\0\0\0\0\0\0\0\xFF\xFF\xFF\xFF"s},
        {"WireWithATextLengthOfAllOnes",
         "\x01\0\0\0"s + std::string(74, '\0') + "\xFF\xFF\xFF\xFF" + "a"},
        {"JsonThatNests", repeated("[", million)},
        {"JsonOfObjectsThatNest", repeated("{\"a\":", many)},
        {"JsonOfANumberTooLarge", "{\"type\":1e999999}"},
    };
}

const std::vector<Shape>& shapes() {
    static const std::vector<Shape> all = makeShapes();
    return all;
}

/// A format: what stands before the text of a cue, and what follows it.
struct Kind {
    const char* extension;
    const char* mimeType;
    const char* head;
    const char* tail;
};

constexpr Kind kinds[] = {
    {".srt", "application/x-srt", "1\n00:00:01,000 --> 00:00:02,000\n",
     "\n\n2\n00:00:03,000 --> 00:00:04,000\nend"},
    {".sub", "application/x-micro-dvd-sub", "{1}{2}", "\n{3}{4}end"},
    {".ass", "application/x-ass",
     "[Script Info]\n[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, "
     "MarginV, Effect, Text\nDialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,",
     "\nDialogue: 0,0:00:03.00,0:00:04.00,Default,,0,0,0,,end"},
    {".smi", "application/x-smi", "<SAMI><BODY><SYNC Start=1000><P Class=ENCC>",
     "<SYNC Start=2000><P>end"},
};

std::string wholeFile(const Kind& kind, const std::string& text) {
    return kind.head + text + kind.tail;
}

/// The shape as it stands, and in each format as a cue's text, with another cue behind it and as
/// the last bytes of the file.
std::vector<std::string> filesWith(const std::string& text) {
    std::vector<std::string> files = {text};
    for (const Kind& kind : kinds) {
        files.push_back(wholeFile(kind, text));
        files.push_back(kind.head + text);
    }
    return files;
}

/// True where the way in gave a result. Any exception but those of the family fails the test.
bool gives(const std::function<void()>& wayIn) {
    try {
        wayIn();
        return true;
    } catch (const fn::Exception&) {
        return false;
    }
}

void requirePlayable(const SubtitleData& data) {
    for (const auto& buffer : data.buffers) {
        ASSERT_GT(gst_buffer_get_size(buffer.get()), 0U);
        ASSERT_TRUE(GST_BUFFER_DURATION_IS_VALID(buffer.get()));
        ASSERT_TRUE(GST_BUFFER_PTS_IS_VALID(buffer.get()));
    }
}

void exportText(const AttributedText& text) {
    subtitles::ASSExporter().attributedTextToString(text);
    subtitles::WebVTTExporter().attributedTextToString(text);
}

/// What a player does with a stream's texts.
void readBack(const SubtitleData& data) {
    for (const auto& buffer : data.buffers) {
        if (data.mimeType != "application/x-ass") {
            exportText(subtitles::attributedTextFromBuffer(buffer.get()));
            continue;
        }
        fn::String entry(gst_buffer_get_size(buffer.get()), '\0');
        gst_buffer_extract(buffer.get(), 0, entry.data(), entry.size());
        gives([&] { exportText(subtitles::ASSParser().parseEntry(entry)); });
    }
}

constexpr const char* encodings[] = {"",         "UTF-8",       "windows-1252", "CP949",
                                     "UTF-16LE", "ISO-2022-JP", "UTF-7",        "no such name"};

constexpr std::size_t large = 100000;

void load(const std::string& path, const Kind& kind, const char* encoding) {
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.mimeType = kind.mimeType;
    reference.path = path;
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        if (loader->canHandle(reference)) {
            gives([&] {
                const auto data = loader->loadSubtitle(reference, encoding);
                requirePlayable(*data);
                readBack(*data);
            });
        }
    }
}

/// Bytes that may stand in a file's name.
std::string nameOf(std::string text) {
    std::replace(text.begin(), text.end(), '/', '-');
    std::replace(text.begin(), text.end(), '\0', '-');
    return text.substr(0, 100);
}

fn::AutoPtr<_GstBuffer> bufferOf(const std::string& bytes) {
    fn::AutoPtr<_GstBuffer> buffer(gst_buffer_new_allocate(nullptr, bytes.size(), nullptr));
    gst_buffer_fill(buffer.get(), 0, bytes.data(), bytes.size());
    return buffer;
}

class HostileFile : public testing::TestWithParam<std::size_t> {
protected:
    const Shape& shape() const { return shapes()[GetParam()]; }

    test::TemporaryFolder folder;
};

TEST_P(HostileFile, LoadsOrIsRefusedInEachFormatAndEncoding) {
    const std::string& text = shape().text;
    for (const Kind& kind : kinds) {
        const auto loadAs = [&](const std::string& bytes, const char* encoding) {
            load(folder.writeFile("film"s + kind.extension, bytes), kind, encoding);
        };
        if (text.size() > large) {
            loadAs(wholeFile(kind, text), "UTF-8");
            continue;
        }
        for (const std::string& file : filesWith(text)) {
            for (const char* const encoding : encodings) {
                loadAs(file, encoding);
            }
        }
    }
}

TEST_P(HostileFile, IsFoundOrPassedOver) {
    for (const Kind& kind : kinds) {
        folder.writeFile("film." + nameOf(shape().text) + kind.extension,
                         wholeFile(kind, shape().text));
        if (shape().text.size() <= large) {
            folder.writeFile("film"s + kind.extension, shape().text);
        }
    }
    std::vector<SubtitleReference> found;
    EXPECT_TRUE(gives([&] {
        subtitles::SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder.path()),
                                                             "film", ".mkv", found);
    }));
    // Scripts are found by their extension, whatever is in them.
    EXPECT_GE(found.size(), 2U);
    for (const SubtitleReference& reference : found) {
        SubtitleReference again;
        EXPECT_TRUE(again.deserialize(reference.serialize()));
        EXPECT_EQ(again.path, reference.path);
    }
}

TEST_P(HostileFile, GivesAResultAsMarkup) {
    EXPECT_TRUE(gives([&] { exportText(subtitles::parseSRTFormatting(shape().text)); }));
    gives([&] { exportText(subtitles::pangoParkupToAttributedText(shape().text)); });
    gives([&] { exportText(subtitles::ASSParser().parseEntry("0,0,,,0,0,0,," + shape().text)); });
    gives([&] { exportText(subtitles::ASSParser().parseEntry(shape().text)); });
    subtitles::Color color;
    color.parse(shape().text);
}

TEST_P(HostileFile, GivesAResultAsAStyleSheet) {
    subtitles::StyleSheet sheet;
    EXPECT_TRUE(gives([&] { subtitles::parseStyleSheetGuarded(sheet, shape().text); }));
    sheet.toString();
}

TEST_P(HostileFile, IsReadOrRefusedAsAReferenceAndAsABuffer) {
    SubtitleReference reference;
    EXPECT_TRUE(gives([&] { reference.deserialize(shape().text); }));
    EXPECT_TRUE(gives(
        [&] { exportText(subtitles::attributedTextFromBuffer(bufferOf(shape().text).get())); }));
}

INSTANTIATE_TEST_SUITE_P(Shapes, HostileFile, testing::Range(std::size_t{0}, makeShapes().size()),
                         [](const auto& test) { return std::string(shapes()[test.param].name); });

}  // namespace
