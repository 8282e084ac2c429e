// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <list>
#include <mutex>
#include <vector>

#include "foundation/string.h"

#include "subtitles/export.h"

namespace subtitles {

/// A human language and the codes by which subtitle files and players name it, and the closed table
/// of those that the library can tell apart.
///
/// The table may be read from any thread at once. Values are plain and copyable.
class SUBTITLES_EXPORT Language {
public:
    Language(const fn::String& ownName, const fn::String& code);
    Language(const fn::String& ownName, const std::vector<fn::String>& ownCodes);

    /// Appends a language to the end of the table. The first code is taken even where it is empty,
    /// the others only where they are not.
    ///
    /// Called before the table is first read, it puts its entry in front of the library's own;
    /// later entries stand behind Unknown, and are found by the codes that nobody before them has.
    /// Takes no lock: nobody may read the table meanwhile.
    static void add(const fn::String& newName, const fn::String& firstCode,
                    const fn::String& secondCode, const fn::String& thirdCode);

    /// The table in the order of its search; the last of the library's own entries is Unknown.
    static const std::list<Language>& languages();

    /// The first language of the table that has the code, in any ASCII case; Unknown, with the code
    /// "UND", where none has it. Names are not searched. The reference is valid for the life of the
    /// process.
    static const Language& forCode(const fn::String& code);

    /// Whether `code` is one of the codes, all of it. The 26 letters of ASCII match in either case,
    /// every other byte only itself.
    bool matches(const fn::String& code) const;

    fn::String name;                ///< In English, UTF-8.
    std::vector<fn::String> codes;  ///< The case of a code says nothing.

    static std::list<Language> _languages;  ///< The table, empty until it is first read.
    static Language _unknown;               ///< What every failed search finds.
    static std::once_flag _flag;            ///< Guards the filling of the table.
};

}  // namespace subtitles
