// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The reader of style sheets beside a second one that shares nothing with it: the same sheets, and
// the same actions in the same order, which the log tells.
//
// SUBTITLES_CASES sets how many random sheets are compared.

#include <bitset>
#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/logging.h"

#include "subtitles/style-sheet-parser.h"
#include "subtitles/style-sheet.h"

#include "tests/subtitles/style-sheet-reference-grammar.h"
#include "tests/subtitles/style-sheet-reference.h"
#include "tests/support/describe-style-sheet.h"

namespace subtitles {
namespace {

using fn::logging::CategoryManager;
using fn::logging::Message;

/// Keeps what is logged while one text is read. Lighter than the recorder of other tests, since a
/// million texts are read here.
class StyleSheetGrammar : public testing::Test {
protected:
    StyleSheetGrammar() {
        CategoryManager::instance().setSinkFactory(
            [this](const fn::String&) { return std::make_unique<LogSink>(log); });
    }
    ~StyleSheetGrammar() override { CategoryManager::instance().setSinkFactory(nullptr); }

    /// Compares all readers on the text, and says so where they differ.
    bool agree(const std::string& text) {
        expected = test::readStyleSheet(text);
        bool same = agreesWith(text, [](StyleSheet& sheet, const fn::String& bytes) {
            parseStyleSheetGuarded(sheet, bytes);
        });
        if (!expected.endless) {
            same = agreesWith(text, parseStyleSheet) && same;
        }
        endless += expected.endless ? 1 : 0;
        return same;
    }

    test::StyleSheetReading expected;  ///< Of the last text.
    std::size_t endless = 0;

private:
    class LogSink final : public fn::logging::Sink {
    public:
        explicit LogSink(std::vector<std::string>& target) : lines(target) {}
        bool wants(Message::Priority /*priority*/) const override { return true; }
        void write(const Message& message) override {
            lines.push_back(std::to_string(static_cast<int>(message.priority)) + " " +
                            message.text());
        }

    private:
        std::vector<std::string>& lines;
    };

    template <class Parse>
    bool agreesWith(const std::string& text, Parse parse) {
        StyleSheet sheet;
        log.clear();
        parse(sheet, fn::String(text));
        const bool same = areSame(sheet, expected.sheet) && log == expected.log;
        EXPECT_TRUE(same) << testing::PrintToString(text) << "\nread as " << describe(sheet)
                          << "\nnot as  " << describe(expected.sheet) << "\nlog "
                          << testing::PrintToString(log) << "\nnot "
                          << testing::PrintToString(expected.log);
        return same;
    }

    std::vector<std::string> log;
};

// One of each kind of byte that any state tells apart, and some more.
const std::string alphabet = " \t\n\f\r-_gaF09!#.:[]*,{}/\\\"'()%;@<\x01\x7f\x80\xff";

/// The shortest text that leads to each state.
std::map<std::string, std::string> waysToStates() {
    std::map<std::string, std::string> ways = {{"top", ""}};
    std::deque<std::string> open = {""};
    while (!open.empty()) {
        const std::string way = open.front();
        open.pop_front();
        for (const char byte : alphabet) {
            const test::StyleSheetReading reading = test::readStyleSheetPart(way + byte);
            if (!reading.endless && ways.emplace(reading.state, way + byte).second) {
                open.push_back(way + byte);
            }
        }
    }
    return ways;
}

/// True where a byte can be read in a state. Three states come by few bytes alone: the bracket that
/// closes a brace value is read again, as is the byte that began a rule set, and behind the end
/// there is nothing.
bool canBeRead(const std::string& state, char byte) {
    if (state == "final") {
        return false;
    }
    if (state == "root start") {
        return !test::readStyleSheetPart({byte}).log.empty();
    }
    return byte == ')' || state.find("brace close") == std::string::npos;
}

using Steps = std::unordered_map<std::string, std::bitset<256>>;

Steps everyStep() {
    Steps steps;
    for (const std::string& state : test::styleSheetStates()) {
        for (int byte = 0; byte < 256; ++byte) {
            steps[state][static_cast<std::size_t>(byte)] =
                canBeRead(state, static_cast<char>(byte));
        }
    }
    return steps;
}

TEST_F(StyleSheetGrammar, EveryByteInEveryStateDoesTheSame) {
    Steps missing = everyStep();
    const auto compare = [&](const std::string& text) {
        const bool same = agree(text);
        for (const auto& [state, byte] : expected.steps) {
            missing[state].reset(byte);
        }
        return same;
    };
    for (const auto& [state, way] : waysToStates()) {
        ASSERT_TRUE(compare(way)) << state;
        ASSERT_TRUE(compare(way + "{/")) << state;
        for (int byte = 1; byte < 256; ++byte) {
            ASSERT_TRUE(compare(way + static_cast<char>(byte) + "(1);")) << state;
        }
        for (const char byte : alphabet) {
            for (const char* const rest : {"b;c:d}e{f:g}", "{x:1}h{y:2}", "*/i{j:k}", "\"';}"}) {
                ASSERT_TRUE(compare(way + byte + rest)) << state;
            }
        }
    }
    for (const auto& [state, bytes] : missing) {
        EXPECT_TRUE(bytes.none()) << state << ": bytes, from 255 down: " << bytes;
    }
    EXPECT_GT(endless, 0u);
}

TEST_F(StyleSheetGrammar, EveryShortTextIsReadTheSame) {
    const std::string bytes = "a:; /*{}[\\\"'(),-1.#";
    for (const char first : bytes) {
        for (const char second : bytes) {
            for (const char third : bytes) {
                ASSERT_TRUE(agree({first, second, third}));
            }
        }
    }
}

class RandomSheets {
public:
    explicit RandomSheets(unsigned seed) : engine(seed) {}

