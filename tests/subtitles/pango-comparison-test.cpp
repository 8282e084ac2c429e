// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Markup that Pango accepts, held against Pango's own parser: the same text, and byte for byte the
// same looks. Where this library's rules are others, a test says so.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <pango/pango.h>

#include "subtitles/pango-markup.h"

namespace subtitles {
namespace {

// What one byte of the text looks like, in words that both sides have.
using Look = std::string;

struct Reading {
    std::string text;
    std::vector<Look> looks;  // One for each byte.
};

std::string colorText(unsigned red, unsigned green, unsigned blue) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "%02x%02x%02x", red, green, blue);
    return text.data();
}

// The steps of relative size and the raised or lowered text, without which a look is the rest.
Look withSize(const Look& rest, int steps, int rise) {
    const char* const baseline = rise == 0 ? "" : rise > 0 ? " raised" : " lowered";
    return rest + (steps == 0 ? "" : " size" + std::to_string(steps)) + baseline;
}

Look lookOf(const TextAttributes& a) {
    const auto has = [&a](TextAttributes::Attribute bit) { return (a.attributeMask & bit) != 0; };
    Look look;
    if (has(TextAttributes::FONT_FAMILY)) {
        look += " family=" + a.fontFamily;
    }
    if (has(TextAttributes::FONT_SIZE_ABSOLUTE)) {
        look += " points=" + std::to_string(a.fontSizeAbsolute);
    }
    if (has(TextAttributes::FONT_STYLE)) {
        look += " style=" + std::to_string(a.fontStyle);
    }
    if (has(TextAttributes::FONT_WEIGHT)) {
        look += " weight=" + std::to_string(a.fontWeight);
    }
    if (has(TextAttributes::FOREGROUND_COLOR)) {
        const Color& color = a.foregroundColor;
        look += " foreground=" + colorText(color.red, color.green, color.blue);
    }
    if (has(TextAttributes::BACKGROUND_COLOR)) {
        const Color& color = a.backgroundColor;
        look += " background=" + colorText(color.red, color.green, color.blue);
    }
    if (has(TextAttributes::UNDERLINE)) {
        look += " underline=" + std::to_string(a.underline);
    }
    if (has(TextAttributes::STRIKE_THROUGH)) {
        look += " struck";
    }
    // "small" counts up here, and text that is raised or lowered is a step smaller.
    const int rise = has(TextAttributes::RISE) ? a.rise : 0;
    const int steps = has(TextAttributes::FONT_SIZE_RELATIVE) ? a.fontSizeRelative : 0;
    return withSize(look, steps - (rise == 0 ? 0 : 1), rise);
}

Reading read(const std::string& markup) {
    Reading reading;
    for (const AttributedText::Run& run : pangoParkupToAttributedText(markup)) {
        reading.text += run.text;
        reading.looks.insert(reading.looks.end(), run.text.size(), lookOf(run.attributes));
    }
    return reading;
}

struct DropList {
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
};
struct DropIterator {
    void operator()(PangoAttrIterator* iterator) const { pango_attr_iterator_destroy(iterator); }
};

int intOf(PangoAttrIterator* iterator, PangoAttrType type) {
    const PangoAttribute* const attribute = pango_attr_iterator_get(iterator, type);
    return attribute == nullptr
               ? 0
               : pango_attribute_as_int(const_cast<PangoAttribute*>(attribute))->value;
}

Look colorOf(PangoAttrIterator* iterator, PangoAttrType type, const char* name) {
    PangoAttribute* const attribute = pango_attr_iterator_get(iterator, type);
    if (attribute == nullptr) {
        return "";
    }
    const PangoColor& color = pango_attribute_as_color(attribute)->color;
    return std::string(" ") + name + "=" +
           colorText(color.red >> 8U, color.green >> 8U, color.blue >> 8U);
}

int sizeSteps(PangoAttrIterator* iterator) {
    PangoAttribute* const attribute = pango_attr_iterator_get(iterator, PANGO_ATTR_SCALE);
    return attribute == nullptr
               ? 0
               : -static_cast<int>(std::lround(
                     std::log(pango_attribute_as_float(attribute)->value) / std::log(1.2)));
}

