// SPDX-License-Identifier: LGPL-2.1-or-later
//
// ASS and SSA scripts, as far as a stream of raw events needs them read.
//
// A script is read in three stages with no way back: all lines up to "[Events]" are the header, the
// first "Format:" line behind it names the columns, and from there on every "Dialogue:" line is an
// event. What an event's text says stays in the event.

#include "subtitles/ass-reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

#include "foundation/ascii.h"
#include "foundation/utf8.h"

#include "subtitles/buffer-blocks.h"
#include "subtitles/text-lines.h"

namespace subtitles {

namespace ass {

namespace {

/// What an event is made of, as places in `Values`. The fields from Layer to Text are those of the
/// event string, in its order.
enum Field : std::size_t {
    Layer,
    Style,
    Name,
    MarginL,
    MarginR,
    MarginV,
    Effect,
    Text,
    Start,
    End,
    FieldCount
};

// clang-format off
constexpr const char* fieldNames[FieldCount] = {
    "layer", "style", "name", "marginl", "marginr", "marginv", "effect", "text", "start", "end",
};
// clang-format on

using Values = std::array<fn::StringView, FieldCount>;

/// Where the name first stands; the number of names where it is none of them.
std::size_t columnOf(const std::vector<fn::String>& names, fn::StringView name) {
    return static_cast<std::size_t>(
        std::distance(names.begin(), std::find(names.begin(), names.end(), name)));
}

/// The columns of a script. They are looked up once, so that an event costs no more than its own
/// length however many columns the script has.
class Columns {
public:
    explicit Columns(const std::vector<fn::String>& names);

    /// The values of one line, which are views of it. They stand as they are in the line; the last
    /// column takes all that is left, commas included. A column that the script or the line does
    /// not have is empty.
    Values valuesOf(fn::StringView line) const;

private:
    struct Column {
        std::size_t index;  ///< In the line.
        std::size_t field;
    };

