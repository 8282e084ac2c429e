// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>

#include "foundation/string.h"

#include "subtitles/attributed-text.h"
#include "subtitles/subtitle-parser-table.h"
#include "subtitles/text-attributes-stack.h"

namespace subtitles::srt {

/// A text under construction.
struct State {
    /// Appends to `runs`, which must outlive this.
    explicit State(AttributedText& runs) : result(runs) {}

    AttributedText::Run run;  ///< Filled when it is done.
    fn::String text;          ///< What has been read since the last run was done.
    AttributedText& result;   ///< The runs that are done.
    TextAttributesStack open;

    /// Ends the run at hand: what has been read since the last one goes into the result with the
    /// attributes in force. Without text there is no run.
    void runDone();
};

/// What the mark-up machine does at each `Action`. Knows nothing of the machine's states.
///
/// Whatever opens or closes something ends the run first: the text so far has the attributes from
/// before the tag.
class Markup {
public:
    using Action = srt::Action;

    /// Appends to `result`, which must outlive this.
    explicit Markup(AttributedText& result) : state(result) {}

    /// `at` is the byte at hand. The bytes from `BeginColor` on must live until `OpenColor`.
    void perform(Action action, const char* at);

    /// `AppendByte` for each byte of the range.
    void append(const char* begin, const char* end) { state.text.append(begin, end); }

    /// Readies it for another text: no runs, nothing open. The memory of the last one is kept.
    void clear();

    State state;

private:
    void open(const TextAttributes& attributes);
    void close(TextAttributes::Attribute attribute);
    void openColor();

    const char* colorBegin = nullptr;
    const char* colorEnd = nullptr;
    std::uint32_t openMask = 0;  ///< The attributes that are open.
};

}  // namespace subtitles::srt