Look lookOf(PangoAttrIterator* iterator) {
    Look look;
    if (PangoAttribute* const family = pango_attr_iterator_get(iterator, PANGO_ATTR_FAMILY)) {
        look += std::string(" family=") + pango_attribute_as_string(family)->value;
    }
    if (PangoAttribute* const size = pango_attr_iterator_get(iterator, PANGO_ATTR_SIZE)) {
        look += " points=" + std::to_string(pango_attribute_as_size(size)->size);
    }
    for (const auto& [type, name] :
         {std::pair(PANGO_ATTR_STYLE, " style="), std::pair(PANGO_ATTR_WEIGHT, " weight=")}) {
        if (pango_attr_iterator_get(iterator, type) != nullptr) {
            look += name + std::to_string(intOf(iterator, type));
        }
    }
    look += colorOf(iterator, PANGO_ATTR_FOREGROUND, "foreground");
    look += colorOf(iterator, PANGO_ATTR_BACKGROUND, "background");
    if (pango_attr_iterator_get(iterator, PANGO_ATTR_UNDERLINE) != nullptr) {
        look += " underline=" + std::to_string(intOf(iterator, PANGO_ATTR_UNDERLINE));
    }
    if (intOf(iterator, PANGO_ATTR_STRIKETHROUGH) != 0) {
        look += " struck";
    }
    // A shift below 1024 is one of the two words.
    const int shift = intOf(iterator, PANGO_ATTR_BASELINE_SHIFT);
    const int raised = shift == PANGO_BASELINE_SHIFT_SUPERSCRIPT ? 1 : shift == 0 ? 0 : -1;
    return withSize(look, sizeSteps(iterator), raised);
}

// Nothing where Pango does not accept the markup.
std::optional<Reading> readWithPango(const std::string& markup) {
    PangoAttrList* list = nullptr;
    char* text = nullptr;
    if (!pango_parse_markup(markup.data(), static_cast<int>(markup.size()), 0, &list, &text,
                            nullptr, nullptr)) {
        return std::nullopt;
    }
    const std::unique_ptr<PangoAttrList, DropList> attributes(list);
    const std::unique_ptr<char, decltype(&g_free)> owned(text, &g_free);
    Reading reading{text, {}};
    const std::unique_ptr<PangoAttrIterator, DropIterator> iterator(
        pango_attr_list_get_iterator(list));
    do {
        int begin = 0;
        int end = 0;
        pango_attr_iterator_range(iterator.get(), &begin, &end);
        reading.looks.resize(std::min(static_cast<std::size_t>(end), reading.text.size()),
                             lookOf(iterator.get()));
    } while (pango_attr_iterator_next(iterator.get()));
    return reading;
}

// For messages: each stretch of equal looks.
std::string print(const Reading& reading) {
    std::string result;
    for (std::size_t i = 0; i < reading.text.size(); ++i) {
        if (i == 0 || reading.looks[i] != reading.looks[i - 1]) {
            result += "[" + reading.looks[i] + "]";
        }
        result += reading.text[i] == '\0' ? std::string("NUL") : reading.text.substr(i, 1);
    }
    return result;
}

// Well-formed markup. Sizes stay within the steps that this library has, and what is raised or
// lowered holds nothing that is so again.
class RandomMarkup {
public:
    explicit RandomMarkup(unsigned seed) : engine(seed) {}

    std::string next() {
        openSizes = 0;
        inRaised = false;
        return content(4);
    }

private:
    std::size_t below(std::size_t limit) { return engine() % limit; }

    template <std::size_t size>
    const char* oneOf(const std::array<const char*, size>& choices) {
        return choices[below(size)];
    }

    // Never of blanks alone: such a node is another matter.
    std::string text() {
        static constexpr std::array<const char*, 12> pieces = {
            " ",      "a",      "\xea\xb0\x80", "&amp;",    "&lt;", "&gt;",
            "&quot;", "&apos;", "&#65;",        "&#x20AC;", "\r\n", "\n"};
        std::string result = "x";
        for (std::size_t count = below(5); count != 0; --count) {
            result.insert(below(2) == 0 ? 0 : result.size(), oneOf(pieces));
        }
        return result;
    }

    std::string span() {
        static constexpr std::array<const char*, 16> attributes = {
            " foreground=\"#12ab34\"", " color=\"red\"",     " fgcolor='#000000'",
            " background='#ff8000'",   " bgcolor=\"white\"", " face=\"Serif\"",
            " font_family='Sans'",     " weight='bold'",     " weight='light'",
            " font_weight='900'",      " style='italic'",    " font_style=\"oblique\"",
            " style='normal'",         " underline='none'",  " underline='double'",
            " underline=\"single\""};
        return std::string("<span") + oneOf(attributes) + ">";
    }

    std::string element(std::size_t depth) {
        static constexpr std::array<const char*, 5> plain = {"b", "i", "s", "tt", "u"};
        const std::size_t kind = below(4);
        if (kind == 0) {
            return span() + content(depth) + "</span>";
        }
        if (kind == 1 && openSizes < 3) {
            return sized(depth);
        }
        return wrapped(oneOf(plain), depth);
    }

