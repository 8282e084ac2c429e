// SPDX-License-Identifier: LGPL-2.1-or-later

#include "benchmarks/peers/film-file.h"

#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <fmt/format.h>
#include <glib.h>

namespace peers {
namespace {

// "/" is a line end, "[" and "]" stand around text in italics: each format writes them its own way.
using Cues = std::array<const char*, 5>;

constexpr Cues western = {
    "The last train left an hour ago.",
    "O\u00f9 \u00e9tais-tu hier soir ?/On t'a cherch\u00e9 pr\u00e8s de la rivi\u00e8re.",
    "I crossed the bridge and went/to the market behind the church.",
    "[Il s'est tromp\u00e9, \u00e9videmment.]",
    "- No./- We'll wait here until the morning.",
};

constexpr Cues cyrillic = {
    "\u0413\u0434\u0435 \u0442\u044b \u0431\u044b\u043b\u0430 \u0432\u0441\u0451 "
    "\u044d\u0442\u043e \u0432\u0440\u0435\u043c\u044f?",
    "\u042f \u0436\u0435 \u0433\u043e\u0432\u043e\u0440\u0438\u043b./"
    "\u041f\u043e\u0435\u0437\u0434 \u043e\u043f\u043e\u0437\u0434\u0430\u043b.",
    "[\u0422\u044b \u043c\u043e\u0433 \u043f\u043e\u0437\u0432\u043e\u043d\u0438\u0442\u044c "
    "\u0441 "
    "\u0432\u043e\u043a\u0437\u0430\u043b\u0430.]",
    "\u0422\u0435\u043b\u0435\u0444\u043e\u043d \u043d\u0435 "
    "\u0440\u0430\u0431\u043e\u0442\u0430\u043b.",
    "- \u041d\u0435\u0442./- \u0414\u0430.",
};

constexpr Cues centralEuropean = {
    "Kde jsi byla celou tu dobu, \u017e\u00e1dn\u00e9 zpr\u00e1vy?",
    "V\u017edy\u0165 jsem ti to \u0159\u00edkal./Vlak m\u011bl zase zpo\u017ed\u011bn\u00ed.",
    "[Mohl jsi zavolat z n\u00e1dra\u017e\u00ed, to p\u0159ece v\u00ed\u0161.]",
    "Telefon byl porouchan\u00fd. Od zimy je tu/v\u0161echno porouchan\u00e9.",
    "- Ne./- A\u017e r\u00e1no.",
};

struct Marks {
    const char* lineEnd;
    const char* italicOn;
    const char* italicOff;
};

std::string withMarks(const char* cue, const Marks& marks) {
    std::string text;
    for (; *cue != '\0'; ++cue) {
        switch (*cue) {
            case '/': text += marks.lineEnd; break;
            case '[': text += marks.italicOn; break;
            case ']': text += marks.italicOff; break;
            default: text += *cue;
        }
    }
    return text;
}

std::string srtTime(std::size_t milliseconds) {
    return fmt::format("{:02}:{:02}:{:02},{:03}", milliseconds / 3600000, milliseconds / 60000 % 60,
                       milliseconds / 1000 % 60, milliseconds % 1000);
}

std::string assTime(std::size_t milliseconds) {
    return fmt::format("{}:{:02}:{:02}.{:02}", milliseconds / 3600000, milliseconds / 60000 % 60,
                       milliseconds / 1000 % 60, milliseconds / 10 % 100);
}

// One cue each; number `i` of the file, shown from `start` on for 1920 milliseconds.
std::string srtCue(std::size_t i, std::size_t start, const char* cue) {
    return fmt::format("{}\n{} --> {}\n{}\n\n", i + 1, srtTime(start), srtTime(start + 1920),
                       withMarks(cue, {"\n", "<i>", "</i>"}));
}

std::string microDVDCue(std::size_t, std::size_t start, const char* cue) {
    return fmt::format("{{{}}}{{{}}}{}\n", start / 40, (start + 1920) / 40,
                       withMarks(cue, {"|", "{y:i}", ""}));
}

std::string assCue(std::size_t, std::size_t start, const char* cue) {
    return fmt::format("Dialogue: 0,{},{},Default,,0,0,0,,{}\n", assTime(start),
                       assTime(start + 1920), withMarks(cue, {"\\N", "{\\i1}", "{\\i0}"}));
}

std::string smiCue(std::size_t, std::size_t start, const char* cue) {
    return fmt::format("<SYNC Start={}><P Class=ENCC>{}\n<SYNC Start={}><P Class=ENCC>&nbsp;\n",
                       start, withMarks(cue, {"<br>", "<i>", "</i>"}), start + 1920);
}

constexpr const char* assHead =
    "[Script Info]\nTitle: The Harbour\nScriptType: v4.00+\nPlayResX: 640\nPlayResY: 480\n\n"
    "[V4+ Styles]\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, "
    "Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, "
    "Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
    "Style: Default,Sans,32,&H00FFFFFF,&H000000FF,&H00000000,&H00000000,"
    "0,0,0,0,100,100,0,0,1,2,0,2,10,10,10,1\n\n"
    "[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

constexpr const char* smiHead =
    "<SAMI>\n<HEAD>\n<TITLE>The Harbour</TITLE>\n<STYLE TYPE=\"text/css\">\n<!--\n"
    "P { margin-left:8pt; color:white; }\n"
    ".ENCC { Name:English; lang:en-US; SAMIType:CC; }\n-->\n</STYLE>\n</HEAD>\n<BODY>\n";

struct Shape {
    const char* name;
    const char* head;
    std::string (*cue)(std::size_t number, std::size_t start, const char* text);
    const char* tail;
};

const Shape& shapeOf(Format format) {
    static constexpr Shape shapes[] = {
        {"SRT", "", srtCue, ""},
        {"MicroDVD", "", microDVDCue, ""},
        {"ASS", assHead, assCue, ""},
        {"SMI", smiHead, smiCue, "</BODY>\n</SAMI>\n"},
    };
    return shapes[static_cast<std::size_t>(format)];
}

std::string makeFile(const Cues& cues, Format format, std::size_t size) {
    const Shape& shape = shapeOf(format);
    std::string text = shape.head;
    for (std::size_t i = 0;; ++i) {
        const std::string cue = shape.cue(i, 40 + 2000 * i, cues[i % cues.size()]);
        if (text.size() + cue.size() + std::strlen(shape.tail) > size) {
            return text + shape.tail;
        }
        text += cue;
    }
}

}  // namespace

const char* nameOf(Format format) {
    return shapeOf(format).name;
}

std::string filmFile(Format format, std::size_t size) {
    return makeFile(western, format, size);
}

std::string filmFileIn(const char* encoding, Format format, std::size_t size) {
    const std::string name = encoding;
    const Cues& cues = name == "windows-1251"   ? cyrillic
                       : name == "windows-1250" ? centralEuropean
                                                : western;
    // A character of Czech or Russian has two bytes in UTF-8 and one here.
    const std::string text = makeFile(cues, format, size);
    gsize written = 0;
    const std::unique_ptr<char, decltype(&g_free)> bytes(
        g_convert(text.data(), static_cast<gssize>(text.size()), encoding, "UTF-8", nullptr,
                  &written, nullptr),
        g_free);
    if (!bytes) {
        throw std::invalid_argument("No converter knows " + name);
    }
    return std::string(bytes.get(), written);
}

}  // namespace peers
