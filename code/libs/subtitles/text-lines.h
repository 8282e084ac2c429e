// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <optional>

#include "foundation/string-view.h"

namespace subtitles {

/// Walks the lines of a text in memory without copying them: views of what
/// `fn::StreamReader::readLine` would give. The text must outlive the walk and its lines.
class TextLines {
public:
    explicit TextLines(fn::StringView text) : rest(text) {}

    /// The next line without its end, nothing behind the last one. A line ends at LF, and one CR
    /// directly before it goes with it; a lone CR is an ordinary byte. The last line needs no LF.
    std::optional<fn::StringView> next() {
        if (rest.empty()) {
            return std::nullopt;
        }
        const std::size_t end = rest.find('\n');
        if (end == fn::StringView::npos) {
            const fn::StringView last = rest;
            rest = fn::StringView();
            return last;
        }
        fn::StringView line = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        return line;
    }

private:
    fn::StringView rest;
};

}  // namespace subtitles