    std::string sized(std::size_t depth) {
        static constexpr std::array<const char*, 2> sizes = {"big", "small"};
        static constexpr std::array<const char*, 2> shifts = {"sub", "sup"};
        const bool raises = !inRaised && below(2) == 0;
        ++openSizes;
        inRaised = inRaised || raises;
        std::string result = wrapped(raises ? oneOf(shifts) : oneOf(sizes), depth);
        --openSizes;
        inRaised = inRaised && !raises;
        return result;
    }

    std::string wrapped(const std::string& tag, std::size_t depth) {
        return "<" + tag + ">" + content(depth) + "</" + tag + ">";
    }

    std::string content(std::size_t depth) {
        std::string result;
        for (std::size_t count = below(4); count != 0; --count) {
            // Text beside text is one node still.
            result += depth == 0 || below(3) == 0 ? text() : element(depth - 1);
        }
        return result;
    }

    std::mt19937 engine;
    int openSizes = 0;
    bool inRaised = false;
};

TEST(PangoComparison, RandomMarkupHasTheSameTextAndTheSameLooks) {
    RandomMarkup markups(1);
    std::ptrdiff_t stretches = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string markup = markups.next();
        const std::optional<Reading> expected = readWithPango(markup);
        ASSERT_TRUE(expected.has_value()) << markup;
        const std::string printed = print(*expected);
        ASSERT_EQ(print(read(markup)), printed) << markup;
        stretches += std::count(printed.begin(), printed.end(), '[');
    }
    // The markups are no trivial ones.
    EXPECT_GT(stretches, 40000);
}

// Where the two part, and what of that one might think they part in.
struct Difference {
    const char* name;
    const char* markup;
    const char* ours;
    const char* pangos;
};

constexpr Difference differences[] = {
    {"NodeOfBlanksAloneIsLost", "<b>a</b> <i>c</i>", "[ weight=700]a[ style=2]c",
     "[ weight=700]a[] [ style=2]c"},
    {"LineFeedBetweenTagsIsLost", "<b>a</b>\n<b>c</b>", "[ weight=700]ac",
     "[ weight=700]a[]\n[ weight=700]c"},
    {"SelfClosedTagIsNothingToBoth", "<i>a<b/>c</i>", "[ style=2]ac", "[ style=2]ac"},
    {"CharacterDataSectionIsNoTextToBoth", "a<![CDATA[b]]>c", "[]ac", "[]ac"},
    {"StrikeThroughOfASpanIsNone", "<span strikethrough='true'>a</span>b", "[]ab", "[ struck]a[]b"},
    {"StrikeThroughOfASpanEndsNone", "<s>a<span strikethrough='false'>b</span></s>", "[ struck]ab",
     "[ struck]a[]b"},
    {"LargerWordCountsUp", "<span size='large'>a</span>", "[ size1]a", "[ size-1]a"},
    {"SmallerWordCountsDown", "<span size='x-small'>a</span>", "[ size-2]a", "[ size2]a"},
    {"WordIsNoStepOfTheTagAround", "<small><span size='small'>a</span></small>", "[ size-1]a",
     "[ size1]a"},
    {"SizesEndAtThreeSteps", "<small><small><small>a<small>b</small></small></small></small>",
     "[ size3]ab", "[ size3]a[ size4]b"},
    {"NumberIsTheSameToBoth", "<span size='12800'>a</span>", "[ points=12800]a",
     "[ points=12800]a"},
    {"UnitBehindANumberIsPassedOver", "<span size='12pt'>a</span>", "[ points=12]a",
     "[ points=12288]a"},
    {"SizeOfZeroIsNone", "<span size='0'>a</span>", "[]a", "refused"},
    {"InnerShiftReplacesTheOuter", "<sup>a<sub>b</sub></sup>", "[ raised]a[ size1 lowered]b",
     "[ raised]a[ lowered]b"},
    {"UnknownTagFlowsOn", "a<q>b</q>c", "[]abc", "refused"},
    {"UpperCaseTagIsUnknown", "a<B>b</B>c", "[]abc", "refused"},
    {"UnknownAttributeIsNothing", "<span nonsense='1'>a</span>", "[]a", "refused"},
    {"UnknownColorIsNone", "<span color='nonsense'>a</span>", "[]a", "refused"},
    {"UnclosedTagIsReadAsSRT", "<b>a", "[ weight=700]aNUL", "refused"},
};

class PangoDifference : public testing::TestWithParam<Difference> {};

TEST_P(PangoDifference, IsThis) {
    const std::optional<Reading> pangos = readWithPango(GetParam().markup);
    EXPECT_EQ(print(read(GetParam().markup)), GetParam().ours);
    EXPECT_EQ(pangos ? print(*pangos) : "refused", GetParam().pangos);
}

INSTANTIATE_TEST_SUITE_P(Cases, PangoDifference, testing::ValuesIn(differences),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace subtitles
