// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Patterns on PCRE2.
//
// A subject is checked for well-formed UTF-8 here, whole and once, so that a search never depends
// on which part of a malformed text PCRE2 happens to look at, and so that replacing every match
// does not check the rest of the text again at each one.

#include "foundation/regular-expression.h"

#include <cstddef>
#include <utility>

#define PCRE2_CODE_UNIT_WIDTH 8  // NOLINT(readability-identifier-naming): PCRE2's own switch
#include <pcre2.h>

#include "foundation/exception.h"
#include "foundation/utf8.h"

namespace fn {

static_assert(RegularExpression::UTF8 == PCRE2_UTF, "the options are PCRE2's bits");

namespace {

struct FreeCode {
    void operator()(pcre2_code* code) const { pcre2_code_free(code); }
};
struct FreeMatchData {
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};
using CodePtr = std::unique_ptr<pcre2_code, FreeCode>;
using MatchDataPtr = std::unique_ptr<pcre2_match_data, FreeMatchData>;

PCRE2_SPTR units(const char* text) {
    return reinterpret_cast<PCRE2_SPTR>(text);
}

std::uint32_t pcreOptions(RegularExpression::Options options) {
    return static_cast<std::uint32_t>(options & 0xffffffffU);
}

String errorText(int error) {
    char text[256];
    const int size =
        pcre2_get_error_message(error, reinterpret_cast<PCRE2_UCHAR*>(text), sizeof(text));
    return size >= 0 ? String(text) : String("error ") + String::number(error);
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80U;
}

CodePtr compile(const String& pattern, std::uint32_t options) {
    if ((options & PCRE2_UTF) != 0 && !utf8::isValid(to_string_view(pattern))) {
        throw UTF8Exception("A pattern in UTF-8 mode is malformed UTF-8");
    }
    int error = 0;
    PCRE2_SIZE offset = 0;
    CodePtr code(
        pcre2_compile(units(pattern.data()), pattern.size(), options, &error, &offset, nullptr));
    if (code == nullptr) {
        throw DataFormatException(String("Invalid pattern \"") + pattern + "\" at byte " +
                                  std::to_string(offset) + ": " + errorText(error));
    }
    // Systems that forbid writable code refuse this, and PCRE2 interprets then: the answers are the
    // same, so nobody needs to know.
    pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE);
    return code;
}

/// The groups' names by number; empty where the pattern names none.
std::vector<String> groupNames(const pcre2_code* code) {
    std::uint32_t nameCount = 0;
    pcre2_pattern_info(code, PCRE2_INFO_NAMECOUNT, &nameCount);
    if (nameCount == 0) {
        return {};
    }
    std::uint32_t groupCount = 0;
    std::uint32_t entrySize = 0;
    PCRE2_SPTR entry = nullptr;
    pcre2_pattern_info(code, PCRE2_INFO_CAPTURECOUNT, &groupCount);
    pcre2_pattern_info(code, PCRE2_INFO_NAMEENTRYSIZE, &entrySize);
    pcre2_pattern_info(code, PCRE2_INFO_NAMETABLE, &entry);
    std::vector<String> names(groupCount + 1);
    for (std::uint32_t i = 0; i < nameCount; ++i, entry += entrySize) {
        // Each entry is the group's number in two bytes, the high one first, and the name.
        names[static_cast<std::size_t>(entry[0] << 8U | entry[1])] =
            reinterpret_cast<const char*>(entry + 2);
    }
    return names;
}

}  // namespace

struct RegularExpression::Code {
    Code(const String& pattern, std::uint32_t options)
        : code(compile(pattern, options)),
          names(groupNames(code.get())),
          isUTF8((options & PCRE2_UTF) != 0) {}

    CodePtr code;
    std::vector<String> names;
    bool isUTF8;
};

namespace {

/// One or several searches in one subject.
///
/// The room for the result is made anew each time: it takes 13 ns of the 170 ns that a cue's time
/// line takes, and an interpreted search on a long line would leave megabytes behind in room that
/// is kept.
class Search {
public:
    Search(const pcre2_code* code, const String& subject, std::uint32_t options)
        : program(code),
          searched(subject),
          baseOptions(options),
          matchData(pcre2_match_data_create_from_pattern(code, nullptr)) {
        if (matchData == nullptr) {
            throw RuntimeException("Out of memory for a pattern's match");
        }
    }

