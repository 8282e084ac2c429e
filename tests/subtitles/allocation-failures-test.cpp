// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Memory that runs out: each way in is gone once for each of its allocations, which fails. What
// comes out is a result or an exception, and every block that was taken until then is given back.
//
// The blocks that fail are those of operator new, and of realloc where the libraries ask for it:
// the bytes of a file lie in such a block. GLib's allocator, which GStreamer takes its own
// structures from, cannot fail in a way that a program sees: it ends the process. So its blocks are
// watched alone: each of them comes back. libxml2's and uchardet's inner workings are not ours to
// test, so they get what they ask for.

#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <gst/gst.h>
#include <gtest/gtest.h>

#include "foundation/byte-array.h"
#include "foundation/exception.h"
#include "foundation/path.h"

#include "subtitles/ass-exporter.h"
#include "subtitles/ass-parser.h"
#include "subtitles/attributed-text-buffer.h"
#include "subtitles/charset-detector.h"
#include "subtitles/pango-markup.h"
#include "subtitles/style-sheet-parser.h"
#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-loader.h"
#include "subtitles/subtitle-parser.h"
#include "subtitles/webvtt-exporter.h"

#include "tests/subtitles/watched-glib.h"
#include "tests/support/encode.h"
#include "tests/support/temporary-folder.h"

