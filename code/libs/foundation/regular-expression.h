// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/export.h"
#include "foundation/string.h"

namespace fn {

/// A Perl-compatible pattern. Matching is const and may happen on any number of threads at once.
///
/// PCRE2 compiles it to machine code where the system allows that, and interprets it elsewhere,
/// with the same answers.
class FOUNDATION_EXPORT RegularExpression {
public:
    /// The low 32 bits are PCRE2's option bits.
    using Options = std::uint64_t;
    static constexpr Options UTF8 = 0x80000;       ///< Pattern and subject are UTF-8.
    static constexpr Options Global = 1ULL << 36;  ///< `subst` replaces every match.

    struct Match {
        std::uint64_t offset = 0;  ///< Bytes from the start of the subject.
        std::uint64_t length = 0;  ///< Bytes.
        String name;               ///< The group's name, where the pattern gives one.
    };

    /// Raises `fn::DataFormatException` where the pattern is no pattern.
    RegularExpression(const String& pattern, Options options);
    RegularExpression(RegularExpression&&) noexcept;
    RegularExpression& operator=(RegularExpression&&) noexcept;
    ~RegularExpression();

    /// Looks for the first match at or behind the byte `start`. Gives the number of entries in
    /// `matches`, 0 for no match; entry 0 is the whole match, entry k group k, and a group that
    /// took no part is empty.
    ///
    /// Raises `fn::UTF8Exception` with the UTF-8 option on malformed text and where `start` is
    /// inside a character, and `fn::RuntimeException` where the pattern exceeds PCRE2's limits on
    /// the subject.
    int match(const String& subject, unsigned long start, std::vector<Match>& matches,
              Options options = 0) const;

    /// Replaces the first match at or behind `start`, every one with `Global`. The replacement is
    /// taken as it stands. Gives the number of replacements, and raises what `match` raises.
    int subst(String& subject, unsigned long start, const String& replacement,
              Options options = 0) const;

private:
    struct Code;
    std::unique_ptr<Code> program;
};

}  // namespace fn