    /// Looks for the next match at or behind `start`. With `nonEmptyAtStart` one that starts there
    /// must not be empty.
    bool find(std::size_t start, bool nonEmptyAtStart = false) {
        const std::uint32_t options = baseOptions | (nonEmptyAtStart ? PCRE2_NOTEMPTY_ATSTART : 0U);
        int result = run(start, options);
        if (result == PCRE2_ERROR_JIT_STACKLIMIT) {
            // The compiled code works on a small fixed stack, the interpreter on the heap.
            result = run(start, options | PCRE2_NO_JIT);
        }
        if (result < 0 && result != PCRE2_ERROR_NOMATCH) {
            throw RuntimeException(String("A pattern cannot be matched: ") + errorText(result));
        }
        return result >= 0;
    }

    std::size_t groupCount() const { return pcre2_get_ovector_count(matchData.get()); }
    /// Both are `PCRE2_UNSET` for a group that took no part.
    std::size_t begin(std::size_t group) const { return offsets()[2 * group]; }
    std::size_t end(std::size_t group) const { return offsets()[2 * group + 1]; }

private:
    int run(std::size_t start, std::uint32_t options) {
        return pcre2_match(program, units(searched.data()), searched.size(), start, options,
                           matchData.get(), nullptr);
    }
    const PCRE2_SIZE* offsets() const { return pcre2_get_ovector_pointer(matchData.get()); }

    const pcre2_code* program;
    const String& searched;
    std::uint32_t baseOptions;
    MatchDataPtr matchData;
};

/// The options for searching this subject, once it is known to be sound.
std::uint32_t searchOptions(bool isUTF8, const String& subject, std::size_t start,
                            RegularExpression::Options options) {
    if (!isUTF8) {
        return pcreOptions(options);
    }
    const bool startsInside = start < subject.size() && isContinuation(subject[start]);
    if (startsInside || !utf8::isValid(to_string_view(subject))) {
        throw UTF8Exception("The text that a pattern is matched against is malformed UTF-8");
    }
    return pcreOptions(options) | PCRE2_NO_UTF_CHECK;
}

}  // namespace

RegularExpression::RegularExpression(const String& pattern, Options options)
    : program(std::make_unique<Code>(pattern, pcreOptions(options))) {}
RegularExpression::RegularExpression(RegularExpression&&) noexcept = default;
RegularExpression& RegularExpression::operator=(RegularExpression&&) noexcept = default;
RegularExpression::~RegularExpression() = default;

int RegularExpression::match(const String& subject, unsigned long start,
                             std::vector<Match>& matches, Options options) const {
    const std::uint32_t bits = searchOptions(program->isUTF8, subject, start, options);
    Search search(program->code.get(), subject, bits);
    if (start > subject.size() || !search.find(start)) {
        matches.clear();
        return 0;
    }
    matches.resize(search.groupCount());
    for (std::size_t group = 0; group < matches.size(); ++group) {
        Match& match = matches[group];
        const bool tookPart = search.begin(group) != PCRE2_UNSET;
        match.offset = tookPart ? search.begin(group) : 0;
        match.length = tookPart ? search.end(group) - search.begin(group) : 0;
        match.name = program->names.empty() ? String() : program->names[group];
    }
    return static_cast<int>(matches.size());
}

int RegularExpression::subst(String& subject, unsigned long start, const String& replacement,
                             Options options) const {
    const std::uint32_t bits = searchOptions(program->isUTF8, subject, start, options);
    Search search(program->code.get(), subject, bits);
    if (start > subject.size() || !search.find(start)) {
        return 0;
    }
    String result;
    std::size_t copied = 0;
    int count = 0;
    bool found = true;
    while (found) {
        result.append(subject, copied, search.begin(0) - copied).append(replacement);
        copied = search.end(0);
        ++count;
        // The search goes on where the match ended. Behind an empty match it must not find the same
        // again; PCRE2 then moves on by itself, a whole code point in UTF-8 mode.
        const bool wasEmpty = search.begin(0) == search.end(0);
        found = (options & Global) != 0 && search.find(copied, wasEmpty);
    }
    result.append(subject, copied, String::npos);
    subject.swap(result);
    return count;
}

}  // namespace fn
