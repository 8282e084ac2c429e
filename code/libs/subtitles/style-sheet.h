// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>
#include <vector>

#include "foundation/string.h"

#include "subtitles/export.h"

namespace subtitles {

/// A small style sheet, as SMI documents carry it: rule sets, and properties that stand alone.
///
/// Plain records: a copy is deep, nothing is shared, and nothing is interpreted. A colour stays
/// channels and a length a number with a unit; no rule is matched with anything.
struct StyleSheet {
    /// One value of a property. `type` says which of the other fields count.
    struct Value {
        enum Type {
            None = 0,        ///< No value; nothing in a text makes one.
            RGB = 1,         ///< "#" with 3 or 6 digits, `rgb(...)` or `rgba(...)`.
            HSV = 2,         ///< `hsv(...)` or `hsva(...)`.
            Number = 3,      ///< A number, with or without a unit.
            Percentage = 4,  ///< A number and "%".
            String = 5,      ///< Quoted text, a bare word, or any other `name(...)`.
        };

        Type type;
        double number;          ///< Of a `Number`.
        double percentage = 0;  ///< Of a `Percentage`, as written: 50% is 50.
        fn::String string;      ///< Of a `String`; of `name(...)` the text between the brackets.
        fn::String spare;       ///< Cleared with the record, and otherwise unused.
        fn::String unit;        ///< Of a `Number`, empty where it has none.
        fn::String braceName;   ///< The name of a `String` that was written `name(...)`.
        std::uint8_t red;
        std::uint8_t green;
        std::uint8_t blue;
        std::uint8_t hue;  ///< 0 to 255, like the two that follow: stored, never converted.
        std::uint8_t saturation;
        std::uint8_t brightness;
        std::uint8_t alpha;  ///< Of an `RGB` as of an `HSV` value, 0 to 255.

        /// A value of the type `None`.
        SUBTITLES_EXPORT Value();

        /// Makes this an empty value of the type. `percentage` and `braceName` stay: a value from
        /// `name(...)` has its name before it is known which type it gets.
        SUBTITLES_EXPORT void reset(Type newType);
    };

    struct Property {
        fn::String name;
        std::vector<Value> values;
    };

    /// One link in a selector's chain: `name#id.class:pseudo[attribute]`.
    struct SelectorSegment {
        fn::String name;                        ///< "*" for every element.
        fn::String id;                          ///< The last one where there are several.
        std::vector<fn::String> classes;        ///< A name may begin with "!".
        std::vector<fn::String> pseudoClasses;  ///< One that was written "::name" is ":name".
        std::vector<fn::String> attributes;     ///< The text between "[" and "]" as it stands.
    };

    struct Selector {
        std::vector<SelectorSegment> segments;
    };

    struct RuleSet {
        /// A chain "a b" has a selector for each of its starts: [a] and [a, b].
        std::vector<Selector> selectors;
        std::vector<Property> properties;
    };

    std::vector<RuleSet> ruleSets;     ///< In source order.
    std::vector<Property> properties;  ///< Those outside any rule set with a selector.

    /// Adds what the text holds to the sheet. Nothing is cleared and nothing reported: a fault in
    /// a declaration costs that declaration, any other fault ends the reading, and what was
    /// complete by then stays. The text ends at its first NUL.
    ///
    /// The language looks like CSS and is not. A text that is no rule set is read once more, from
    /// where the rule set began, as bare properties ("color: red; font-size: 12px"). A rule set
    /// counts only when a byte follows its "}", the end of the text being one. Two blanks between
    /// two names of a selector are a fault, and so is a comment there that has a blank beside it.
    ///
    /// For texts that the caller trusts: the rules have no test of progress. On some texts this
    /// operation never returns ("color: red; )" adds its property again and again), on some it
    /// takes time and memory that grow with the square of the length (a chain "a a a ..." keeps a
    /// selector for each of its starts; "a[;" over and over is read to the end from each "a").
    SUBTITLES_EXPORT void parse(const fn::String& text);

    /// The sheet as text, for logs and for people. It does not read back as it was: a chain "a b"
    /// prints as "ab", and of a double quote in a string the first one ends it.
    SUBTITLES_EXPORT fn::String toString() const;
};

}  // namespace subtitles