namespace {

/// What operator new counts, while it is armed. Tests of this program have one thread.
struct Allocations {
    bool armed = false;
    long long count = 0;
    long long failing = -1;  ///< The number of the one that fails, -1 for none.
    long long live = 0;      ///< Blocks that were taken, and not given back.
};

Allocations allocations;

bool isThirdParty(void* caller) {
    Dl_info info = {};
    return dladdr(caller, &info) != 0 && std::strstr(info.dli_fname, "uchardet") != nullptr;
}

/// The libraries, and what of them is linked into this program.
[[maybe_unused]] bool isOurs(void* caller) {
    Dl_info program = {};
    Dl_info info = {};
    return dladdr(&allocations, &program) != 0 && dladdr(caller, &info) != 0 &&
           (info.dli_fbase == program.dli_fbase ||
            std::strstr(info.dli_fname, "libfoundation") != nullptr);
}

/// Counts an allocation; true for the one that is to fail.
bool isToFail() {
    return allocations.count++ == allocations.failing;
}

void* take(std::size_t size, void* caller) {
    if (allocations.armed && !isThirdParty(caller) && isToFail()) {
        throw std::bad_alloc();
    }
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++allocations.live;
    return block;
}

void give(void* block) {
    allocations.live -= block == nullptr ? 0 : 1;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return take(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size) {
    return take(size, __builtin_return_address(0));
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return take(size, __builtin_return_address(0));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* block) noexcept {
    give(block);
}
void operator delete[](void* block) noexcept {
    give(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
    give(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
    give(block);
}

// Clang links its sanitizer into the program, where only one of the two could stand.
#if defined(__clang__)
#if __has_feature(address_sanitizer)
#define KEEPS_REALLOC
#endif
#endif

#ifdef KEEPS_REALLOC
constexpr bool reallocFails = false;
#else
constexpr bool reallocFails = true;

extern "C" __attribute__((visibility("default"))) void* realloc(void* block,
                                                                std::size_t size) noexcept {
    using Realloc = void* (*)(void*, std::size_t);
    static const auto systemRealloc = reinterpret_cast<Realloc>(dlsym(RTLD_NEXT, "realloc"));
    if (allocations.armed && isOurs(__builtin_return_address(0)) && isToFail()) {
        return nullptr;
    }
    return systemRealloc(block, size);
}
#endif

namespace {

using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

constexpr const char* srt =
    "1\n00:00:01,000 --> 00:00:02,000\nA line of a cue, <i>long enough to need memory</i>\n\n"
    "2\n00:00:03,000 --> 00:00:04,000\nPlain text that is long enough to need memory\n\n"
    "3\n0:0:5,0 --> 0:0:6,0\n<font color=\"#ff0000\"><b>more</b></u> mark-up\nand \xC3\xA9\n";
constexpr const char* malformedSrt =
    "0:0:1,0 --> 0:0:2,0\nA line that is long enough to need memory\nand \xE9 bad line\n\n"
    "0:0:3,0 --> 0:0:4,0\xFF\nA time line that is refused\n";
constexpr const char* microDVD =
    "{10}{20}A line of an entry|{y:i}long enough to need memory\n{30}{40}{c:$0000ff}and a second "
    "entry, which has no code that stays\n";
constexpr const char* ass =
    "[Script Info]\nTitle: a script that has a title\n\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,{\\i1}A line{\\i0} of an event\\Nof two\n"
    "Dialogue: 0,0:00:03.00,0:00:04.00,Default,,0,0,0,,A second event that is long enough\n";
constexpr const char* smi =
    "<SAMI><HEAD><STYLE>.ENCC {Name: English; lang: en-US;} .XXCC {Name: Another;}</STYLE></HEAD>"
    "<BODY><SYNC Start=1000><P Class=ENCC>A line, <i>long enough</i> to need memory<br>of two"
    "<SYNC Start=2000><P Class=ENCC>&nbsp;<SYNC Start=3000><P Class=XXCC>Another language, "
    "<font color=red>too</font></BODY></SAMI>";

/// More than are kept one by one.
std::string smiOfManyRuns() {
    std::string text = "<SYNC Start=1><P>";
    for (int i = 0; i < 100; ++i) {
        text += "text<b>bold</b>";
    }
    return text;
}

void loadReference(const SubtitleReference& reference, const char* encoding) {
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        if (loader->canHandle(reference)) {
            loader->loadSubtitle(reference, encoding);
        }
    }
}

void load(const std::string& path, const char* mimeType, const char* encoding) {
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.mimeType = mimeType;
    reference.path = path;
    loadReference(reference, encoding);
}

struct Case {
    std::string name;
    std::function<void(const std::string& folder)> wayIn;
};

/// A file of each format, in an encoding, and the name by which that is asked for.
struct Encoding {
    const char* name;
    const char* encoding;
    const char* asked;
};

constexpr Encoding encodings[] = {
    {"", "UTF-8", "UTF-8"},
    {"Detected", "UTF-8", ""},
    {"Converted", "WINDOWS-1252", "windows-1252"},
    {"ConvertedDetected", "UTF-16", ""},
    {"InUtf16", "UTF-16LE", "UTF-16LE"},
    {"InAnUnknownEncoding", "UTF-8", "no such name"},
};

struct Format {
    const char* name;
    const char* extension;
    const char* mimeType;
    const char* text;
};

constexpr Format formats[] = {
    {"Srt", ".srt", "application/x-srt", srt},
    {"MicroDVD", ".sub", "application/x-micro-dvd-sub", microDVD},
    {"Ass", ".ass", "application/x-ass", ass},
    {"Smi", ".smi", "application/x-smi", smi},
};

Case loading(const Format& format, const Encoding& encoding) {
    const std::string file = std::string("/") + encoding.encoding + format.extension;
    return {std::string("Loading") + format.name + encoding.name, [=](const std::string& folder) {
                load(folder + file, format.mimeType, encoding.asked);
            }};
}

void analyze(const std::string& path) {
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        loader->analyzeFile(fn::Path::parsePath(path));
    }
}

void find(const std::string& folder) {
    std::vector<SubtitleReference> found;
    subtitles::SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder), "film",
                                                         ".mkv", found);
}

void exchange(const std::string& /*folder*/) {
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.path = "/a path that is long enough to need memory/film.srt";
    reference.loaderProperties["class"] = "a class that is long enough to need memory";
    SubtitleReference again;
    again.deserialize(reference.serialize());
}

void parseAndExport(const std::string& /*folder*/) {
    const auto text = subtitles::parseSRTFormatting(
        "<b>Text that is long enough</b> to <i>need memory</i> in each of <u>its runs</u>");
    const auto buffer = subtitles::attributedTextToBuffer(text);
    const auto again = subtitles::attributedTextFromBuffer(buffer.get());
    subtitles::ASSExporter().attributedTextToString(again);
    subtitles::WebVTTExporter().attributedTextToString(again);
}

void parsePango(const std::string& /*folder*/) {
    subtitles::pangoParkupToAttributedText(
        "<span font_family=\"a family with a long name\" color=\"red\">text <b>and</b> "
        "text</span>");
}

void parseBadPango(const std::string& /*folder*/) {
    subtitles::pangoParkupToAttributedText(
        "<span font_family=\"a family with a long name\">text <b>and</i> long text</span>");
}

void parseEntry(const std::string& /*folder*/) {
    subtitles::ASSParser().parseEntry(
        "0,0,Default,,0,0,0,,{\\i1}An event{\\i0} that is long enough\\Nto need memory{\\b700}x");
}

void parseSheet(const std::string& /*folder*/) {
    subtitles::StyleSheet sheet;
    subtitles::parseStyleSheetGuarded(
        sheet,
        "p.class[attribute=\"value\"] > b { color: red; margin: 1px 2px; } a:hover { x: y }");
    sheet.toString();
}

/// The class of a reference decides what is loaded of a document.
void loadClass(const std::string& folder) {
    SubtitleReference reference;
    reference.type = SubtitleReference::FILE;
    reference.mimeType = "application/x-smi";
    reference.path = folder + "/film.smi";
    reference.loaderProperties["class"] = "encc";
    loadReference(reference, "");
}

void detect(const std::string& folder) {
    subtitles::CharsetDetector::detectFileCharset((folder + "/film.srt").c_str(), 65536);
}

std::vector<Case> makeCases() {
    std::vector<Case> all = {
        {"LoadingWhatIsMissing",
         [](const std::string& folder) { load(folder + "/none.srt", "application/x-srt", ""); }},
        {"LoadingMalformedSrt",
         [](const std::string& folder) {
             load(folder + "/malformed.srt", "application/x-srt", "UTF-8");
         }},
        {"LoadingSmiOfManyRuns",
         [](const std::string& folder) {
             load(folder + "/runs.smi", "application/x-smi", "UTF-8");
         }},
        {"LoadingAClassOfSmi", loadClass},
        {"DetectingAnEncoding", detect},
        {"Finding", find},
        {"ExchangingReferences", exchange},
        {"ParsingAndExporting", parseAndExport},
        {"ParsingPango", parsePango},
        {"ParsingPangoThatIsNotWellFormed", parseBadPango},
        {"ParsingEntries", parseEntry},
        {"ParsingStyleSheets", parseSheet},
    };
    for (const Format& format : formats) {
        for (const Encoding& encoding : encodings) {
            all.push_back(loading(format, encoding));
        }
        const std::string file = std::string("/film") + format.extension;
        all.push_back({std::string("Analyzing") + format.name,
                       [=](const std::string& folder) { analyze(folder + file); }});
    }
    return all;
}

const std::vector<Case>& cases() {
    static const std::vector<Case> all = makeCases();
    return all;
}

enum class Outcome { Result, OutOfMemory, Refused };

/// Goes the way in with that allocation failing.
Outcome go(const Case& way, const std::string& folder, long long failing) {
    allocations.count = 0;
    allocations.failing = failing;
    test::watchGLib();
    allocations.armed = true;
    Outcome outcome = Outcome::Result;
    try {
        way.wayIn(folder);
    } catch (const std::bad_alloc&) {
        outcome = Outcome::OutOfMemory;
    } catch (const fn::Exception&) {
        outcome = Outcome::Refused;
    }
    allocations.armed = false;
    test::stopWatchingGLib();
    return outcome;
}

class AllocationFailure : public testing::TestWithParam<std::size_t> {
protected:
    AllocationFailure() {
        folder.writeFile("malformed.srt", malformedSrt);
        folder.writeFile("runs.smi", smiOfManyRuns());
        for (const Format& format : formats) {
            folder.writeFile(std::string("film") + format.extension, format.text);
            for (const Encoding& encoding : encodings) {
                folder.writeFile(std::string(encoding.encoding) + format.extension,
                                 test::encode(format.text, encoding.encoding));
            }
        }
    }