    std::vector<Column> known;  ///< The known ones, in the order of the line.
    std::size_t count;          ///< Of all columns.
};

Columns::Columns(const std::vector<fn::String>& names) : count(names.size()) {
    for (std::size_t field = 0; field < FieldCount; ++field) {
        const std::size_t index = columnOf(names, fieldNames[field]);
        if (index < count) {
            known.push_back({index, field});
        }
    }
    std::sort(known.begin(), known.end(),
              [](const Column& a, const Column& b) { return a.index < b.index; });
}

Values Columns::valuesOf(fn::StringView line) const {
    Values values;
    fn::StringView rest = line;
    std::size_t index = 0;  // Of the column with which the rest begins.
    for (const Column& column : known) {
        for (; index < column.index; ++index) {
            const std::size_t comma = rest.find(',');
            if (comma == fn::StringView::npos) {
                return values;
            }
            rest.remove_prefix(comma + 1);
        }
        const bool last = index + 1 == count;
        const std::size_t end = last ? fn::StringView::npos : rest.find(',');
        values[column.field] = rest.substr(0, end);
        if (end == fn::StringView::npos) {
            return values;
        }
        rest.remove_prefix(end + 1);
        ++index;
    }
    return values;
}

bool isASCII(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

/// True where the text in lower case begins with the word, which is ASCII. The text is well-formed.
bool startsLowered(fn::StringView text, fn::StringView word) {
    const fn::StringView start = text.substr(0, word.size());
    if (std::all_of(start.begin(), start.end(), isASCII)) {
        return std::equal(
            start.begin(), start.end(), word.begin(), word.end(),
            [](char letter, char expected) { return fn::ascii::toLower(letter) == expected; });
    }
    // A letter outside ASCII can be an ASCII one in lower case. None has more than four bytes.
    const fn::String longest(text.substr(0, 4 * word.size()));
    return fn::to_string_view(longest.toLowerCase()).substr(0, word.size()) == word;
}

/// Behind the copied bytes.
std::uint8_t* copyTo(std::uint8_t* to, fn::StringView bytes) {
    if (!bytes.empty()) {
        std::memcpy(to, bytes.data(), bytes.size());
    }
    return to + bytes.size();
}

/// The lines of a script without the white space at their ends. Malformed text is refused as
/// `trim` refuses it, at the line that has it.
class ScriptLines {
public:
    explicit ScriptLines(fn::StringView text) : lines(text), allValid(fn::utf8::isValid(text)) {}

    std::optional<fn::StringView> next() {
        whole = lines.next();
        if (!whole) {
            return std::nullopt;
        }
        if (!allValid && !fn::utf8::isValid(*whole)) {
            fn::String(*whole).trim(true);
        }
        return fn::utf8::trimmed(*whole);
    }

    /// The last line with its white space.
    fn::StringView untrimmed() const { return *whole; }

private:
    TextLines lines;
    bool allValid;  ///< Then no line is looked through again.
    std::optional<fn::StringView> whole;
};

/// All lines before "[Events]", which is passed over, each with a line feed behind it.
fn::String readHeader(ScriptLines& lines) {
    constexpr fn::StringView word = "[events]";
    fn::String header;
    while (const auto line = lines.next()) {
        if (startsLowered(*line, word) && fn::String(*line).toLowerCase() == word) {
            break;
        }
        header.append(lines.untrimmed()).append(1, '\n');
    }
    return header;
}

/// The column names of the first format line, in lower case. None at the end of the script.
std::vector<fn::String> readFormat(ScriptLines& lines) {
    constexpr fn::StringView word = "format:";
    while (const auto line = lines.next()) {
        if (startsLowered(*line, word)) {
            return fn::String(fn::String(*line).toLowerCase().substr(word.size()))
                .split(',', fn::String::TrimAndSkipEmptyParts, -1);
        }
    }
    return {};
}

/// The event as its buffer holds it: the read order, then eight fields.
fn::AutoPtr<_GstBuffer> makeEvent(int readOrder, const Values& values, BufferBlocks& blocks) {
    std::array<char, std::numeric_limits<int>::digits10 + 2> digits = {};
    const char* const end = std::to_chars(digits.data(), &digits.back(), readOrder).ptr;
    const fn::StringView number(digits.data(), static_cast<std::size_t>(end - digits.data()));
    std::size_t size = number.size();
    for (std::size_t field = Layer; field <= Text; ++field) {
        size += 1 + values[field].size();
    }
    BufferBlocks::Bytes bytes = blocks.allocate(size);
    std::uint8_t* to = copyTo(bytes.data(), number);
    for (std::size_t field = Layer; field <= Text; ++field) {
        *to++ = ',';
        to = copyTo(to, values[field]);
    }
    return BufferBlocks::toBuffer(std::move(bytes));
}

void readEvents(ScriptLines& lines, const Columns& columns, BufferBlocks& blocks,
                SubtitleData& data) {
    constexpr fn::StringView word = "dialogue:";
    constexpr fn::StringView usual = "Dialogue:";  // Needs no look at each letter.
    int readOrder = 0;
    while (const auto line = lines.next()) {
        if (line->substr(0, usual.size()) != usual && !startsLowered(*line, word)) {
            continue;
        }
        const Values values = columns.valuesOf(line->substr(word.size()));
        const GstClockTime start = timeIn(values[Start]);
        if (start == GST_CLOCK_TIME_NONE) {
            continue;
        }
        fn::AutoPtr<_GstBuffer> buffer = makeEvent(readOrder++, values, blocks);
        GST_BUFFER_PTS(buffer.get()) = start;
        const GstClockTime end = timeIn(values[End]);
        if (end != GST_CLOCK_TIME_NONE && end > start) {
            GST_BUFFER_DURATION(buffer.get()) = end - start;
        }
        data.buffers.push_back(std::move(buffer));
    }
}

}  // namespace

fn::String getSegment(const std::vector<fn::String>& names, const std::vector<fn::String>& values,
                      const fn::String& name, const fn::String& defaultValue) {
    const std::size_t column = columnOf(names, fn::to_string_view(name));
    // A line may have fewer values than the script has columns.
    return column < names.size() && column < values.size() ? values[column] : defaultValue;
}

}  // namespace ass

fn::AutoPtr<SubtitleData> parseASS(const fn::String& text) {
    ass::ScriptLines lines(fn::to_string_view(text));
    const fn::String header = ass::readHeader(lines);
    BufferBlocks blocks;
    BufferBlocks::Bytes head = blocks.allocate(header.size());
    ass::copyTo(head.data(), fn::to_string_view(header));
    fn::AutoPtr<SubtitleData> data(new SubtitleData(
        "application/x-ass", BufferBlocks::toBuffer(std::move(head)), SubtitleData::NANOSECONDS));
    const std::vector<fn::String> names = ass::readFormat(lines);
    if (!names.empty()) {
        ass::readEvents(lines, ass::Columns(names), blocks, *data);
    }
    return data;
}

}  // namespace subtitles
