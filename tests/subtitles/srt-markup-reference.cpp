// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/subtitles/srt-markup-reference.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "subtitles/byte-machine.h"
#include "subtitles/color.h"
#include "subtitles/text-attributes.h"

namespace srt_reference {

namespace {

using subtitles::AttributedText;
using subtitles::TextAttributes;
using subtitles::byte_machine::byte;
using subtitles::byte_machine::ByteSet;
using subtitles::byte_machine::range;

/// A byte of a set or, where it repeats, any number of them, also none.
struct Part {
    ByteSet bytes;
    bool repeats = false;
    std::optional<Action> action = {};  ///< Done at the byte.
};

struct Alternative {
    std::vector<Part> parts;
    std::optional<Action> whenLeft = {};  ///< Done at the first byte behind it.
};

const ByteSet space = range(9, 13) | byte(' ');
const ByteSet notQuote = ~byte('"');

/// Parts from a form: a blank stands for any number of white space, other bytes for themselves.
std::vector<Part> form(const std::string& text) {
    std::vector<Part> parts;
    for (const char c : text) {
        parts.push_back(c == ' ' ? Part{space, true} : Part{byte(c)});
    }
    return parts;
}

std::vector<Part> operator+(std::vector<Part> a, const std::vector<Part>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<Alternative>& alternatives() {
    static const std::vector<Alternative> all = {
        {{{~(byte('<') | byte('{')), false, Action::AppendByte}}},
        {form("{an") + std::vector<Part>{{range('0', '9')}, {range('0', '9'), true}} + form("}")},
        {form("< b >"), Action::OpenBold},
        {form("< i >"), Action::OpenItalic},
        {form("< u >"), Action::OpenUnderline},
        {form("</ b >"), Action::CloseBold},
        {form("</ i >"), Action::CloseItalic},
        {form("</ u >"), Action::CloseUnderline},
        {form("</ u >"), Action::CloseColor},
        {form("< font color = \"") +
             std::vector<Part>{{notQuote, false, Action::BeginColor},
                               {notQuote, true},
                               {byte('"'), false, Action::EndColor}} +
             form(" >"),
         Action::OpenColor},
        {form("<") + std::vector<Part>{{~(byte('>') | byte('\n')), true}} + form(">")},
    };
    return all;
}

constexpr std::size_t none = static_cast<std::size_t>(-1);

bool isDone(const Place& place) {
    return place.first == none || place.second == alternatives()[place.first].parts.size();
}

/// One step of one alternative from one of its parts. Parts that repeat may be left out.
void moveIn(std::size_t number, std::size_t part, char c, const std::optional<Action>& before,
            Places& places, std::set<Action>& actions) {
    const std::vector<Part>& parts = alternatives()[number].parts;
    for (std::size_t i = part; i < parts.size(); ++i) {
        if (parts[i].bytes.contains(static_cast<unsigned char>(c))) {
            places.insert({number, parts[i].repeats ? i : i + 1});
            for (const std::optional<Action>& action : {before, parts[i].action}) {
                if (action) {
                    actions.insert(*action);
                }
            }
        }
        if (!parts[i].repeats) {
            return;
        }
    }
}

/// What a plain reader of the tags would keep: records of open tags, oldest first.
class Writer {
public:
    void perform(Action action, const std::string& text, std::size_t at) {
        switch (action) {
            case Action::AppendByte: pending += text[at]; break;
            case Action::OpenBold: open(TextAttributes::FONT_WEIGHT, {}); break;
            case Action::OpenItalic: open(TextAttributes::FONT_STYLE, {}); break;
            case Action::OpenUnderline: open(TextAttributes::UNDERLINE, {}); break;
            case Action::CloseBold: close(TextAttributes::FONT_WEIGHT); break;
            case Action::CloseItalic: close(TextAttributes::FONT_STYLE); break;
            case Action::CloseUnderline: close(TextAttributes::UNDERLINE); break;
            case Action::CloseColor: close(TextAttributes::FOREGROUND_COLOR); break;
            case Action::BeginColor: colorBegin = at; break;
            case Action::EndColor: colorEnd = at; break;
            case Action::OpenColor:
                open(TextAttributes::FOREGROUND_COLOR,
                     colorBegin < colorEnd ? text.substr(colorBegin, colorEnd - colorBegin)
                                           : std::string());
                break;
        }
    }

    void endRun() {
        if (pending.empty()) {
            return;
        }
        AttributedText::Run run;
        for (const Tag& tag : tags) {
            apply(tag, run.attributes);
        }
        run.text = pending;
        runs.push_back(run);
        pending.clear();
    }

    AttributedText runs;

private:
    struct Tag {
        std::uint32_t attribute;
        std::string color;
    };

    static void apply(const Tag& tag, TextAttributes& attributes) {
        attributes.attributeMask |= tag.attribute;
        switch (tag.attribute) {
            case TextAttributes::FONT_WEIGHT:
                attributes.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
                break;
            case TextAttributes::FONT_STYLE:
                attributes.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
                break;
            case TextAttributes::UNDERLINE:
                attributes.underline = TextAttributes::UNDERLINE_SINGLE;
                break;
            default:
                attributes.foregroundColor = subtitles::Color();
                attributes.foregroundColor.parse(tag.color);
                break;
        }
    }

    void open(std::uint32_t attribute, const std::string& color) {
        endRun();
        tags.push_back({attribute, color});
    }

    void close(std::uint32_t attribute) {
        endRun();
        tags.erase(std::remove_if(tags.begin(), tags.end(),
                                  [&](const Tag& tag) { return tag.attribute == attribute; }),
                   tags.end());
    }

    std::vector<Tag> tags;
    std::string pending;
    std::size_t colorBegin = 0;
    std::size_t colorEnd = 0;
};

}  // namespace

Places startPlaces() {
    return {{none, 0}};
}

Move move(const Places& places, char byte) {
    Move result;
    std::set<Action> actions;
    for (const Place& place : places) {
        if (!isDone(place)) {
            moveIn(place.first, place.second, byte, {}, result.places, actions);
            continue;
        }
        const auto before =
            place.first == none ? std::nullopt : alternatives()[place.first].whenLeft;
        for (std::size_t next = 0; next < alternatives().size(); ++next) {
            moveIn(next, 0, byte, before, result.places, actions);
        }
    }
    result.isText = actions.erase(Action::AppendByte) != 0;
    result.actions.assign(actions.begin(), actions.end());
    if (result.isText) {
        result.actions.push_back(Action::AppendByte);
    }
    return result;
}

AttributedText parse(const std::string& text) {
    const std::string input = text.substr(0, text.find('\0')) + '\0';
    Writer writer;
    Places places = startPlaces();
    for (std::size_t at = 0; at < input.size() && !places.empty(); ++at) {
        const Move next = move(places, input[at]);
        for (const Action action : next.actions) {
            writer.perform(action, input, at);
        }
        places = next.places;
    }
    writer.endRun();
    return writer.runs;
}

}  // namespace srt_reference