    test::TemporaryFolder folder;
};

TEST_P(AllocationFailure, IsToldAndLosesNothing) {
    const Case& way = cases()[GetParam()];
    // What is made once for the process is made before anything is counted.
    go(way, folder.path(), -1);
    go(way, folder.path(), -1);
    const long long count = allocations.count;
    int outOfMemory = 0;
    for (long long failing = 0; failing < count; ++failing) {
        const long long before = allocations.live;
        const Outcome outcome = go(way, folder.path(), failing);
        outOfMemory += outcome == Outcome::OutOfMemory ? 1 : 0;
        ASSERT_EQ(allocations.live, before) << "allocation " << failing << " of " << count;
        ASSERT_EQ(test::liveGLibBlocks(), 0U) << "allocation " << failing << " of " << count;
    }
    // Most failures reach the caller; some are met on the way by what was to be done anyway.
    EXPECT_GT(count, 0);
    EXPECT_GT(outOfMemory, 0);
    EXPECT_EQ(go(way, folder.path(), count), go(way, folder.path(), -1));
}

INSTANTIATE_TEST_SUITE_P(WaysIn, AllocationFailure, testing::Range(std::size_t{0}, cases().size()),
                         [](const auto& test) { return cases()[test.param].name; });

TEST(AllocationFailureOfTheTest, ALostBlockIsSeen) {
    const long long before = allocations.live;
    test::watchGLib();
    auto* const string = new std::string("a text that is long enough to need memory");
    GstBuffer* const buffer = gst_buffer_new();
    test::stopWatchingGLib();
    EXPECT_EQ(allocations.live, before + 2);
    EXPECT_GT(test::liveGLibBlocks(), 0U);
    delete string;
    gst_buffer_unref(buffer);
    EXPECT_EQ(allocations.live, before);
    EXPECT_EQ(test::liveGLibBlocks(), 0U);
}

TEST(AllocationFailureOfTheTest, TheBytesOfAFileFailToo) {
    const Case way = {"", [](const std::string& /*folder*/) {
                          fn::ByteArray bytes;
                          bytes.append("bytes", 5);
                      }};
    EXPECT_EQ(go(way, "", 0), reallocFails ? Outcome::OutOfMemory : Outcome::Result);
}

}  // namespace