    /// Pieces of the language in any order, some of them whole rule sets.
    std::string pieces() {
        static const char* const all[] = {"a",        "b",
                                          "P",        ".KRCC",
                                          "#id",      ":hover",
                                          "::x",      "*",
                                          " ",        "  ",
                                          "\n",       "\r\n",
                                          ",",        "{",
                                          "}",        ";",
                                          ":",        "(",
                                          ")",        "[",
                                          "]",        "\"",
                                          "'",        "/*",
                                          "*/",       "/**/",
                                          "/",        "\\",
                                          "\\41 ",    "\\n",
                                          "\\4142",   "-",
                                          "-1",       "12",
                                          "1.5",      ".5",
                                          "px",       "%",
                                          "50%",      "#abc",
                                          "#12",      "#123456",
                                          "rgb(",     "hsva(1,50%,3)",
                                          "url( x )", "red",
                                          "name:",    "lang: ko;",
                                          "{x:1}",    "a{b:c}",
                                          "a{;",      "a[;",
                                          "x: y; ",   "!",
                                          "@",        "<!--",
                                          "-1\\41",   "-1px(",
                                          "\"'\"",    "'\"'",
                                          "\\\r\n",   "\xea\xb0\x80",
                                          "0",        "_"};
        std::string text;
        for (unsigned count = below(16); count > 0; --count) {
            text += all[below(sizeof all / sizeof *all)];
        }
        return text;
    }

    std::string bytes() {
        std::string text;
        for (unsigned count = below(24); count > 0; --count) {
            text += alphabet[below(static_cast<unsigned>(alphabet.size()))];
        }
        return text;
    }

    /// A sheet as people write it, with a few bytes changed, lost, doubled or moved.
    std::string mutated() {
        static const char* const sheets[] = {
            "P { margin-left: 29pt; font-size: 14pt; color: white }\n"
            ".KRCC { Name: Korean; lang: ko-KR; SAMIType: CC; }\n"
            "#STDPrn { Name: 'Standard'; } /* end */",
            "P {font-family: Tahoma, \"Gulim\"; background-color: rgb(0, 0, "
            "50%)}.ENCC{name:English}",
            "color: red; font-size: 12px; width: -1.5em 50% .5 -1\\41 x",
            "a b.c, d#e:f::g[h=\"i\"] * {x: url( a.png ) -2px(3) \"a\\\"b\\41 c\" '\\'' #abc "
            "#123456}",
            "a:hover{x:f(g(1) \"b)\" /* c */ d), hsv(300, 50%, 1)}b/**/c{}\\64 e{}",
        };
        std::string text = sheets[below(sizeof sheets / sizeof *sheets)];
        for (unsigned count = 1 + below(4); count > 0 && !text.empty(); --count) {
            mutate(text);
        }
        return text;
    }

private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(engine() % limit); }

    void mutate(std::string& text) {
        const unsigned at = below(text.size());
        switch (below(5)) {
            case 0: text[at] = alphabet[below(alphabet.size())]; break;
            case 1: text.erase(at, 1 + below(3)); break;
            case 2: text.insert(at, 1, alphabet[below(alphabet.size())]); break;
            case 3: text.insert(at, text.substr(below(text.size()), below(12))); break;
            default: text.resize(at); break;
        }
    }

    std::mt19937 engine;
};

unsigned numberOfCases() {
    const char* const wanted = std::getenv("SUBTITLES_CASES");
    return wanted != nullptr ? static_cast<unsigned>(std::atoi(wanted)) : 20000;
}

TEST_F(StyleSheetGrammar, RandomSheetsAreReadTheSame) {
    const unsigned cases = numberOfCases();
    RandomSheets sheets(cases);
    for (unsigned i = 0; i < cases; i += 5) {
        ASSERT_TRUE(agree(sheets.pieces()));
        ASSERT_TRUE(agree(sheets.pieces()));
        ASSERT_TRUE(agree(sheets.bytes()));
        ASSERT_TRUE(agree(sheets.mutated()));
        ASSERT_TRUE(agree(sheets.mutated()));
    }
}

}  // namespace
}  // namespace subtitles
