// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/subtitles/style-sheet-reference-grammar.h"

#include <map>
#include <sstream>
#include <stdexcept>
#include <unordered_map>

namespace test {
namespace {

// "state | bytes | next state | actions". The first line that names a byte counts. Words stand for
// several bytes or for several lines:
//
//     @group            the lines up to the next one belong to states of this group
//     ws nmstart ...    the sets in `bytesOf`
//     %name             more bytes of a name: nmchar and a backslash, both to the same state
//     %segment-end E    what may follow a part of a segment; E adds the part
//     %segment-start A  how a segment starts
//     %end T            what may follow a value; T adds it
//     \ and /           open an escape or a comment, and the next state is the one behind it
const char selectorGrammar[] = R"(
@top
top           | nul | final |
top           | ws | top |
top           | / | top |
top           | %segment-start BRS BS BSS
after rule    | nul | final | ERS
after rule    | ws | top | ERS
after rule    | / | top | ERS
after rule    | %segment-start ERS BRS BS BSS
@final
final         |
@selector
type name     | %name
type name     | %segment-end setSelectorSegmentName
id start      | \ | id name | Clear
id start      | nmstart | id name | Clear Append
id name       | %name
id name       | %segment-end setSelectorSegmentId
class start   | ! | class not | Clear Append
class start   | \ | class name | Clear
class start   | nmstart | class name | Clear Append
class not     | \ | class name |
class not     | nmstart | class name | Append
class name    | %name
class name    | %segment-end addSelectorSegmentClass
pseudo start  | ! | pseudo not | Clear Append
pseudo start  | : | pseudo colon | Clear Append
pseudo start  | \ | pseudo name | Clear
pseudo start  | nmstart | pseudo name | Clear Append
pseudo colon  | ! | pseudo not | Append
pseudo colon  | \ | pseudo name |
pseudo colon  | nmstart | pseudo name | Append
pseudo not    | \ | pseudo name |
pseudo not    | nmstart | pseudo name | Append
pseudo name   | %name
pseudo name   | %segment-end addSelectorSegmentPseudoClass
universal     | %segment-end AppendStar setSelectorSegmentName
attribute     | ] | attribute end |
attribute     | / | attribute |
attribute     | any | attribute | Append
attribute end | %segment-end addSelectorSegmentAttribute
first gap     | %segment-start BSS
first gap     | , | comma gap |
first gap     | { | rule body |
first gap     | ws | second gap |
first gap     | / | second gap |
second gap    | , | comma gap |
second gap    | { | rule body |
second gap    | ws | second gap |
second gap    | / | second gap |
comma gap     | %segment-start BS BSS
comma gap     | ws | comma gap |
comma gap     | / | comma gap |
@rule body
rule body     | ws ; | rule body |
rule body     | } | after rule |
rule body     | / | rule body |
rule body     | \ | property name | BP Clear
rule body     | nmstart | property name | BP Clear Append
@skip
skip          | ; } | rule body | Hold
skip          | any | skip |
root skip     | ; } | top |
root skip     | any | root skip |
@brace
body          | ( | body | BraceUp
body          | ) | body | BraceDown
body          | ws | body | appendBraceValueWhitespace
body          | " | double quoted text | Append
body          | ' | single quoted text | Append
body          | / | body |
body          | any | body | Append
double quoted text | " | body | Append
double quoted text | \\ | double quoted any | Append
double quoted text | ' | dead |
double quoted text | any | double quoted text | Append
double quoted any  | any | double quoted text | Append
single quoted text | ' | body | Append
single quoted text | \\ | single quoted any | Append
single quoted text | any | single quoted text | Append
single quoted any  | any | single quoted text | Append
@root
root start    | \ | root property name | BP Clear
root start    | nmstart | root property name | BP Clear Append
)";

