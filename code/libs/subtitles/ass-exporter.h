// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/string.h"

#include "subtitles/attributed-text.h"
#include "subtitles/color.h"
#include "subtitles/export.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// A style of an ASS script: the looks of text in which no attribute is set. Sizes, widths and
/// margins are in the script's own pixels.
struct ASSStyle {
    /// White bold Arial with a black outline, at the lower edge.
    SUBTITLES_EXPORT ASSStyle();

    /// The format line of the script's style section, with its line end.
    SUBTITLES_EXPORT fn::String getFormat() const;
    /// The style line under a name, which is taken as it stands, with its line end. Border style
    /// and alignment are always 1, an outline, and 2, the lower edge's middle.
    SUBTITLES_EXPORT fn::String getStyle(const fn::String& name) const;

    fn::String fontName = "Arial";
    float fontSize = 38.0F;
    bool bold = true;
    bool italic = false;
    Color primaryColor = {0xFF, 0xFF, 0xFF};
    Color outlineColor = {0, 0, 0};
    std::uint8_t outlineAlpha = 0xC0;  ///< Opacity; 255 is opaque.
    float outline = 2.5F;              ///< Width.
    Color backColor = {0, 0, 0};       ///< Of the shadow.
    std::uint8_t backAlpha = 0x80;     ///< Opacity; 255 is opaque.
    float shadow = 0.0F;               ///< Distance.
    std::int32_t marginHorizontal = 20;
    std::int32_t marginVertical = 20;
};

/// Writes attributed text as the text field of an ASS event. The event's other fields and the rest
/// of the script are the caller's.
///
/// Operations change nothing: one exporter serves any number of threads. They fail on no text.
class SUBTITLES_EXPORT ASSExporter {
public:
    /// Takes a copy of the style that the events will name.
    explicit ASSExporter(const ASSStyle& style = ASSStyle());
    ASSExporter(const ASSExporter&) = default;
    ASSExporter(ASSExporter&&) noexcept = default;
    ASSExporter& operator=(const ASSExporter&) = default;
    ASSExporter& operator=(ASSExporter&&) noexcept = default;
    virtual ~ASSExporter();

    /// The block of codes between two runs, from the records of their `TextAttributesDelta`; empty
    /// where none of these attributes changes. What is removed falls back to `style`.
    ///
    /// Known are weight, style, underline, strike-through, family, both sizes and the foreground
    /// colour. Any change of weight is written as 900 at least, 400 included. A relative size is so
    /// many steps of 1.2 from the style's size.
    fn::String encodeAttributes(const TextAttributes& changed, const TextAttributes& removed,
                                const ASSStyle& style) const;

    /// The whole text, with "\N" for line feeds. The text of the runs is not escaped: braces and
    /// backslashes in it are codes to whoever reads the event. A NUL stays, also the one with which
    /// the readers end a cue. Codes of the first run are written even where they agree with the
    /// style, and nothing closes those of the last one.
    fn::String attributedTextToString(const AttributedText& text) const;

private:
    ASSStyle defaultStyle;
};

}  // namespace subtitles
