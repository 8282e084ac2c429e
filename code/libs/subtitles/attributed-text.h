// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "foundation/string.h"

#include "subtitles/export.h"
#include "subtitles/text-attributes.h"

namespace subtitles {

/// A text in runs of equal looks, in reading order. It grows at its back and owns its runs.
///
/// References to runs, and iterators, are valid until the next run is appended.
class AttributedText {
public:
    struct Run {
        TextAttributes attributes;
        /// UTF-8, with line feeds between lines. In what the readers of SRT, MicroDVD and ASS make,
        /// the last run's text ends with a NUL, which is not for display.
        fn::String text;
    };

    using value_type = Run;  // NOLINT(readability-identifier-naming): containers call it so
    using iterator = std::vector<Run>::iterator;  // NOLINT(readability-identifier-naming)
    using const_iterator =                        // NOLINT(readability-identifier-naming)
        std::vector<Run>::const_iterator;

    bool empty() const { return runs.empty(); }
    std::size_t size() const { return runs.size(); }

    iterator begin() { return runs.begin(); }
    iterator end() { return runs.end(); }
    const_iterator begin() const { return runs.begin(); }
    const_iterator end() const { return runs.end(); }

    Run& operator[](std::size_t index) { return runs[index]; }
    const Run& operator[](std::size_t index) const { return runs[index]; }
    Run& front() { return runs.front(); }
    const Run& front() const { return runs.front(); }
    Run& back() { return runs.back(); }
    const Run& back() const { return runs.back(); }

    void push_back(const Run& run) {  // NOLINT(readability-identifier-naming)
        makeRoom();
        runs.push_back(run);
    }
    void push_back(Run&& run) {  // NOLINT(readability-identifier-naming)
        makeRoom();
        runs.push_back(std::move(run));
    }

    /// Makes room for this many runs in all.
    void reserve(std::size_t count) { runs.reserve(count); }
    void clear() { runs.clear(); }

private:
    // Most cues have one to three runs: one allocation for them, and none of their runs is moved.
    void makeRoom() {
        if (runs.capacity() == 0) {
            runs.reserve(4);
        }
    }

    std::vector<Run> runs;
};

/// One run with the whole text and no attributes. The text is taken as it stands, also where it is
/// empty or has several lines.
SUBTITLES_EXPORT AttributedText plainToAttributedText(const fn::String& text);

}  // namespace subtitles