// Read twice, the second time with "root " in front of each state.
const char declarationGrammar[] = R"(
property name | %name
property name | : | value start | setPropertyName
property name | ws | name gap | setPropertyName
property name | / | name gap | setPropertyName
name gap      | : | value start |
name gap      | ws | name gap |
name gap      | / | name gap |
value start   | ws | value start |
value start   | / | value start |
value start   | %value-start
value gap     | ws , | value gap |
value gap     | / | value gap |
value gap     | %value-start
value gap     | %declaration-end
double quoted | " | string end |
double quoted | \ | double quoted |
double quoted | any | double quoted | Append
single quoted | ' | string end |
single quoted | \ | single quoted |
single quoted | any | single quoted | Append
string end    | %end ASV
hex start     | hex | hex 1 | Clear Append
hex 1         | hex | hex 2 | Append
hex 2         | hex | hex 3 | Append
hex 3         | hex | hex 4 | Append
hex 3         | %end addHexPropertyValue
hex 4         | hex | hex 5 | Append
hex 5         | hex | hex 6 | Append
hex 6         | %end addHexPropertyValue
word          | %name
word          | ( | brace close | Brace
word          | %end ASV
minus         | . | fraction start | Append
minus         | digit | signed integer | Append
minus         | nmchar | word | Append
minus         | \ | word |
minus         | ( | brace close | Brace
minus         | %end ASV
integer       | digit | integer | Append
integer       | . | fraction start | Append
integer       | % | percent | Convert
integer       | \ | unit | Convert Clear
integer       | nmstart | unit | Convert Clear Append
integer       | %end Convert addNumberPropertyValue(false)
fraction start| digit | fraction | Append
fraction      | digit | fraction | Append
fraction      | % | percent | Convert
fraction      | \ | unit | Convert Clear
fraction      | nmstart | unit | Convert Clear Append
fraction      | %end Convert addNumberPropertyValue(false)
percent       | %end addPercentagePropertyValue
unit          | %name
unit          | %end addNumberPropertyValue(true)
signed integer| digit | signed integer | Append
signed integer| . | fraction start | Append
signed integer| % | percent | Convert
signed integer| \ | signed unit first | Convert Clear
signed integer| nmstart | signed unit | Convert Clear Append
signed integer| ( | brace close | Brace
signed integer| %end Convert addNumberPropertyValue(false) ASV
signed unit   | %name
signed unit   | ( | brace close | Brace
signed unit   | %end addNumberPropertyValue(true) ASV
signed unit first | nmchar | signed unit first | Append
signed unit first | \ | unit |
signed unit first | ( | brace close | Brace
signed unit first | %end addNumberPropertyValue(true) ASV
brace close   | ) | string end | endBraceValue
)";

const char valueStarts[] = R"(
" | double quoted | Clear
' | single quoted | Clear
# | hex start |
- | minus | Clear Append
. | fraction start | Clear Append
digit | integer | Clear Append
word-start | word | Clear Append
\ | word | Clear
)";

using Words = std::vector<std::string>;

Words wordsOf(const std::string& text) {
    std::istringstream stream(text);
    Words words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::string stripped(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Words linesOf(const std::string& text) {
    std::istringstream stream(text);
    Words lines;
    for (std::string line; std::getline(stream, line);) {
        if (!stripped(line).empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

Words fieldsOf(const std::string& line) {
    Words fields(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '|') {
            fields.emplace_back();
        } else {
            fields.back() += line[i];
        }
    }
    for (std::string& field : fields) {
        field = stripped(field);
    }
    return fields;
}

bool isSpace(int byte) {
    return (byte >= 9 && byte <= 13) || byte == ' ';
}

bool isDigit(int byte) {
    return byte >= '0' && byte <= '9';
}

bool isHex(int byte) {
    return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

bool isWordStart(int byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' ||
           byte >= 128;
}

bool isNameStart(int byte) {
    return isWordStart(byte) || byte == '-';
}

bool isIn(const std::string& set, int byte) {
    if (set.size() == 1) {
        return static_cast<unsigned char>(set[0]) == byte;
    }
    const std::map<std::string, bool> sets = {
        {"nul", byte == 0},
        {"ws", isSpace(byte)},
        {"digit", isDigit(byte)},
        {"hex", isHex(byte)},
        {"word-start", isWordStart(byte)},
        {"nmstart", isNameStart(byte)},
        {"nmchar", isNameStart(byte) || isDigit(byte)},
        {"\\\\", byte == '\\'},
        {"any", true},
    };
    return sets.at(set);
}

using Entry = StyleSheetEntry;

class Grammar {
public:
    Grammar() {
        for (const std::string& line : linesOf(selectorGrammar)) {
            if (line[0] == '@') {
                beginGroup(line.substr(1));
            } else {
                addLine(line, "");
            }
        }
        beginGroup("declaration");
        for (const std::string& line : linesOf(declarationGrammar)) {
            addLine(line, "");
        }
        beginGroup("root");
        for (const std::string& line : linesOf(declarationGrammar)) {
            addLine(line, "root ");
        }
    }

    const StyleSheetState& at(const std::string& state) const { return states.at(state); }

    Words names() const {
        Words names;
        for (const auto& state : states) {
            names.push_back(state.first);
        }
        return names;
    }

private:
    void beginGroup(const std::string& name) { group = name; }

    void addLine(const std::string& line, const std::string& prefix) {
        const Words fields = fieldsOf(line);
        const std::string state = prefix + fields[0];
        begin(state);
        if (fields[1].empty()) {
            return;
        }
        if (fields[1].size() > 1 && fields[1][0] == '%') {
            Words words = wordsOf(fields[1]);
            const std::string macro = words[0];
            words.erase(words.begin());
            expand(state, prefix, macro, words);
            return;
        }
        for (const std::string& set : wordsOf(fields[1])) {
            add(state, set, prefix + fields[2], wordsOf(fields[3]));
        }
    }

    void expand(const std::string& state, const std::string& prefix, const std::string& macro,
                const Words& actions) {
        const auto with = [&actions](const Words& more) {
            Words all = actions;
            all.insert(all.end(), more.begin(), more.end());
            return all;
        };
        if (macro == "%name") {
            add(state, "nmchar", state, {"Append"});
            add(state, "\\", state, {});
        } else if (macro == "%segment-start") {
            add(state, "#", "id start", actions);
            add(state, ".", "class start", actions);
            add(state, ":", "pseudo start", actions);
            add(state, "[", "attribute", with({"Clear"}));
            add(state, "*", "universal", with({"Clear"}));
            add(state, "\\", "type name", with({"Clear"}));
            add(state, "nmstart", "type name", with({"Clear", "Append"}));
        } else if (macro == "%segment-end") {
            add(state, "#", "id start", actions);
            add(state, ".", "class start", actions);
            add(state, ":", "pseudo start", actions);
            add(state, "[", "attribute", with({"Clear"}));
            add(state, ",", "comma gap", with({"ESS", "ES"}));
            add(state, "{", "rule body", with({"ESS", "ES"}));
            add(state, "ws", "first gap", with({"ESS", "ES"}));
            add(state, "/", "first gap", with({"ESS", "ES"}));
        } else if (macro == "%end") {
            add(state, "ws", prefix + "value gap", actions);
            add(state, ",", prefix + "value gap", actions);
            add(state, "/", prefix + "value gap", actions);
            addDeclarationEnd(state, prefix, with({"EP"}));
        } else if (macro == "%declaration-end") {
            addDeclarationEnd(state, prefix, {"EP"});
        } else if (macro == "%value-start") {
            for (const std::string& line : linesOf(valueStarts)) {
                const Words fields = fieldsOf(line);
                add(state, fields[0], prefix + fields[1], wordsOf(fields[2]));
            }
        } else {
            throw std::logic_error(macro);
        }
    }

    void addDeclarationEnd(const std::string& state, const std::string& prefix, Words actions) {
        if (prefix.empty()) {
            add(state, ";", "rule body", actions);
            add(state, "}", "after rule", actions);
        } else {
            add(state, ";", "top", actions);
            actions.emplace_back("Hold");
            add(state, "nul", "top", actions);
        }
    }

    /// A state whose bytes are all errors of its group.
    void begin(const std::string& state) {
        if (states.count(state) != 0) {
            return;
        }
        const std::map<std::string, Entry> errors = {
            {"top", {"dead", {"FallBack"}}},
            {"final", {"dead", {}}},
            {"selector", {"dead", {"FallBack"}}},
            {"rule body", {"skip", {"logPropertyError", "Hold"}}},
            {"declaration", {"skip", {"logPropertyError", "Hold"}}},
            {"root", {"root skip", {"logPropertyError", "Hold"}}},
            {"skip", {"dead", {}}},
            {"brace", {"dead", {}}},
        };
        const std::map<std::string, Words> ends = {
            {"top", {}},
            {"final", {}},
            {"selector", {"FallBack"}},
            {"rule body", {"FallBack"}},
            {"declaration", {"logPropertyError"}},
            {"root", {"logPropertyError"}},
            {"skip", {}},
            {"brace", {}},
        };
        states[state].entries.assign(256, errors.at(group));
        states[state].endActions = ends.at(group);
        taken[state].assign(256, false);
    }

    void add(const std::string& state, const std::string& set, const std::string& next,
             const Words& actions) {
        for (int byte = 0; byte < 256; ++byte) {
            if (!isIn(set, byte) || taken[state][static_cast<std::size_t>(byte)]) {
                continue;
            }
            std::string target = next;
            if (set == "\\") {
                target = addEscape(next);
            } else if (set == "/") {
                target = addComment(next);
            }
            set256(state, byte, {target, actions});
        }
    }

    void set256(const std::string& state, int byte, const Entry& entry) {
        states[state].entries[static_cast<std::size_t>(byte)] = entry;
        taken[state][static_cast<std::size_t>(byte)] = true;
    }

    /// The states of an escape that leads to `next`. Those that read on as `next` does say so by
    /// the action "As", which is followed by the state whose entry counts.
    std::string addEscape(const std::string& next) {
        std::string escape = next + ", escape";
        if (states.count(escape) != 0) {
            return escape;
        }
        const bool isFirst = next.size() > 6 && next.substr(next.size() - 6) == " first";
        const std::string signedUnit = next.substr(0, next.size() - (isFirst ? 6 : 0));
        const std::string plainUnit =
            isFirst ? (next.substr(0, 5) == "root " ? "root unit" : "unit") : next;
        begin(escape);
        begin(next + ", return");
        for (int byte = 0; byte < 256; ++byte) {
            if (isHex(byte)) {
                set256(escape, byte, {next + ", hex 1", {"EscapeStart"}});
            } else if (byte != 10 && byte != 12 && byte != 13) {
                set256(escape, byte, {signedUnit, {"appendEscape"}});
            }
            set256(next + ", return", byte,
                   byte == 10 ? Entry{plainUnit, {}} : Entry{"", {"As", plainUnit}});
        }
        for (int digits = 1; digits <= 6; ++digits) {
            const std::string state = next + ", hex " + std::to_string(digits);
            begin(state);
            for (int byte = 0; byte < 256; ++byte) {
                Entry entry = {"", {"appendUnicodeEscape", "As", next}};
                if (isHex(byte) && digits < 6) {
                    entry = {next + ", hex " + std::to_string(digits + 1), {}};
                } else if (byte == 13) {
                    entry = {next + ", return", {"appendUnicodeEscape"}};
                } else if (isSpace(byte)) {
                    entry = {plainUnit, {"appendUnicodeEscape"}};
                }
                set256(state, byte, entry);
            }
        }
        return escape;
    }

    std::string addComment(const std::string& next) {
        std::string slash = next + ", slash";
        if (states.count(slash) != 0) {
            return slash;
        }
        begin(slash);
        if (group == "top") {
            states[slash].entries.assign(256, Entry{"dead", {}});
        } else if (group == "rule body") {
            states[slash].entries.assign(256, Entry{"dead", {"FallBack"}});
        }
        set256(slash, '*', {next + ", comment", {}});
        begin(next + ", comment");
        begin(next + ", star");
        for (int byte = 0; byte < 256; ++byte) {
            set256(next + ", comment", byte, {next + (byte == '*' ? ", star" : ", comment"), {}});
            set256(next + ", star", byte, {next + (byte == '*' ? ", star" : ", comment"), {}});
        }
        set256(next + ", star", '/',
               {next, group == "brace" ? Words{"appendBraceValueWhitespace"} : Words()});
        return slash;
    }

    std::string group;
    std::unordered_map<std::string, StyleSheetState> states;
    std::map<std::string, std::vector<bool>> taken;
};

const Grammar& grammar() {
    static const Grammar grammar;
    return grammar;
}

}  // namespace

const StyleSheetState& styleSheetState(const std::string& name) {
    return grammar().at(name);
}

std::vector<std::string> styleSheetStates() {
    return grammar().names();
}

}  // namespace test
